// Pomvar in a Wayland session: weston's headless backend, with XWayland (Pomvar runs on it) and
// without (Pomvar runs natively), a tray of the test's own on a private session bus. Pomvar
// starts, its tray item registers, Activate opens the 360 × 494 panel, a middle click asks for
// the search window, and nothing crashes.
#include "HeadlessWeston.h"
#include "InstallLayout.h"
#include "SessionBus.h"
#include "SniWatcher.h"

#include <QLibraryInfo>
#include <QtTest>

#include <csignal>

using namespace pomvar::test;

class TestWayland : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QVERIFY2(m_bus.start(), "dbus-daemon (package dbus) did not start"); }

    void startsAndOpensThePanel_data()
    {
        QTest::addColumn<bool>("xwayland");
        QTest::newRow("XWayland") << true;
        QTest::newRow("native Wayland") << false;
    }

    void startsAndOpensThePanel()
    {
        QFETCH(bool, xwayland);
        const QString plugin =
            QLibraryInfo::path(QLibraryInfo::PluginsPath) + "/platforms/libqwayland-generic.so";
        QString missing = HeadlessWeston::missingPackage(xwayland);
        if (missing.isEmpty() && !xwayland && !QFile::exists(plugin))
            missing = "qt6-wayland";
        if (!missing.isEmpty())
            QSKIP(qPrintable("package " + missing +
                             " is not installed (scripts/setup.sh installs it)"));

        HeadlessWeston weston(xwayland);
        QVERIFY2(weston.waitUntilReady(), weston.log().constData());
        SniWatcher tray(m_bus.address());
        QVERIFY(tray.start());
        InstallLayout layout;
        QVERIFY(layout.isValid());
        QProcessEnvironment session = layout.environment();
        session.remove("QT_QPA_PLATFORM");
        session.remove("DISPLAY");
        session.insert("XDG_SESSION_TYPE", "wayland");
        session.insert("XDG_RUNTIME_DIR", weston.runtimeDir());
        session.insert("WAYLAND_DISPLAY", weston.socket());
        session.insert("DBUS_SESSION_BUS_ADDRESS", m_bus.address());
        if (xwayland)
            session.insert("DISPLAY", weston.xDisplay());
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
        QVERIFY2(QTest::qWaitFor(panelShown, 20000), pomvar->readAllStandardError().constData());

        QVERIFY(tray.click(item, "SecondaryActivate", 640, 31));
        QTRY_VERIFY_WITH_TIMEOUT(layout.read("fake/requests.jsonl").contains("app-search"), 20000);
        QCOMPARE(pomvar->state(), QProcess::Running);
        // Ended by a signal, Pomvar exits with 1 rather than crashing.
        ::kill(pid_t(pomvar->processId()), SIGTERM);
        QVERIFY(pomvar->waitForFinished(10000));
        QCOMPARE(pomvar->exitStatus(), QProcess::NormalExit);
        QCOMPARE(pomvar->exitCode(), 1);
        const QByteArray errors = pomvar->readAllStandardError();
        QVERIFY2(!errors.contains("Sanitizer") && !errors.contains("runtime error"),
                 errors.constData());
    }

private:
    SessionBus m_bus;
};

QTEST_GUILESS_MAIN(TestWayland)
#include "tst_wayland.moc"
