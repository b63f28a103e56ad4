// The tray icon as a StatusNotifierItem, with a tray of the test's own on a private session bus:
// what hosts read, the panel at the host's point, the right and middle clicks, and the item
// coming back when the tray restarts.
#include "NotificationService.h"
#include "PanelFixture.h"
#include "SessionBus.h"
#include "SniWatcher.h"

#include "tray/SniToolTip.h"
#include "tray/StatusNotifierItem.h"
#include "ui/ControlMenuEntries.h"
#include "wire/Protocol.h"

#include <QDBusArgument>
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
    }

    // Started before the tray, the icon moves to it; meanwhile the user is told once that there
    // is no tray. Then the clicks. (The XEmbed icon's clicks: e2e_tray.)
    void registersWhatHostsShowAndAnswersClicks()
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

        // The tray restarts: the item tells the new watcher about itself. (Registering at once,
        // the tray being there first: tst_wayland.)
        tray.stop();
        QVERIFY(tray.start());
        QVERIFY(tray.registeredItems().isEmpty());
        QTRY_COMPARE(tray.registeredItems(), QStringList{ item });

        // Activate opens the panel centred under the host's point (the offscreen screen is
        // 800 × 600; the other sides: tst_pomvarview's placement table), without a point at the
        // pointer; a second activation closes it.
        QCursor::setPos(500, 70);
        for (const auto& [x, topLeft] : { std::pair{ 400, QPoint(220, 35) }, { 0, { 320, 75 } } }) {
            QVERIFY(tray.click(item, "Activate", x, x ? 30 : 0));
            QTRY_VERIFY(f.panel().isVisible());
            QCOMPARE(f.panel().geometry(), QRect(topLeft, QSize(360, 494)));
            QVERIFY(tray.click(item, "Activate", x, x ? 30 : 0));
            QTRY_VERIFY(!f.panel().isVisible());
        }
        // Right: the control menu's entries, at the host's point, else at the pointer.
        ControlMenuEntries* menu = f.scene().trayMenu();
        QCursor::setPos(300, 200);
        for (const auto& [x, at] : { std::pair{ 0, QPoint(300, 200) }, { 600, { 600, 30 } } }) {
            QVERIFY(tray.click(item, "ContextMenu", x, x ? 30 : 0));
            QTRY_VERIFY(menu->isVisible());
            QCOMPARE(menu->pos(), at);
            menu->hide();
        }
        // (Its entries' requests: tst_pomvarview's control menu rows, the same entries.)
        // Middle: the search window, the panel closed first.
        QVERIFY(f.clickTray());
        QVERIFY(f.dismissedBeforeRequest(request::plain(request::appSearch), [&] {
            QVERIFY(tray.click(item, "SecondaryActivate", 600, 30));
        }));
    }

private:
    SessionBus m_bus;
};

QTEST_MAIN(TestTrayItem)
#include "tst_trayitem.moc"
