// The tray icon as a StatusNotifierItem, with a tray of the test's own on a private session bus:
// what hosts read, the panel at the host's point, the right and middle clicks on either kind of
// tray, and the item coming back when the tray restarts.
#include "NotificationService.h"
#include "PanelFixture.h"
#include "SessionBus.h"
#include "SniWatcher.h"

#include "tray/SniToolTip.h"
#include "tray/StatusNotifierItem.h"
#include "ui/ControlMenuEntries.h"
#include "wire/Protocol.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QScreen>
#include <QtTest>

using namespace pomvar;
using namespace pomvar::test;

class TestTrayItem : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY2(m_bus.start(), "dbus-daemon (package dbus) did not start");
        m_bus.useInThisProcess();
        QVERIFY(QDBusConnection::sessionBus().isConnected());
    }

    // Started before the tray (registering at once: the tests below), the icon moves to it.
    // Meanwhile the user is told once that there is no tray.
    void registersWhatHostsShowAndComesBack()
    {
        SniWatcher tray(m_bus.address());
        NotificationService notifications;
        QVERIFY(notifications.start());
        PanelFixture f;
        f.start();
        QTRY_COMPARE(notifications.summaries(), QStringList{ "No system tray found" });
        TrayIcon& icon = *f.scene().trayIcon();
        QVERIFY(tray.start());
        const QString item = icon.item()->serviceName();
        QTRY_COMPARE(tray.registeredItems(), QStringList{ item });
        QCOMPARE(icon.host(), TrayIcon::Host::StatusNotifier);
        QVERIFY(!icon.icon()->isVisible());

        QVariantList properties;
        for (const char* name : { "IconName", "Title", "Status", "Id", "ItemIsMenu" })
            properties << tray.itemProperty(item, name);
        QCOMPARE(
            properties,
            QVariantList(
                { "org.pomvar.Pomvar-symbolic", "Pomvar", "Active", "org.pomvar.Pomvar", false }));
        const auto read = [&](const char* name) {
            return tray.itemProperty(item, name).value<QDBusArgument>();
        };
        QCOMPARE(qdbus_cast<SniToolTip>(read("ToolTip")).title, "Pomvar");
        // Hosts without the themed icon draw the pixmaps.
        QList<QSize> sizes;
        for (const SniPixmap& pixmap : qdbus_cast<SniPixmapList>(read("IconPixmap"))) {
            QCOMPARE(pixmap.argb.size(), 4 * pixmap.width * pixmap.height);
            sizes.append(QSize(pixmap.width, pixmap.height));
        }
        QCOMPARE(sizes, QList<QSize>({ { 16, 16 }, { 22, 22 }, { 32, 32 }, { 48, 48 } }));

        // The tray restarts: the item tells the new watcher about itself.
        tray.stop();
        QVERIFY(tray.start());
        QVERIFY(tray.registeredItems().isEmpty());
        QTRY_COMPARE(tray.registeredItems(), QStringList{ item });
    }

    void activateOpensThePanelAtTheHostsPoint_data()
    {
        QTest::addColumn<QPoint>("point");
        QTest::addColumn<QPoint>("topLeft");
        // The offscreen screen is 800 × 600. Below a top bar, centred on the point (the other
        // sides and the screen's edges: tst_pomvarview's placement table).
        QTest::newRow("top bar") << QPoint(400, 30) << QPoint(220, 35);
        // No point from the host: at the pointer.
        QTest::newRow("no point") << QPoint(0, 0) << QPoint(320, 75);
    }

    void activateOpensThePanelAtTheHostsPoint()
    {
        QFETCH(QPoint, point);
        QFETCH(QPoint, topLeft);
        SniWatcher tray(m_bus.address());
        QVERIFY(tray.start());
        PanelFixture f;
        f.start();
        const QString item = f.scene().trayIcon()->item()->serviceName();
        QTRY_VERIFY(tray.registeredItems().contains(item));
        QCursor::setPos(500, 70);
        QVERIFY(tray.click(item, "Activate", point.x(), point.y()));
        QTRY_VERIFY(f.panel().isVisible());
        QCOMPARE(f.panel().geometry(), QRect(topLeft, QSize(360, 494)));
        QVERIFY(
            QGuiApplication::primaryScreen()->availableGeometry().contains(f.panel().geometry()));
        // A second activation closes it.
        QVERIFY(tray.click(item, "Activate", point.x(), point.y()));
        QTRY_VERIFY(!f.panel().isVisible());
    }

    void rightAndMiddleClicks_data()
    {
        QTest::addColumn<bool>("statusNotifier");
        QTest::newRow("StatusNotifierItem") << true;
        QTest::newRow("XEmbed") << false;
    }

    void rightAndMiddleClicks()
    {
        QFETCH(bool, statusNotifier);
        SniWatcher tray(m_bus.address());
        QVERIFY(!statusNotifier || tray.start());
        PanelFixture f;
        f.start();
        TrayIcon& icon = *f.scene().trayIcon();
        const QString item = icon.item()->serviceName();
        QTRY_COMPARE(tray.registeredItems().contains(item), statusNotifier);
        // Right: the control menu's entries.
        ControlMenuEntries* menu = f.scene().trayMenu();
        QStringList entries;
        for (QAction* action : menu->actions())
            entries << action->text();
        QCOMPARE(entries, QStringList({ "Settings…", "About…", "Check For Updates", "", "Quit" }));
        if (statusNotifier) {
            // Without a position from the host, at the pointer.
            QCursor::setPos(300, 200);
            QVERIFY(tray.click(item, "ContextMenu", 0, 0));
            QTRY_VERIFY(menu->isVisible());
            QCOMPARE(menu->pos(), QPoint(300, 200));
            menu->hide();
            QVERIFY(tray.click(item, "ContextMenu", 600, 30));
            QTRY_VERIFY(menu->isVisible());
            QCOMPARE(menu->pos(), QPoint(600, 30));
            const std::size_t before = f.server().requests().size();
            menu->actions().at(1)->trigger();
            QVERIFY(f.server().waitForRequests(before + 1));
            QCOMPARE(f.server().requests().back(), request::plain(request::about));
            menu->hide();
        } else {
            // Qt's XEmbed icon pops this very menu up on the right button.
            QCOMPARE(icon.icon()->contextMenu(), menu);
        }
        // Middle: the search window, the panel closed first.
        QVERIFY(f.clickTray());
        QVERIFY(f.dismissedBeforeRequest(request::plain(request::appSearch), [&] {
            if (statusNotifier)
                QVERIFY(tray.click(item, "SecondaryActivate", 600, 30));
            else
                Q_EMIT icon.icon()->activated(QSystemTrayIcon::MiddleClick);
        }));
    }

private:
    SessionBus m_bus;
};

QTEST_MAIN(TestTrayItem)
#include "tst_trayitem.moc"
