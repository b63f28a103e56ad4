// The post-update notice over D-Bus, against a notification service of the test's own on a
// private session bus.
#include "FakeRuntimeServer.h"
#include "SessionBus.h"
#include "model/PomvarViewModel.h"

#include <QDBusConnection>
#include <QTest>

using namespace pomvar;
using test::FakeRuntimeServer;
using test::SessionBus;

namespace {

// Stands in for the desktop's notification service and records what it is asked to show.
class NotificationService : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Notifications")

public:
    QList<QVariantList> shown; // replaces id, summary, body, hints

public Q_SLOTS:
    QStringList GetCapabilities() { return { "body", "sound" }; }
    uint Notify(const QString&,
                uint replacesId,
                const QString&,
                const QString& summary,
                const QString& body,
                const QStringList&,
                const QVariantMap& hints,
                int)
    {
        shown.append({ replacesId, summary, body, hints });
        return static_cast<uint>(shown.size());
    }
};

} // namespace

class TestNotifications : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(m_bus.start());
        m_bus.useInThisProcess();
        QVERIFY(QDBusConnection::sessionBus().isConnected());
        QVERIFY(m_server.listen());
    }
    void theServiceShowsTheUpdateNoticeAfterTheFirstBuild()
    {
        QDBusConnection bus = QDBusConnection::connectToBus(m_bus.address(), "service");
        NotificationService service;
        QVERIFY(bus.registerObject(
            "/org/freedesktop/Notifications", &service, QDBusConnection::ExportAllSlots));
        QVERIFY(bus.registerService("org.freedesktop.Notifications"));
        m_server.queueReply(
            "get-app-status",
            FakeRuntimeServer::Reply::json({ { "ready", true }, { "updateFinished", true } }));
        // The service lives on this thread: a blocking call from the view model would never be
        // answered, so getting the notice at all shows the calls are asynchronous.
        PomvarViewModel vm(PomvarRT{ "localhost", m_server.port() });
        QVERIFY(service.shown.isEmpty()); // sent a second after the first build
        QTRY_COMPARE_WITH_TIMEOUT(service.shown.size(), 1, 10000);
        QCOMPARE(
            service.shown[0].mid(0, 3),
            (QVariantList{ 0u, "Update Complete", "Pomvar for Mac was successfully updated." }));
        QVERIFY(service.shown[0][3].toMap().contains("sound-name"));
        QDBusConnection::disconnectFromBus("service");
    }

private:
    SessionBus m_bus;
    FakeRuntimeServer m_server;
};

QTEST_GUILESS_MAIN(TestNotifications)
#include "tst_notifications.moc"
