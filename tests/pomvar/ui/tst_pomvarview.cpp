// The panel against a fake runtime server: opening, menus, launching, context menus, the
// control bar and control menu, the selector and the category expansion rules.
#include "PanelFixture.h"

#include "ipc/RequestText.h"
#include "model/MenuList.h"
#include "model/PomvarViewModel.h"
#include "model/UserDefaults.h"
#include "ui/AppContextMenu.h"
#include "ui/ControlMenu.h"
#include "ui/MenuListView.h"
#include "ui/MenuPage.h"
#include "ui/MenuSelectorButton.h"
#include "ui/PanelWindow.h"
#include "ui/PomvarView.h"

#include <QAbstractButton>
#include <QLabel>
#include <QMenu>
#include <QScrollBar>
#include <QSettings>
#include <QStackedWidget>
#include <QtTest>

#include <algorithm>

using namespace pomvar;
using pomvar::test::FakeMenus;
using pomvar::test::FakeRuntimeServer;
using pomvar::test::PanelFixture;

namespace {

constexpr int kMyApps = 0;
constexpr int kRecent = 1;
constexpr int kAllApps = 2;

bool contains(const std::vector<std::string>& requests, const std::string& request)
{
    return std::find(requests.begin(), requests.end(), request) != requests.end();
}

QAction* actionNamed(QMenu* menu, const QString& text)
{
    for (QAction* action : menu->actions())
        if (action->text() == text)
            return action;
    return nullptr;
}

QStringList texts(QMenu* menu)
{
    QStringList list;
    for (QAction* action : menu->actions())
        list << (action->isSeparator() ? QStringLiteral("—") : action->text());
    return list;
}

// Four apps; "app1" pinned; "app2" in Games and Work; categories Games, Work and Media.
void standardMenus(PanelFixture& f)
{
    const std::string icon = f.icons().square().toStdString();
    FakeMenus& menus = f.menus();
    menus.addApp({ "app1", "Terminal", icon, icon, false });
    menus.addApp({ "app2", "Text Editor", icon, icon, false });
    menus.addApp({ "app3", "Camera", icon, icon, false });
    menus.addApp({ "app4", "Calculator", icon, icon, false });
    menus.pin("app1");
    menus.addCategory("Games", { "app2", "app3" });
    menus.addCategory("Work", { "app2" });
    menus.addCategory("Media", { "app4" });
    menus.addRecent("app3");
}

// Remembers All Apps as the last menu, starts the scene and opens the panel from the tray.
bool openOnAllApps(PanelFixture& f)
{
    UserDefaults::setLastMenu(2);
    f.start();
    return f.clickTray();
}

void clearDefaults()
{
    QSettings settings(QSettings::IniFormat,
                       QSettings::UserScope,
                       QStringLiteral("pomvar"),
                       QStringLiteral("pomvar"));
    settings.clear();
    settings.sync();
}

} // namespace

class TestPomvarView : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { clearDefaults(); }

    void trayClickOpensTheFixedSizePanel()
    {
        PanelFixture f;
        standardMenus(f);
        f.start();
        QVERIFY(!f.panel().isVisible());
        QVERIFY(f.clickTray());
        QCOMPARE(f.panel().size(), QSize(360, 494));
        QVERIFY(f.panel().windowFlags() & Qt::FramelessWindowHint);
        QCOMPARE(f.view().menuView(Pomvar::AllApps)->model()->rowCount(), 4);
        QPointer<PomvarView> first = &f.view();
        f.panel().dismiss();
        QVERIFY(!f.panel().isVisible());
        // Each opening builds the content anew.
        QVERIFY(f.clickTray());
        QVERIFY(first.isNull());
    }

    void escapeClosesThePanel()
    {
        PanelFixture f;
        standardMenus(f);
        f.start();
        QVERIFY(f.clickTray());
        QTest::keyClick(f.view().menuView(Pomvar::MyApps), Qt::Key_Escape);
        QVERIFY(!f.panel().isVisible());
    }

    void clickOnAppRowClosesThePanelBeforeLaunch()
    {
        PanelFixture f;
        standardMenus(f);
        QVERIFY(openOnAllApps(f));
        QCOMPARE(f.view().selectedMenu(), Pomvar::AllApps);
        MenuListView& all = f.menuView(kAllApps);
        const QModelIndex row = f.rowOf(all, "app2");
        f.expectDismissFirst();
        const std::size_t before = f.server().requests().size();
        QTest::mouseClick(all.viewport(), Qt::LeftButton, {}, all.visualRect(row).center());
        QVERIFY(f.dismissedFirst());
        QVERIFY(!f.panel().isVisible());
        QVERIFY(contains(f.requestsSince(before, 1), request::launch("app2")));
    }

    void keyboardEnterLaunches()
    {
        PanelFixture f;
        standardMenus(f);
        f.start();
        QVERIFY(f.clickTray());
        MenuListView& mine = f.menuView(kMyApps);
        const std::size_t before = f.server().requests().size();
        // Home reaches the first row wherever the pointer left the highlight.
        QTest::keyClick(&mine, Qt::Key_Home);
        QCOMPARE(mine.currentIndex(), f.rowOf(mine, "app1"));
        QTest::keyClick(&mine, Qt::Key_Return);
        QVERIFY(!f.panel().isVisible());
        QVERIFY(contains(f.requestsSince(before, 1), request::launch("app1")));
    }

    void appContextMenuEntries()
    {
        PanelFixture f;
        standardMenus(f);
        QVERIFY(openOnAllApps(f));
        MenuListView& all = f.menuView(kAllApps);
        QMenu* menu = f.openContextMenu(all, f.rowOf(all, "app2"));
        QVERIFY(qobject_cast<AppContextMenu*>(menu));
        QCOMPARE(texts(menu),
                 QStringList({ "Open", "Get Info", "Pin App", "—", "App Categories", "Organize" }));
        menu->close();

        // A pinned app offers to unpin.
        menu = f.openContextMenu(all, f.rowOf(all, "app1"));
        QVERIFY(actionNamed(menu, QStringLiteral("Unpin App")));
        menu->close();
    }

    void closingEntriesCloseThePanelFirst_data()
    {
        QTest::addColumn<QString>("entry");
        QTest::addColumn<QString>("expected");
        QTest::newRow("Open") << "Open" << QString::fromStdString(request::launch("app2"));
        QTest::newRow("Get Info") << "Get Info"
                                  << QString::fromStdString(request::getInfoApp("app2"));
        QTest::newRow("Organize") << "Organize"
                                  << QString::fromStdString(
                                         request::organizer(OrganizerDlgMode::organizeApp, "app2"));
        QTest::newRow("Add to New Category…")
            << "Add to New Category…"
            << QString::fromStdString(request::createNewAppcatCxtmnu("app2"));
    }

    void closingEntriesCloseThePanelFirst()
    {
        QFETCH(QString, entry);
        QFETCH(QString, expected);
        PanelFixture f;
        standardMenus(f);
        QVERIFY(openOnAllApps(f));
        MenuListView& all = f.menuView(kAllApps);
        AppContextMenu* menu =
            qobject_cast<AppContextMenu*>(f.openContextMenu(all, f.rowOf(all, "app2")));
        QVERIFY(menu);
        QAction* action = actionNamed(menu, entry);
        if (!action)
            action = actionNamed(menu->appCategoriesMenu(), entry);
        QVERIFY(action);
        const std::size_t before = f.server().requests().size();
        f.expectDismissFirst();
        action->trigger();
        QVERIFY(f.dismissedFirst());
        QVERIFY(contains(f.requestsSince(before, 1), expected.toStdString()));
    }

    void pinEntryKeepsThePanelOpenAndRefreshes()
    {
        PanelFixture f;
        standardMenus(f);
        QVERIFY(openOnAllApps(f));
        MenuListView& all = f.menuView(kAllApps);
        QMenu* menu = f.openContextMenu(all, f.rowOf(all, "app3"));
        const std::size_t before = f.server().requests().size();
        QVERIFY(!UserDefaults::expandedAppCats());
        actionNamed(menu, QStringLiteral("Pin App"))->trigger();
        QVERIFY(f.panel().isVisible());
        const auto sent = f.requestsSince(before, 2);
        QCOMPARE(sent.at(0), request::togglePinApp("app3"));
        // The expansion map is saved before the menus refresh.
        QVERIFY(UserDefaults::expandedAppCats().has_value());
        QCOMPARE(FakeRuntimeServer::requestId(sent.at(1)),
                 std::string("get-menu-data-modified-status"));
    }

    void categoriesSubmenuTicksAndToggles()
    {
        PanelFixture f;
        standardMenus(f);
        QVERIFY(openOnAllApps(f));
        MenuListView& all = f.menuView(kAllApps);
        auto* menu = qobject_cast<AppContextMenu*>(f.openContextMenu(all, f.rowOf(all, "app2")));
        QVERIFY(menu);
        QMenu* categories = menu->appCategoriesMenu();
        QCOMPARE(menu->actions().at(4)->menu(), categories);
        QCOMPARE(texts(categories),
                 QStringList({ "Games", "Work", "Media", "Add to New Category…" }));
        QCOMPARE(categories->actions().at(0)->property("isMember").toBool(), true);
        QCOMPARE(categories->actions().at(1)->property("isMember").toBool(), true);
        QCOMPARE(categories->actions().at(2)->property("isMember").toBool(), false);

        f.server().queueReply("toggle-set-appcat",
                              FakeRuntimeServer::Reply::json({ { "isset", false } }));
        const std::size_t before = f.server().requests().size();
        categories->actions().at(1)->trigger();
        QVERIFY(f.panel().isVisible());
        const auto sent = f.requestsSince(before, 2);
        QCOMPARE(sent.at(0), request::toggleSetAppcat("app2", "Work"));
        QCOMPARE(FakeRuntimeServer::requestId(sent.at(1)),
                 std::string("get-menu-data-modified-status"));
        QVERIFY(UserDefaults::expandedAppCats().has_value());
    }

    void categoryNamesWithAnAmpersandShowIt()
    {
        PanelFixture f;
        const std::string icon = f.icons().square().toStdString();
        f.menus().addApp({ "player", "Player", icon, icon, false });
        f.menus().addCategory("Sound & Video", { "player" });
        QVERIFY(openOnAllApps(f));
        MenuListView& all = f.menuView(kAllApps);
        auto* menu = qobject_cast<AppContextMenu*>(f.openContextMenu(all, f.rowOf(all, "player")));
        QVERIFY(menu);
        QAction* entry = menu->appCategoriesMenu()->actions().at(0);
        // Escaped, so the menu shows the "&" instead of taking it for a mnemonic marker.
        QCOMPARE(entry->text(), QStringLiteral("Sound && Video"));
        QCOMPARE(entry->iconText(), QStringLiteral("Sound & Video"));
        const std::size_t before = f.server().requests().size();
        f.server().queueReply("toggle-set-appcat",
                              FakeRuntimeServer::Reply::json({ { "isset", false } }));
        entry->trigger();
        QCOMPARE(f.requestsSince(before, 1).at(0),
                 request::toggleSetAppcat("player", "Sound & Video"));
    }

    void noCategoriesLeavesOnlyAddToNew()
    {
        PanelFixture f;
        const std::string icon = f.icons().square().toStdString();
        f.menus().addApp({ "solo", "Solo", icon, icon, false });
        QVERIFY(openOnAllApps(f));
        MenuListView& all = f.menuView(kAllApps);
        auto* menu = qobject_cast<AppContextMenu*>(f.openContextMenu(all, f.rowOf(all, "solo")));
        QCOMPARE(texts(menu->appCategoriesMenu()), QStringList({ "Add to New Category…" }));
    }

    void categoryContextMenu_data()
    {
        QTest::addColumn<QString>("entry");
        QTest::addColumn<QString>("expected");
        QTest::newRow("Get Info") << "Get Info"
                                  << QString::fromStdString(request::getInfoAppcat("Games"));
        QTest::newRow("Organize") << "Organize"
                                  << QString::fromStdString(
                                         request::organizer(OrganizerDlgMode::organize, "Games"));
    }

    void categoryContextMenu()
    {
        QFETCH(QString, entry);
        QFETCH(QString, expected);
        PanelFixture f;
        standardMenus(f);
        f.start();
        QVERIFY(f.clickTray());
        MenuListView& mine = f.menuView(kMyApps);
        QMenu* menu = f.openContextMenu(mine, f.rowOf(mine, "Games"));
        QCOMPARE(texts(menu), QStringList({ "Get Info", "Organize" }));
        const std::size_t before = f.server().requests().size();
        f.expectDismissFirst();
        actionNamed(menu, entry)->trigger();
        QVERIFY(f.dismissedFirst());
        QVERIFY(contains(f.requestsSince(before, 1), expected.toStdString()));
    }

    void controlBarButtons_data()
    {
        QTest::addColumn<QString>("button");
        QTest::addColumn<QString>("expected");
        QTest::newRow("Search") << "searchButton"
                                << QString::fromStdString(request::plain(request::appSearch));
        QTest::newRow("Organize") << "organizeButton"
                                  << QString::fromStdString(
                                         request::organizer(OrganizerDlgMode::organize, ""));
    }

    void controlBarButtons()
    {
        QFETCH(QString, button);
        QFETCH(QString, expected);
        PanelFixture f;
        standardMenus(f);
        f.start();
        QVERIFY(f.clickTray());
        auto* widget = f.view().findChild<QAbstractButton*>(button);
        QVERIFY(widget);
        const std::size_t before = f.server().requests().size();
        f.expectDismissFirst();
        QTest::mouseClick(widget, Qt::LeftButton);
        QVERIFY(f.dismissedFirst());
        QVERIFY(contains(f.requestsSince(before, 1), expected.toStdString()));
    }

    void controlMenuEntries_data()
    {
        QTest::addColumn<QString>("entry");
        QTest::addColumn<QString>("expected");
        QTest::newRow("Settings…")
            << "Settings…"
            << QString::fromStdString(request::organizer(OrganizerDlgMode::settings, ""));
        QTest::newRow("About…") << "About…"
                                << QString::fromStdString(request::plain(request::about));
        QTest::newRow("Check For Updates")
            << "Check For Updates" << QString::fromStdString(request::plain(request::checkUpdates));
        QTest::newRow("Quit") << "Quit" << QString::fromStdString(request::plain(request::quit));
    }

    void controlMenuEntries()
    {
        QFETCH(QString, entry);
        QFETCH(QString, expected);
        PanelFixture f;
        standardMenus(f);
        f.start();
        QVERIFY(f.clickTray());
        auto* control = f.view().findChild<ControlMenu*>(QStringLiteral("controlMenu"));
        QVERIFY(control);
        QCOMPARE(control->imageAsset(), QStringLiteral("ctrlMenu"));
        QCOMPARE(texts(control->entries()),
                 QStringList({ "Settings…", "About…", "Check For Updates", "—", "Quit" }));
        const std::size_t before = f.server().requests().size();
        f.expectDismissFirst();
        actionNamed(control->entries(), entry)->trigger();
        QVERIFY(f.dismissedFirst());
        QVERIFY(contains(f.requestsSince(before, 1), expected.toStdString()));
        QCOMPARE(f.terminateCalls(), entry == QStringLiteral("Quit") ? 1 : 0);
    }

    void controlMenuShowsTheUpdateBadge()
    {
        PanelFixture f;
        standardMenus(f);
        f.server().setDefaultReply(
            "check-update-available",
            FakeRuntimeServer::Reply::json({ { "isUpdateAvailable", true } }));
        f.start();
        QVERIFY(f.clickTray());
        auto* control = f.view().findChild<ControlMenu*>(QStringLiteral("controlMenu"));
        QCOMPARE(control->imageAsset(), QStringLiteral("ctrlMenuBadge"));
        QAction* update = control->entries()->actions().at(2);
        QCOMPARE(update->text(), QStringLiteral("Install Pomvar Update"));
        QVERIFY(!update->icon().isNull());
    }

    void selectorWritesLastMenuWithoutThePreference()
    {
        PanelFixture f;
        standardMenus(f);
        f.setPrefs(FakeMenus::prefs(0, false, false));
        UserDefaults::setLastMenu(2);
        f.start();
        QVERIFY(f.clickTray());
        // Without the preference the panel opens on My Apps whatever was stored.
        QCOMPARE(f.view().selectedMenu(), Pomvar::MyApps);
        QCOMPARE(f.view().findChild<QStackedWidget*>(QStringLiteral("menuStack"))->currentWidget(),
                 f.view().menuPage(Pomvar::MyApps));
        auto* recent =
            f.view().findChild<MenuSelectorButton*>(QStringLiteral("menuSelectorButton1"));
        QTest::mouseClick(recent, Qt::LeftButton);
        QCOMPARE(f.view().selectedMenu(), Pomvar::Recent);
        QCOMPARE(UserDefaults::lastMenu(), 1);
        QVERIFY(recent->isChecked());
        f.panel().dismiss();
        QVERIFY(f.clickTray());
        QCOMPARE(f.view().selectedMenu(), Pomvar::MyApps);
    }

    void selectorWithThePreference()
    {
        PanelFixture f;
        standardMenus(f);
        f.start();
        // Never written: My Apps.
        QVERIFY(f.clickTray());
        QCOMPARE(f.view().selectedMenu(), Pomvar::MyApps);
        auto* all = f.view().findChild<MenuSelectorButton*>(QStringLiteral("menuSelectorButton2"));
        QTest::mouseClick(all, Qt::LeftButton);
        QCOMPARE(UserDefaults::lastMenu(), 2);
        f.panel().dismiss();
        QVERIFY(f.clickTray());
        QCOMPARE(f.view().selectedMenu(), Pomvar::AllApps);
    }

    void switchingMenusKeepsScrollPositions()
    {
        PanelFixture f;
        const std::string icon = f.icons().square().toStdString();
        f.menus().addApps(300, icon, icon);
        QVERIFY(openOnAllApps(f));
        MenuListView& all = f.menuView(kAllApps);
        all.verticalScrollBar()->setValue(1500);
        QTest::mouseClick(
            f.view().findChild<MenuSelectorButton*>(QStringLiteral("menuSelectorButton0")),
            Qt::LeftButton);
        QTest::mouseClick(
            f.view().findChild<MenuSelectorButton*>(QStringLiteral("menuSelectorButton2")),
            Qt::LeftButton);
        QCOMPARE(all.verticalScrollBar()->value(), 1500);
    }

    void emptyStates()
    {
        PanelFixture f;
        f.start();
        QVERIFY(f.clickTray());
        MenuPage* mine = f.view().menuPage(Pomvar::MyApps);
        QVERIFY(mine->isShowingEmptyState());
        QStringList labels;
        for (QLabel* label : mine->currentWidget()->findChildren<QLabel*>())
            labels << label->text();
        QVERIFY(labels.contains(QStringLiteral("My Apps")));
        QVERIFY(labels.contains(QStringLiteral(
            "Click Organize to pin your favorite apps to the Pomvar and organize apps into app "
            "categories.")));
        QVERIFY(labels.contains(
            QStringLiteral("Click All Apps on the left to browse apps on your Mac.")));
        MenuPage* recent = f.view().menuPage(Pomvar::Recent);
        QVERIFY(recent->isShowingEmptyState());
        QCOMPARE(recent->currentWidget()->objectName(), QStringLiteral("recentAppsEmpty"));
        // All Apps has no empty state: an empty list.
        QVERIFY(!f.view().menuPage(Pomvar::AllApps)->isShowingEmptyState());
    }

    void oneExpandedCategoryCollapsesTheOther()
    {
        PanelFixture f;
        standardMenus(f);
        f.setPrefs(FakeMenus::prefs(0, true, true));
        f.start();
        QVERIFY(f.clickTray());
        MenuListView& mine = f.menuView(kMyApps);
        const QModelIndex games = f.rowOf(mine, "Games");
        const QModelIndex work = f.rowOf(mine, "Work");
        QVERIFY(!mine.isExpanded(games));
        QTest::mouseClick(mine.viewport(), Qt::LeftButton, {}, mine.visualRect(games).center());
        QVERIFY(mine.isExpanded(games));
        QCOMPARE(f.vm().expandedAppCats().at("Games"), true);
        QTest::mouseClick(mine.viewport(), Qt::LeftButton, {}, mine.visualRect(work).center());
        QVERIFY(mine.isExpanded(work));
        QVERIFY(!mine.isExpanded(games));
        QCOMPARE(f.vm().expandedAppCats().at("Games"), false);
        // The pinned app is never touched.
        QCOMPARE(f.vm().expandedAppCats().count("app1"), 0u);
    }

    void categoriesStayOpenWithoutTheRule()
    {
        PanelFixture f;
        standardMenus(f);
        f.start();
        QVERIFY(f.clickTray());
        MenuListView& mine = f.menuView(kMyApps);
        const QModelIndex games = f.rowOf(mine, "Games");
        const QModelIndex work = f.rowOf(mine, "Work");
        QTest::mouseClick(mine.viewport(), Qt::LeftButton, {}, mine.visualRect(games).center());
        QTest::mouseClick(mine.viewport(), Qt::LeftButton, {}, mine.visualRect(work).center());
        QVERIFY(mine.isExpanded(games));
        QVERIFY(mine.isExpanded(work));
        // Closing saves the map; the next opening shows it again.
        f.panel().dismiss();
        QCOMPARE(UserDefaults::expandedAppCats()->at("Work"), true);
        QVERIFY(f.clickTray());
        MenuListView& again = f.menuView(kMyApps);
        QVERIFY(again.isExpanded(f.rowOf(again, "Games")));
        QVERIFY(!again.isExpanded(f.rowOf(again, "Media")));
    }

    void refreshOnOpening()
    {
        PanelFixture f;
        standardMenus(f);
        f.start();
        const std::string icon = f.icons().square().toStdString();
        f.menus().addApp({ "app5", "Fifth", icon, icon, false });
        f.menus().install(f.server());
        f.server().queueReply("get-menu-data-modified-status",
                              FakeRuntimeServer::Reply::json(FakeMenus::everythingModified()));
        QVERIFY(f.clickTray());
        QCOMPARE(f.view().menuView(Pomvar::AllApps)->model()->rowCount(), 5);
    }
};

QTEST_MAIN(TestPomvarView)
#include "tst_pomvarview.moc"
