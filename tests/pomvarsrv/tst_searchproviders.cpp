// The desktop's search providers, in a server run in-process on a private session bus, with three
// providers of the test's own answering at once, late and never. The apps show at once; only the
// first provider's results follow, under its app's name; the late one is never asked for its
// results; activating one hands it to its provider with the terms; the organizer's Settings turns
// providers off, one and all.
#include "InProcessServer.h"
#include "SessionBus.h"
#include "TestDesktop.h"
#include "wire/Protocol.h"

#include <QCheckBox>
#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusVirtualObject>
#include <QLineEdit>
#include <QListView>
#include <QTimer>
#include <QtTest>

using namespace pomvar::srv;
using namespace pomvar::test;
namespace rq = pomvar::request;

namespace {

// org.gnome.Shell.SearchProvider2 answering after `delayMs` (never when negative); it notes what
// it is asked.
class TestProvider : public QDBusVirtualObject
{
public:
    TestProvider(QString name, int delayMs)
        : m_name(std::move(name))
        , m_delayMs(delayMs)
    {}

    QStringList calls;
    int replies = 0;

    QString introspect(const QString&) const override { return {}; }
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override
    {
        const QVariantList in = message.arguments();
        const QVariant first = in.value(0);
        calls << message.member() + ' ' +
                     (first.typeId() == QMetaType::QString ? first.toString()
                                                           : first.toStringList().join(',')) +
                     ' ' + in.value(1).toStringList().join(',');
        QDBusMessage reply = message.createReply();
        if (message.member() == "GetInitialResultSet") {
            reply << QStringList{ m_name + "-1", m_name + "-2" };
        } else if (message.member() == "GetResultMetas") {
            QDBusArgument metas;
            metas.beginArray(QMetaType::fromType<QVariantMap>());
            for (const QString& id : in.value(0).toStringList())
                metas << QVariantMap{ { QStringLiteral("id"), id },
                                      { QStringLiteral("name"), QString("Result " + id) } };
            metas.endArray();
            reply << QVariant::fromValue(metas);
        }
        if (m_delayMs < 0)
            return true;
        QTimer::singleShot(m_delayMs, [this, reply, connection] {
            QDBusConnection(connection).send(reply);
            ++replies;
        });
        return true;
    }

private:
    QString m_name;
    int m_delayMs;
};

} // namespace

class TestSearchProviders : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        for (const char* name : { "quick", "late", "never" }) {
            const QString provider = QString::fromLatin1(name);
            QVERIFY(TestDesktop::writeEntry(m_desktop.systemData(),
                                            provider + ".desktop",
                                            "Name=" + provider.toUpper().toUtf8() + "\nExec=true"));
            QVERIFY(TestDesktop::write(
                m_desktop.systemData() + "/gnome-shell/search-providers/" + provider + ".ini",
                "[Shell Search Provider]\nDesktopId=" + provider.toUtf8() +
                    ".desktop\nBusName=org.pomvar.Test." + provider.toUtf8() +
                    "\nObjectPath=/org/pomvar/Test/" + provider.toUtf8() + "\nVersion=2\n"));
        }
        QVERIFY(TestDesktop::writeEntry(
            m_desktop.systemData(), "notes.desktop", "Name=Quick Notes\nExec=true"));
        InProcessServer::useDesktop(m_desktop);
        QVERIFY(m_bus.start());
        m_bus.useInThisProcess();
        m_providers = QDBusConnection::connectToBus(m_bus.address(), "providers");
        for (const auto& [name, provider] :
             { std::pair("quick", &m_quick), { "late", &m_late }, { "never", &m_never } })
            QVERIFY(m_providers.registerService(QString("org.pomvar.Test.") + name) &&
                    m_providers.registerVirtualObject(QString("/org/pomvar/Test/") + name,
                                                      provider,
                                                      QDBusConnection::SingleNode));
        QVERIFY(m_server.start());
    }

    void providersAnswerBelowTheAppsWithinTheirTime()
    {
        QVERIFY(m_server.send(rq::plain(rq::appSearch)));
        QWidget* window = InProcessServer::waitForWindow("searchWindow");
        QVERIFY(window);
        auto* field = window->findChild<QLineEdit*>();
        auto* list = window->findChild<QListView*>();
        QTest::keyClicks(field, "quick");
        // The apps at once; the quick provider's results below them, under its name.
        QCOMPARE(rowNames(list), (QStringList{ "QUICK", "Quick Notes" }));
        QTRY_COMPARE(
            rowNames(list),
            (QStringList{ "QUICK", "Quick Notes", "QUICK", "Result quick-1", "Result quick-2" }));
        // The late answers (one per key typed) come after the deadline: their results are never
        // asked for, nor the never answering one's.
        QTRY_COMPARE(m_late.replies, 5);
        settle();
        QCOMPARE(m_late.calls.filter("GetResultMetas") + m_never.calls.filter("GetResultMetas"),
                 QStringList{});
        QCOMPARE(m_never.calls.size(), 5);
        QCOMPARE(rowNames(list).size(), 5);
        // Down past the apps and the name: the provider activates its result with the terms.
        QTest::keyClick(field, Qt::Key_Down);
        QTest::keyClick(field, Qt::Key_Down);
        QTest::keyClick(field, Qt::Key_Return);
        QTRY_COMPARE(m_quick.calls.last(), "ActivateResult quick-1 quick");
    }

    void settingsTurnProvidersOff()
    {
        QVERIFY(m_server.send(rq::organizer(pomvar::OrganizerDlgMode::settings, "")));
        QWidget* organizer = InProcessServer::waitForWindow("organizerWindow");
        QVERIFY(organizer);
        // The providers asked for a query typed in the search window.
        const auto askedFor = [&](const QString& text) {
            m_server.send(rq::plain(rq::appSearch));
            InProcessServer::waitForWindow("searchWindow")->findChild<QLineEdit*>()->setText(text);
            settle();
            QStringList asked;
            for (const auto& [name, provider] :
                 { std::pair("quick", &m_quick), { "late", &m_late } })
                if (provider->calls.contains("GetInitialResultSet " + text + ' '))
                    asked << name;
            return asked;
        };
        const auto boxes = organizer->findChildren<QCheckBox*>("searchProvider");
        QCOMPARE(boxes.size(), 3);
        boxes[2]->click(); // quick, in the files' order: late, never, quick
        QCOMPARE(askedFor("first"), QStringList{ "late" });
        organizer->findChild<QCheckBox*>("searchProviders")->click();
        QCOMPARE(askedFor("second"), QStringList{});
    }

private:
    // Everything sent on the buses so far has been delivered and handled: the server's calls
    // reached the providers, the providers' answers reached the server.
    void settle()
    {
        for (int round = 0; round < 2; ++round) {
            for (const QDBusConnection& bus : { QDBusConnection::sessionBus(), m_providers })
                bus.interface()->isServiceRegistered("org.pomvar.Test.quick");
            QCoreApplication::processEvents();
        }
    }

    static QStringList rowNames(QListView* list)
    {
        QStringList names;
        for (int row = 0; row < list->model()->rowCount(); ++row)
            names << list->model()->index(row, 0).data().toString();
        return names;
    }

    TestDesktop m_desktop;
    SessionBus m_bus;
    QDBusConnection m_providers{ QString() };
    TestProvider m_quick{ "quick", 0 }, m_late{ "late", 400 }, m_never{ "never", -1 };
    InProcessServer m_server;
};

QTEST_MAIN(TestSearchProviders)
#include "tst_searchproviders.moc"
