#include "FakeRuntimeServer.h"
#include "model/PomvarViewModel.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QFile>
#include <QProcess>
#include <QTemporaryFile>
#include <QTest>

#include <unistd.h>

using namespace pomvar;
using test::FakeRuntimeServer;

namespace {

// Stands in for the desktop's notification service and records what it is asked to show.
class NotificationService : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Notifications")

public:
    struct Shown
    {
        QString appName;
        uint replacesId;
        QString summary;
        QString body;
        QVariantMap hints;
    };
    QList<Shown> shown;

public Q_SLOTS:
    QStringList GetCapabilities() { return { QStringLiteral("body"), QStringLiteral("sound") }; }
    uint Notify(const QString& appName,
                uint replacesId,
                const QString&,
                const QString& summary,
                const QString& body,
                const QStringList&,
                const QVariantMap& hints,
                int)
    {
        shown.append({ appName, replacesId, summary, body, hints });
        return static_cast<uint>(shown.size());
    }
};

} // namespace

// Every test runs against a private session bus; what the view model traces is captured from
// standard output.
class TestNotifications : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        m_bus.start(QStringLiteral("dbus-daemon"),
                    { QStringLiteral("--session"),
                      QStringLiteral("--nofork"),
                      QStringLiteral("--nopidfile"),
                      QStringLiteral("--print-address=1") });
        QVERIFY(m_bus.waitForReadyRead(10000));
        m_address = QString::fromUtf8(m_bus.readLine().trimmed());
        QVERIFY(!m_address.isEmpty());
        qputenv("DBUS_SESSION_BUS_ADDRESS", m_address.toUtf8());
        QVERIFY(QDBusConnection::sessionBus().isConnected());
        QVERIFY(m_server.listen());
    }

    void cleanupTestCase()
    {
        m_bus.terminate();
        m_bus.waitForFinished();
    }

    void withoutAServiceTheErrorIsTraced()
    {
        startCapture();
        PomvarViewModel vm(PomvarRT{ "localhost", m_server.port() });
        QTRY_VERIFY_WITH_TIMEOUT(captured().contains("org.freedesktop.Notifications"), 10000);
        QVERIFY(!captured().contains("Pomvar: Notifications enabled."));
        stopCapture();
    }

    void theServiceAnswersAndShowsTheUpdateNotice()
    {
        QDBusConnection serviceBus =
            QDBusConnection::connectToBus(m_address, QStringLiteral("service"));
        NotificationService service;
        QVERIFY(serviceBus.registerObject(QStringLiteral("/org/freedesktop/Notifications"),
                                          &service,
                                          QDBusConnection::ExportAllSlots));
        QVERIFY(serviceBus.registerService(QStringLiteral("org.freedesktop.Notifications")));

        startCapture();
        m_server.queueReply(
            "get-app-status",
            FakeRuntimeServer::Reply::json({ { "ready", true }, { "updateFinished", true } }));
        // The service lives on this thread: a blocking call from the view model would never
        // be answered, so getting the notice at all shows the calls are asynchronous.
        PomvarViewModel vm(PomvarRT{ "localhost", m_server.port() });
        QVERIFY(service.shown.isEmpty()); // sent one second after the first build
        QTRY_VERIFY_WITH_TIMEOUT(captured().contains("Pomvar: Notifications enabled.\n"), 10000);
        QTRY_COMPARE_WITH_TIMEOUT(service.shown.size(), 1, 10000);
        const auto& notice = service.shown.front();
        QCOMPARE(notice.summary, QStringLiteral("Update Complete"));
        QCOMPARE(notice.body, QStringLiteral("Pomvar for Mac was successfully updated."));
        QCOMPARE(notice.replacesId, 0u);
        QVERIFY(notice.hints.contains(QStringLiteral("sound-name")));

        vm.showPostUpdateNotification();
        QTRY_COMPARE_WITH_TIMEOUT(service.shown.size(), 2, 10000);
        QCOMPARE(service.shown.last().replacesId, 0u); // a fresh notification each time
        stopCapture();
        serviceBus.unregisterService(QStringLiteral("org.freedesktop.Notifications"));
        QDBusConnection::disconnectFromBus(QStringLiteral("service"));
    }

private:
    void startCapture()
    {
        QVERIFY(m_capture.open());
        m_savedStdout = ::dup(STDOUT_FILENO);
        ::dup2(m_capture.handle(), STDOUT_FILENO);
    }

    void stopCapture()
    {
        ::dup2(m_savedStdout, STDOUT_FILENO);
        ::close(m_savedStdout);
        m_capture.close();
        m_capture.remove();
    }

    QByteArray captured()
    {
        QFile file(m_capture.fileName());
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    QProcess m_bus;
    QString m_address;
    FakeRuntimeServer m_server;
    QTemporaryFile m_capture;
    int m_savedStdout = -1;
};

QTEST_GUILESS_MAIN(TestNotifications)
#include "tst_notifications.moc"
