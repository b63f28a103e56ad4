// Pomvar in a Wayland session: weston's headless backend, with XWayland (Pomvar runs on it) and
// without (Pomvar runs natively), a tray of the test's own on a private session bus. Pomvar
// starts, its tray item registers, Activate opens the 360 × 494 panel, and nothing crashes. (The
// item's other clicks: tst_trayitem.)
#include "ChildProcess.h"
#include "InstallLayout.h"
#include "SessionBus.h"
#include "SniWatcher.h"

#include <QLibraryInfo>
#include <QLocalSocket>
#include <QRegularExpression>
#include <QtTest>

#include <csignal>
#include <sys/stat.h>

using namespace pomvar::test;

namespace {

// Where X servers put their sockets; weston gives up on XWayland when the folder is missing, as
// on a machine where no X server ran yet.
const QString kXSocketDir = QStringLiteral("/tmp/.X11-unix");

bool accepts(const QString& socketPath)
{
    QLocalSocket socket;
    socket.connectToServer(socketPath);
    return socket.waitForConnected(1000);
}

// weston's headless backend (1280 × 800, desktop shell), optionally with XWayland, in a runtime
// folder of its own. Its debug protocol lists the surfaces it shows.
struct HeadlessWeston
{
    QTemporaryDir runtime;
    QString socket = QStringLiteral("pomvar-test-%1").arg(QCoreApplication::applicationPid());
    QString xDisplay; // XWayland's (":1"), once ready
    QProcess weston;

    QProcessEnvironment environment() const
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("XDG_RUNTIME_DIR", runtime.path());
        environment.remove("DISPLAY");
        environment.remove("WAYLAND_DISPLAY");
        return environment;
    }

    explicit HeadlessWeston(bool xwayland)
    {
        weston.setProcessEnvironment(environment());
        weston.setProcessChannelMode(QProcess::MergedChannels);
        QStringList arguments =
            QString("--backend=headless-backend.so --width=1280 --height=800 --idle-time=0 --debug")
                .split(' ')
            << "--socket=" + socket;
        if (xwayland) {
            arguments << "--xwayland";
            // Made as X servers make it: anyone's, sticky (mkdir leaves that to the umask).
            if (::mkdir(qPrintable(kXSocketDir), 01777) == 0)
                ::chmod(qPrintable(kXSocketDir), 01777);
        }
        weston.start("weston", arguments);
    }
    ~HeadlessWeston()
    {
        weston.terminate();
        if (!weston.waitForFinished(5000))
            weston.kill();
    }

    QByteArray log() { return weston.peek(1 << 20) + weston.errorString().toUtf8(); }

    // Until its Wayland socket, and XWayland's X socket, take clients; false when weston failed.
    bool waitUntilReady(bool xwayland)
    {
        // Which display XWayland took, weston alone says.
        static const QRegularExpression listening(R"(xserver listening on display :(\d+))");
        const auto ready = [&] {
            const QRegularExpressionMatch match = listening.match(QString::fromUtf8(log()));
            xDisplay = match.hasMatch() ? ':' + match.captured(1) : QString();
            return accepts(runtime.filePath(socket)) &&
                   (!xwayland ||
                    (match.hasMatch() && accepts(kXSocketDir + "/X" + match.captured(1))));
        };
        return weston.waitForStarted() &&
               QTest::qWaitFor([&] { return weston.state() != QProcess::Running || ready(); },
                               60000) &&
               weston.state() == QProcess::Running;
    }

    // The rectangles of the views the compositor shows now, in its global coordinates.
    QList<QRect> views() const
    {
        QProcessEnvironment debug = environment();
        debug.insert("WAYLAND_DISPLAY", socket);
        // weston-debug streams until it is stopped; the scene graph is written at once.
        const ChildOutcome graph =
            runChild("timeout", { "2", "weston-debug", "scene-graph" }, 10000, debug);
        static const QRegularExpression position(
            R"(position: \((-?\d+), (-?\d+)\) -> \((-?\d+), (-?\d+)\))");
        QList<QRect> views;
        for (auto it = position.globalMatch(QString::fromUtf8(graph.out)); it.hasNext();) {
            const QRegularExpressionMatch match = it.next();
            views.append(
                QRect(QPoint(match.captured(1).toInt(), match.captured(2).toInt()),
                      QPoint(match.captured(3).toInt() - 1, match.captured(4).toInt() - 1)));
        }
        return views;
    }
};

} // namespace

class TestWayland : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QVERIFY2(m_bus.start(), "dbus-daemon (package dbus) did not start"); }

    void startsAndOpensThePanel()
    {
        const QString plugin =
            QLibraryInfo::path(QLibraryInfo::PluginsPath) + "/platforms/libqwayland-generic.so";
        // What is missing, by the Debian package's name.
        const auto has = [](const char* program) {
            return !QStandardPaths::findExecutable(program).isEmpty();
        };
        for (const bool xwayland : { true, false }) { // with XWayland, then natively
            const char* missing = !has("weston") || !has("weston-debug") ? "weston"
                                  : xwayland && !has("Xwayland")         ? "xwayland"
                                  : !xwayland && !QFile::exists(plugin)  ? "qt6-wayland"
                                                                         : nullptr;
            if (missing) { // ctest shows the test as skipped
                qInfo("package %s is not installed (scripts/setup.sh installs it)", missing);
                continue;
            }
            HeadlessWeston weston(xwayland);
            QVERIFY2(weston.waitUntilReady(xwayland), weston.log().constData());
            SniWatcher tray(m_bus.address());
            QVERIFY(tray.start());
            InstallLayout layout;
            QVERIFY(layout.isValid());
            QProcessEnvironment session = layout.environment();
            session.remove("QT_QPA_PLATFORM");
            session.remove("DISPLAY");
            session.insert("XDG_SESSION_TYPE", "wayland");
            session.insert("XDG_RUNTIME_DIR", weston.runtime.path());
            session.insert("WAYLAND_DISPLAY", weston.socket);
            session.insert("DBUS_SESSION_BUS_ADDRESS", m_bus.address());
            if (xwayland)
                session.insert("DISPLAY", weston.xDisplay);
            const auto pomvar = layout.start({}, session);
            QVERIFY2(InstallLayout::isConnectedToServer(*pomvar), pomvar->readAllStandardError());

            QTRY_COMPARE_WITH_TIMEOUT(tray.registeredItems().size(), 1, 20000);
            const QString item = tray.registeredItems().constFirst();
            // On XWayland the panel is where Pomvar puts it, next to the host's point; natively
            // where the compositor puts it.
            const auto panelShown = [&] {
                const QList<QRect> views = weston.views();
                return std::any_of(views.begin(), views.end(), [&](const QRect& view) {
                    return view.size() == QSize(360, 494) &&
                           (!xwayland || view.topLeft() == QPoint(460, 36));
                });
            };
            QVERIFY(!panelShown());
            QVERIFY(tray.click(item, "Activate", 640, 31));
            // Its standard error says why when it does not show.
            QVERIFY2(QTest::qWaitFor(panelShown, 20000),
                     pomvar->readAllStandardError().constData());

            QCOMPARE(pomvar->state(), QProcess::Running);
            // Ended by a signal, Pomvar exits rather than crashing (with 1: e2e_ends).
            ::kill(pid_t(pomvar->processId()), SIGTERM);
            QVERIFY(pomvar->waitForFinished(10000));
            QCOMPARE(pomvar->exitStatus(), QProcess::NormalExit);
            const QByteArray errors = pomvar->readAllStandardError();
            QVERIFY2(!errors.contains("Sanitizer") && !errors.contains("runtime error"),
                     errors.constData());
        }
    }

private:
    SessionBus m_bus;
};

QTEST_GUILESS_MAIN(TestWayland)
#include "tst_wayland.moc"
