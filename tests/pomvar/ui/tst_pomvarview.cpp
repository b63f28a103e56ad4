// The panel against a fake runtime server: opening, Escape and placement, the entries that close it
// before their request, the ones that keep it open and refresh, the selector, the categories'
// expansion.
#include "PanelFixture.h"

#include "ui/AppContextMenu.h"
#include "ui/ControlMenu.h"
#include "ui/MenuPage.h"
#include "ui/MenuSelectorButton.h"
#include "ui/PanelFonts.h"
#include "ui/PanelPlacement.h"
#include "wire/Protocol.h"

#include <QLabel>
#include <QSettings>
#include <QtTest>

using namespace pomvar;
using namespace pomvar::test;
namespace rq = pomvar::request;
using Reply = FakeRuntimeServer::Reply;

namespace {

// The entry of that text, in the menu or its submenus.
QAction* entry(QMenu* menu, const QString& text)
{
    for (QAction* action : menu->findChildren<QAction*>())
        if (action->text() == text)
            return action;
    return nullptr;
}

// Four apps: "app1" pinned, "app2" in Games and Work, "app3" in Games and Recent, "app4" in
// Sound & Video; then opens the panel.
bool open(PanelFixture& f, int lastMenu = 0)
{
    const std::string icon = f.icons().square().toStdString();
    for (const char* key : { "app1", "app2", "app3", "app4" })
        f.menus().addApp({ key, std::string("Name of ") + key, icon, icon });
    f.menus().pin("app1");
    f.menus().addCategory("Games", { "app2", "app3" });
    f.menus().addCategory("Work", { "app2" });
    f.menus().addCategory("Sound & Video", { "app4" });
    f.menus().addRecent("app3");
    UserDefaults::setLastMenu(lastMenu);
    f.start();
    return f.clickTray();
}

void click(MenuListView& view, const QModelIndex& index)
{
    QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, view.visualRect(index).center());
}

} // namespace

class TestPomvarView : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        QSettings(QSettings::IniFormat, QSettings::UserScope, "pomvar", "pomvar").clear();
    }

    void placementFollowsTheTray()
    {
        // Centred under, above or beside the icon (else the pointer), inside the available area.
        constexpr int gap = PanelPlacement::gap;
        const std::tuple<QRect, QPoint, QPoint> cases[] = {
            { QRect(600, 0, 20, 28), QPoint(), QPoint(429, 28 + gap) },    // top bar
            { QRect(600, 772, 20, 28), QPoint(), QPoint(429, 278 - gap) }, // bottom
            { QRect(0, 300, 28, 20), QPoint(), QPoint(28 + gap, 62) },     // left bar
            { QRect(1270, 0, 10, 28), QPoint(), QPoint(920, 28 + gap) },   // clamped
            { QRect(), QPoint(400, 0), QPoint(220, 28) },                  // no icon
        };
        const QRect available(0, 28, 1280, 772);
        for (const auto& [icon, pointer, topLeft] : cases)
            QCOMPARE(PanelPlacement::topLeft(QSize(360, 494), icon, pointer, available), topLeft);
    }

    void entriesCloseThePanelBeforeTheirRequest()
    {
        using M = OrganizerDlgMode;
        // How the entry is reached, the request it sends.
        const std::pair<QString, std::string> cases[] = {
            { "click:app2", rq::launch("app2") },
            { "app:Open", rq::launch("app2") },
            { "app:Get Info", rq::getInfoApp("app2") },
            { "app:Organize", rq::organizer(M::organizeApp, "app2") },
            { "app:Add to New Category…", rq::createNewAppcatCxtmnu("app2") },
            { "cat:Get Info", rq::getInfoAppcat("Games") },
            { "cat:Organize", rq::organizer(M::organize, "Games") },
            { "button:searchButton", rq::plain(rq::appSearch) },
            { "button:organizeButton", rq::organizer(M::organize, "") },
            { "control:Settings…", rq::organizer(M::settings, "") },
            { "control:About…", rq::plain(rq::about) },
            { "control:Check For Updates", rq::plain(rq::checkUpdates) },
            { "control:Quit", rq::plain(rq::quit) },
        };
        for (const auto& [how, request] : cases) {
            init();
            const QString kind = how.section(':', 0, 0), what = how.section(':', 1);
            PanelFixture f;
            QVERIFY(open(f, kind == "cat" ? 0 : 2));
            MenuListView& list = *f.view().menuView(f.view().selectedMenu());
            QMenu* menu = f.view().findChild<ControlMenu*>("controlMenu")->entries();
            if (kind == "app" || kind == "cat")
                QVERIFY(menu = f.openContextMenu(list,
                                                 f.rowOf(list, kind == "app" ? "app2" : "Games")));
            auto* button = f.view().findChild<QAbstractButton*>(what);
            QVERIFY(kind != "button" || button->cursor().shape() == Qt::PointingHandCursor);
            QVERIFY(f.dismissedBeforeRequest(request, [&] {
                if (kind == "click")
                    click(list, f.rowOf(list, what.toStdString()));
                else if (button)
                    QTest::mouseClick(button, Qt::LeftButton);
                else
                    entry(menu, what)->trigger();
            }));
            QCOMPARE(f.terminateCalls(), what == "Quit" ? 1 : 0);
        }
    }

    void categoriesExpandAndEntriesRefreshThePanel()
    {
        // One category open at a time or each on its own; the entry triggered, its request (the
        // category's "&" escaped in the entry's text).
        const std::tuple<bool, QString, std::string> cases[] = {
            { true, "Pin App", request::togglePinApp("app2") },
            { false, "Sound && Video", request::toggleSetAppcat("app2", "Sound & Video") },
        };
        for (const auto& [oneOpen, text, request] : cases) {
            init();
            PanelFixture f;
            f.setPrefs(FakeMenus::prefs(0, true, oneOpen));
            QVERIFY(open(f));
            MenuListView& mine = f.menuView(0);
            mine.clearFocus();
            click(mine, f.rowOf(mine, "Games"));
            QVERIFY(mine.hasFocus());
            click(mine, f.rowOf(mine, "Work"));
            QVERIFY(mine.isExpanded(f.rowOf(mine, "Work")));
            QCOMPARE(mine.isExpanded(f.rowOf(mine, "Games")), !oneOpen);

            const QModelIndex inWork = mine.model()->index(0, 0, f.rowOf(mine, "Work"));
            auto* menu = qobject_cast<AppContextMenu*>(f.openContextMenu(mine, inWork));
            QVERIFY(menu->actions().at(3)->isSeparator());
            // Only the categories (the triggered "Sound && Video" has its "&" escaped), the app's
            // own ones marked.
            QMenu* categories = menu->appCategoriesMenu();
            for (int i = 0; i < 3; ++i)
                QCOMPARE(categories->actions().at(i)->property("isMember").toBool(), i < 2);
            // What the server holds after the change; its flag refetches every list.
            f.menus().pin("app2");
            f.menus().install(f.server());
            f.server().queueReply("get-menu-data-modified-status",
                                  Reply::json(FakeMenus::modified("pinnedAppsModified")));
            // Recent Apps fails to load, so the build ends before the expansion is recomputed: the
            // view opens the refreshed categories as their rows arrive.
            f.server().queueReply("get-recentapps-menu-data", Reply::text("-"));
            const std::size_t before = f.server().requests().size();
            entry(menu, text)->trigger();
            QVERIFY(f.server().waitForRequests(before + 1));
            QCOMPARE(f.server().requests().at(before), request);
            // The refreshed My Apps shows the new pin and keeps the categories as they were.
            QTRY_VERIFY(f.rowOf(mine, "app2").isValid() &&
                        !f.rowOf(mine, "app2").parent().isValid());
            QVERIFY(mine.isExpanded(f.rowOf(mine, "Work")));
            QCOMPARE(mine.isExpanded(f.rowOf(mine, "Games")), !oneOpen);

            // Closing saves the map; the next opening shows it again.
            menu->close();
            click(mine, f.rowOf(mine, "Sound & Video"));
            f.panel().dismiss();
            QCOMPARE(UserDefaults::expandedAppCats(), f.vm().expandedAppCats());
            QVERIFY(f.clickTray());
            MenuListView& again = f.menuView(0);
            QVERIFY(again.isExpanded(f.rowOf(again, "Sound & Video")));
            QCOMPARE(again.isExpanded(f.rowOf(again, "Games")), !oneOpen);
        }
    }

    // A row dragged from its menu onto My Apps, through My Apps' selector: where the pointer is
    // released decides the request.
    void dropsLandWherePointed()
    {
        // The menu and row dragged; where it is released: a row ("Games/app2": an app in Games),
        // in its upper half or, with "+", its lower half; "My Apps" its selector; "" below the
        // rows. Then the request sent.
        const std::tuple<int, QString, QString, std::string> cases[] = {
            { 2, "app4", "My Apps", rq::placePinnedApp("app4", "") },
            { 2, "app4", "app1", rq::placePinnedApp("app4", "app1") },
            { 1, "app3", "app1+", rq::placePinnedApp("app3", "") },
            { 2, "app1", "Games", rq::placeAppcatApp("app1", "Games", "") },
            { 0, "app3", "Games/app2", rq::placeAppcatApp("app3", "Games", "app2") },
            { 0, "app2", "Games/app2+", rq::placeAppcatApp("app2", "Games", "app3") },
            { 0, "Work", "Games", rq::placeAppcat("Work", "Games") },
            { 0, "Games", "Work+", rq::placeAppcat("Games", "Sound & Video") },
            { 0, "Sound & Video", "app1", rq::placeAppcat("Sound & Video", "Games") },
            { 0, "Games", "", rq::placeAppcat("Games", "") },
        };
        PanelFixture f;
        QVERIFY(open(f));
        f.vm().setExpandedAppCat("Games", true);
        MenuListView& mine = f.menuView(0);
        auto* selector = f.view().findChild<MenuSelectorButton*>("menuSelectorButton0");
        for (const auto& [menu, dragged, onto, request] : cases) {
            QTest::mouseClick(f.view().findChild<MenuSelectorButton*>(
                                  QStringLiteral("menuSelectorButton%1").arg(menu)),
                              Qt::LeftButton);
            MenuListView& from = f.menuView(menu);
            const QPoint pressed = from.visualRect(f.rowOf(from, dragged.toStdString())).center();
            QTest::mousePress(from.viewport(), Qt::LeftButton, {}, pressed);
            QTest::mouseMove(from.viewport(), pressed + QPoint(0, 20));
            QTest::mouseMove(selector);
            QWidget* target = onto == "My Apps" ? static_cast<QWidget*>(selector) : mine.viewport();
            QPoint at = target->rect().bottomLeft() + QPoint(10, -2);
            if (onto != "My Apps" && !onto.isEmpty()) {
                const QString name = onto.section('/', -1).remove('+');
                QModelIndex row = f.rowOf(mine, name.toStdString());
                if (onto.contains('/'))
                    row = mine.model()->index(row.row(), 0, f.rowOf(mine, "Games"));
                at = mine.visualRect(row).center() + QPoint(0, onto.endsWith('+') ? 4 : -4);
            }
            QTest::mouseMove(target, at);
            const std::size_t before = f.server().requests().size();
            QTest::mouseRelease(target, Qt::LeftButton, {}, at);
            QVERIFY(f.server().waitForRequests(before + 1));
            QCOMPARE(f.server().requests().at(before), request);
            QCOMPARE(f.view().selectedMenu(), Pomvar::MyApps);
        }
    }

    void selectorAndControlMenuFollowTheSettings()
    {
        for (const bool saveLastMenu : { true, false }) { // the menu saved, or an update
            init();
            const bool update = !saveLastMenu;
            PanelFixture f;
            f.setPrefs(FakeMenus::prefs(0, saveLastMenu, false));
            f.server().setDefaultReply("check-update-available",
                                       Reply::json({ { "isUpdateAvailable", update } }));
            QVERIFY(open(f, 2));
            // An update shows on the control menu's button and entry, with a badge of 16 points for
            // 1x and 2x displays.
            auto* control = f.view().findChild<ControlMenu*>("controlMenu");
            QCOMPARE(control->imageAsset(), update ? "ctrlMenuBadge" : "ctrlMenu");
            const QList<QAction*> entries = control->entries()->actions();
            QCOMPARE(entries.at(2)->text(), update ? "Install Pomvar Update" : "Check For Updates");
            QVERIFY(entries.at(3)->isSeparator());
            QCOMPARE(entries.at(2)->icon().availableSizes(),
                     update ? QList<QSize>({ { 16, 16 }, { 32, 32 } }) : QList<QSize>());
            QCOMPARE(f.view().selectedMenu(), saveLastMenu ? Pomvar::AllApps : Pomvar::MyApps);
            QCOMPARE(f.view().geometry(), f.panel().rect());
            // Each list starts 10 below the top of its page, edge to edge otherwise.
            for (auto* button : f.view().findChildren<MenuSelectorButton*>()) {
                QTest::mouseClick(button, Qt::LeftButton);
                MenuPage* page = f.view().menuPage(f.view().selectedMenu());
                QTRY_COMPARE(page->view()->geometry(), page->rect().adjusted(0, 10, 0, 0));
            }
            auto* recent = f.view().findChild<MenuSelectorButton*>("menuSelectorButton1");
            // A click on the selected menu's button keeps it selected.
            QTest::mouseClick(recent, Qt::LeftButton);
            QTest::mouseClick(recent, Qt::LeftButton);
            for (auto* button : f.view().findChildren<MenuSelectorButton*>())
                QCOMPARE(button->isChecked(), button == recent);
            QVERIFY(f.view().menuPage(Pomvar::Recent)->isVisible());
            // Preferences changed meanwhile apply to the lists as the opening reads them.
            f.setPrefs(FakeMenus::prefs(0, saveLastMenu, false, true, saveLastMenu));
            QTest::keyClick(f.view().menuView(Pomvar::Recent), Qt::Key_Escape);
            QVERIFY(!f.panel().isVisible());
            QVERIFY(f.clickTray());
            QCOMPARE(f.view().selectedMenu(), saveLastMenu ? Pomvar::Recent : Pomvar::MyApps);
            for (int menu = 0; menu < 3; ++menu)
                QCOMPARE(f.menuView(menu).isAnimated(), saveLastMenu);
            QCOMPARE(f.scene().trayIcon()->icon()->toolTip(), "Pomvar");
        }
    }

    void emptyMenusShowTheirEmptyStates()
    {
        PanelFixture f;
        f.start();
        QVERIFY(f.clickTray());
        // Nothing at all: My Apps and Recent show their empty states, at the top of the page.
        for (const Pomvar menu : { Pomvar::MyApps, Pomvar::Recent, Pomvar::AllApps })
            QCOMPARE(f.view().menuPage(menu)->isShowingEmptyState(), menu != Pomvar::AllApps);
        MenuPage* mine = f.view().menuPage(Pomvar::MyApps);
        QWidget* empty = mine->currentWidget();
        for (QLabel* label : empty->findChildren<QLabel*>())
            if (!label->wordWrap()) // Not stretched: the free space stays below.
                QCOMPARE(label->height(), label->sizeHint().height());
        // The stack right under the menu's top padding, the image at its natural size, the hints
        // in the plain text colour.
        auto* image = empty->findChild<QLabel*>("emptyImage");
        QCOMPARE(image->mapTo(mine, QPoint()), QPoint(0, 10));
        QCOMPARE(image->pixmap().deviceIndependentSize(), QSizeF(96, 96));
        const QColor text = f.view().palette().color(QPalette::WindowText);
        for (QLabel* hint : empty->findChildren<QLabel*>("emptyHint"))
            QCOMPARE(hint->palette().color(hint->foregroundRole()), text);
        // The title at 36; only Organize is in the callout font, Search in the default one.
        QCOMPARE(f.view().findChild<QWidget*>("pomvarTitle")->font().pixelSize(), 36);
        QCOMPARE(f.view().findChild<QWidget*>("searchButton")->font(), f.view().font());
        QCOMPARE(f.view().findChild<QWidget*>("organizeButton")->font().pixelSize(),
                 PanelFonts::calloutPixelSize);
    }
};

QTEST_MAIN(TestPomvarView)
#include "tst_pomvarview.moc"
