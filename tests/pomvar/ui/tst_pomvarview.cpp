// The panel against a fake runtime server: opening and placement, the entries that close it before
// their request, the ones that keep it open and refresh, the selector, the categories' expansion.
#include "PanelFixture.h"

#include "ui/AppContextMenu.h"
#include "ui/CheckedButtonStyle.h"
#include "ui/ControlButtonStyle.h"
#include "ui/ControlMenu.h"
#include "ui/MenuPage.h"
#include "ui/MenuSelectorButton.h"
#include "ui/PanelPlacement.h"
#include "wire/Protocol.h"

#include <QLabel>
#include <QScrollBar>
#include <QSettings>
#include <QtTest>

using namespace pomvar;
using namespace pomvar::test;

namespace {

// The entry of that text, in the menu or its submenus.
QAction* entry(QMenu* menu, const QString& text)
{
    for (QAction* action : menu->actions())
        if (QAction* found = action->text() == text ? action
                             : action->menu()       ? entry(action->menu(), text)
                                                    : nullptr)
            return found;
    return nullptr;
}

QStringList texts(QMenu* menu)
{
    QStringList list;
    for (QAction* action : menu->actions())
        list << (action->isSeparator() ? QStringLiteral("—") : action->text());
    return list;
}

// Four apps: "app1" pinned, "app2" in Games and Work, "app3" in Games; then opens the panel.
bool open(PanelFixture& f, int lastMenu = 0, bool withMenus = true)
{
    const std::string icon = f.icons().square().toStdString();
    for (const char* key : { "app1", "app2", "app3", "app4" })
        if (withMenus)
            f.menus().addApp({ key, std::string("Name of ") + key, icon, icon });
    if (withMenus) {
        f.menus().pin("app1");
        f.menus().addCategory("Games", { "app2", "app3" });
        f.menus().addCategory("Work", { "app2" });
        f.menus().addCategory("Sound & Video", { "app4" });
    }
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

    void panelOpensFilledAndEscapeCloses_data()
    {
        QTest::addColumn<bool>("onPanel");
        QTest::newRow("Escape in a list") << false;
        QTest::newRow("Escape on the panel") << true;
    }

    void panelOpensFilledAndEscapeCloses()
    {
        QFETCH(bool, onPanel);
        PanelFixture f;
        QVERIFY(open(f, 2));
        QCOMPARE(f.panel().size(), QSize(360, 494));
        QVERIFY(f.panel().windowFlags() & Qt::FramelessWindowHint);
        QCOMPARE(f.view().geometry(), f.panel().rect());
        // All Apps starts 10 below the top of its page, edge to edge otherwise.
        MenuPage* all = f.view().menuPage(Pomvar::AllApps);
        QCOMPARE(all->view()->geometry(), all->rect().adjusted(0, 10, 0, 0));
        QCOMPARE(all->view()->model()->rowCount(), 4);
        QPointer<PomvarView> first = &f.view();
        QTest::keyClick(onPanel ? static_cast<QWidget*>(&f.panel()) : all->view(), Qt::Key_Escape);
        QVERIFY(!f.panel().isVisible());
        // Each opening builds the content anew.
        QVERIFY(f.clickTray());
        QVERIFY(first.isNull());
    }

    void placementFollowsTheTray_data()
    {
        constexpr int gap = PanelPlacement::gap;
        QTest::addColumn<QRect>("icon");
        QTest::addColumn<QPoint>("pointer");
        QTest::addColumn<QPoint>("topLeft");
        // Centred under, above or beside the icon (else the pointer), inside the available area.
        QTest::newRow("top bar") << QRect(600, 0, 20, 28) << QPoint() << QPoint(429, 28 + gap);
        QTest::newRow("bottom") << QRect(600, 772, 20, 28) << QPoint() << QPoint(429, 278 - gap);
        QTest::newRow("left bar") << QRect(0, 300, 28, 20) << QPoint() << QPoint(28 + gap, 62);
        QTest::newRow("clamped") << QRect(1270, 0, 10, 28) << QPoint() << QPoint(920, 28 + gap);
        QTest::newRow("no icon") << QRect() << QPoint(400, 0) << QPoint(220, 28);
    }

    void placementFollowsTheTray()
    {
        QFETCH(QRect, icon);
        QFETCH(QPoint, pointer);
        QFETCH(QPoint, topLeft);
        const QRect available(0, 28, 1280, 772);
        QCOMPARE(PanelPlacement::topLeft(QSize(360, 494), icon, pointer, available), topLeft);
    }

    void entriesCloseThePanelBeforeTheirRequest_data()
    {
        using M = OrganizerDlgMode;
        QTest::addColumn<QString>("how");
        QTest::addColumn<std::string>("request");
        QTest::newRow("row click") << "click:app2" << request::launch("app2");
        QTest::newRow("Enter") << "key:app1" << request::launch("app1");
        QTest::newRow("Open") << "app:Open" << request::launch("app2");
        QTest::newRow("Get Info") << "app:Get Info" << request::getInfoApp("app2");
        QTest::newRow("Organize") << "app:Organize" << request::organizer(M::organizeApp, "app2");
        QTest::newRow("New category")
            << "app:Add to New Category…" << request::createNewAppcatCxtmnu("app2");
        QTest::newRow("category Info") << "category:Get Info" << request::getInfoAppcat("Games");
        QTest::newRow("category Organize")
            << "category:Organize" << request::organizer(M::organize, "Games");
        QTest::newRow("Search") << "button:searchButton" << request::plain(request::appSearch);
        QTest::newRow("Organize all")
            << "button:organizeButton" << request::organizer(M::organize, "");
        QTest::newRow("Settings") << "control:Settings…" << request::organizer(M::settings, "");
        QTest::newRow("About") << "control:About…" << request::plain(request::about);
        QTest::newRow("Updates") << "control:Check For Updates"
                                 << request::plain(request::checkUpdates);
        QTest::newRow("Quit") << "control:Quit" << request::plain(request::quit);
    }

    void entriesCloseThePanelBeforeTheirRequest()
    {
        QFETCH(QString, how);
        QFETCH(std::string, request);
        const QString kind = how.section(':', 0, 0), what = how.section(':', 1);
        PanelFixture f;
        QVERIFY(open(f, kind == "category" || kind == "key" ? 0 : 2));
        MenuListView& list = *f.view().menuView(f.view().selectedMenu());
        QMenu* menu = f.view().findChild<ControlMenu*>("controlMenu")->entries();
        if (kind == "app" || kind == "category")
            QVERIFY(menu =
                        f.openContextMenu(list, f.rowOf(list, kind == "app" ? "app2" : "Games")));
        auto* button = f.view().findChild<QAbstractButton*>(what);
        QVERIFY(kind != "button" || button->cursor().shape() == Qt::PointingHandCursor);
        const std::size_t before = f.server().requests().size();
        f.expectDismissFirst();
        if (kind == "click")
            click(list, f.rowOf(list, what.toStdString()));
        else if (kind ==
                 "key") // Home reaches the first row wherever the pointer left the highlight.
            QTest::keySequence(&list, QKeySequence(Qt::Key_Home, Qt::Key_Return));
        else if (button)
            QTest::mouseClick(button, Qt::LeftButton);
        else
            entry(menu, what)->trigger();
        QVERIFY(f.dismissedFirst());
        const auto sent = f.requestsSince(before, 1);
        QVERIFY(std::find(sent.begin(), sent.end(), request) != sent.end());
        QCOMPARE(f.terminateCalls(), what == "Quit" ? 1 : 0);
    }

    void pinAndCategoryEntriesRefreshThePanel_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<std::string>("request");
        QTest::addColumn<std::string>("flag");
        QTest::newRow("pin") << "Pin App" << request::togglePinApp("app3")
                             << std::string("pinnedAppsModified");
        QTest::newRow("category") << "Sound && Video"
                                  << request::toggleSetAppcat("app3", "Sound & Video")
                                  << std::string("appcatsModified");
    }

    void pinAndCategoryEntriesRefreshThePanel()
    {
        QFETCH(QString, text);
        QFETCH(std::string, request);
        QFETCH(std::string, flag);
        PanelFixture f;
        QVERIFY(open(f));
        MenuListView& mine = f.menuView(0);
        click(mine, f.rowOf(mine, "Games"));
        auto* menu = qobject_cast<AppContextMenu*>(f.openContextMenu(mine, f.rowOf(mine, "app3")));
        QVERIFY(menu && menu->objectName() == "appContextMenu");
        const QStringList entries = { "Open", "Get Info",       "Pin App",
                                      "—",    "App Categories", "Organize" };
        QCOMPARE(texts(menu), entries);
        QMenu* categories = menu->actions().at(4)->menu();
        QCOMPARE(categories, menu->appCategoriesMenu());
        // "&" escaped, so the menu shows it instead of taking it for a mnemonic marker.
        QCOMPARE(texts(categories),
                 QStringList({ "Games", "Work", "Sound && Video", "Add to New Category…" }));
        for (int i = 0; i < 3; ++i)
            QCOMPARE(categories->actions().at(i)->property("isMember").toBool(), i == 0);
        // What the server holds after the change.
        f.menus().pin("app3");
        f.menus().install(f.server());
        f.server().queueReply("get-menu-data-modified-status",
                              FakeRuntimeServer::Reply::json(FakeMenus::modified(flag)));
        f.server().queueReply("toggle-set-appcat",
                              FakeRuntimeServer::Reply::json({ { "isset", true } }));
        // Recent Apps fails to load, so the build ends before the expansion is recomputed: the
        // view opens the refreshed categories as their rows arrive.
        f.server().queueReply("get-recentapps-menu-data", FakeRuntimeServer::Reply::text("-"));
        const std::size_t before = f.server().requests().size();
        QVERIFY(!UserDefaults::expandedAppCats());
        entry(menu, text)->trigger();
        QVERIFY(f.panel().isVisible());
        const auto sent = f.requestsSince(before, 2);
        QCOMPARE(sent.at(0), request);
        // The expansion map is saved before the menus refresh.
        QVERIFY(UserDefaults::expandedAppCats().has_value());
        QCOMPARE(FakeRuntimeServer::requestId(sent.at(1)), "get-menu-data-modified-status");
        // The refreshed My Apps shows the new pin and keeps Games open.
        QTRY_VERIFY(f.rowOf(mine, "app3").isValid() && !f.rowOf(mine, "app3").parent().isValid());
        QVERIFY(mine.isExpanded(f.rowOf(mine, "Games")));
        menu->close();
        menu = qobject_cast<AppContextMenu*>(f.openContextMenu(mine, f.rowOf(mine, "app3")));
        QCOMPARE(texts(menu), QStringList(entries).replaceInStrings("Pin App", "Unpin App"));
    }

    void controlMenuShowsTheUpdate_data()
    {
        QTest::addColumn<bool>("available");
        QTest::addColumn<QString>("asset");
        QTest::addColumn<QString>("text");
        QTest::newRow("none") << false << "ctrlMenu"
                              << "Check For Updates";
        QTest::newRow("available") << true << "ctrlMenuBadge"
                                   << "Install Pomvar Update";
    }

    void controlMenuShowsTheUpdate()
    {
        QFETCH(bool, available);
        QFETCH(QString, asset);
        QFETCH(QString, text);
        PanelFixture f;
        f.server().setDefaultReply(
            "check-update-available",
            FakeRuntimeServer::Reply::json({ { "isUpdateAvailable", available } }));
        QVERIFY(open(f));
        auto* control = f.view().findChild<ControlMenu*>("controlMenu");
        QCOMPARE(control->imageAsset(), asset);
        QCOMPARE(texts(control->entries()),
                 QStringList({ "Settings…", "About…", text, "—", "Quit" }));
        // A badge of 16 points, with pixels for 1x and 2x displays.
        const QIcon badge = control->entries()->actions().at(2)->icon();
        QCOMPARE(badge.availableSizes(),
                 available ? QList<QSize>({ { 16, 16 }, { 32, 32 } }) : QList<QSize>());
        // The button's background is drawn from the control menu's own corner.
        const QImage image = control->grab().toImage();
        const int right = std::min(control->width(), ControlButtonStyle::image.maxWidth) - 1;
        const int middle = image.height() / 2;
        QCOMPARE(image.pixelColor(0, middle), image.pixelColor(right, middle));
        QCOMPARE(image.pixelColor(right / 2, 0), image.pixelColor(right / 2, image.height() - 1));
    }

    void selectorRemembersTheMenu_data()
    {
        QTest::addColumn<bool>("saveLastMenu");
        QTest::newRow("saved") << true;
        QTest::newRow("not saved") << false;
    }

    void selectorRemembersTheMenu()
    {
        QFETCH(bool, saveLastMenu);
        PanelFixture f;
        f.setPrefs(FakeMenus::prefs(0, saveLastMenu, false));
        QVERIFY(open(f, 2));
        QCOMPARE(f.view().selectedMenu(), saveLastMenu ? Pomvar::AllApps : Pomvar::MyApps);
        auto* recent = f.view().findChild<MenuSelectorButton*>("menuSelectorButton1");
        // The label fills the button inside its padding.
        const int pad = CheckedButtonStyle::padding;
        QCOMPARE(CheckedButtonStyle::labelRect(recent->rect()),
                 recent->rect().adjusted(pad, pad, -pad, -pad));
        // A click on the selected menu's button keeps it selected.
        QTest::mouseClick(recent, Qt::LeftButton);
        QTest::mouseClick(recent, Qt::LeftButton);
        QCOMPARE(UserDefaults::lastMenu(), 1);
        for (auto* button : f.view().findChildren<MenuSelectorButton*>())
            QCOMPARE(button->isChecked(), button == recent);
        QVERIFY(f.view().menuPage(Pomvar::Recent)->isVisible());
        f.panel().dismiss();
        QVERIFY(f.clickTray());
        QCOMPARE(f.view().selectedMenu(), saveLastMenu ? Pomvar::Recent : Pomvar::MyApps);
    }

    void switchingMenusKeepsScrollPositions()
    {
        PanelFixture f;
        f.menus().addApps(300, f.icons().square().toStdString(), f.icons().square().toStdString());
        QVERIFY(open(f, 2, false));
        f.menuView(2).verticalScrollBar()->setValue(1500);
        for (const char* name : { "menuSelectorButton0", "menuSelectorButton2" })
            QTest::mouseClick(f.view().findChild<MenuSelectorButton*>(name), Qt::LeftButton);
        QCOMPARE(f.menuView(2).verticalScrollBar()->value(), 1500);
    }

    void emptyStatesSitAtTheTop()
    {
        PanelFixture f;
        QVERIFY(open(f, 0, false));
        MenuPage* mine = f.view().menuPage(Pomvar::MyApps);
        QVERIFY(mine->isShowingEmptyState());
        QStringList labels;
        for (QLabel* label : mine->currentWidget()->findChildren<QLabel*>()) {
            labels << label->text();
            if (!label->wordWrap()) // Not stretched: the free space stays below.
                QCOMPARE(label->height(), label->sizeHint().height());
        }
        QCOMPARE(labels.mid(1),
                 QStringList({ "My Apps",
                               "Click Organize to pin your favorite apps to the Pomvar and "
                               "organize apps into app categories.",
                               "Click All Apps on the left to browse apps on your Mac." }));
        QCOMPARE(f.view().menuPage(Pomvar::Recent)->currentWidget()->objectName(),
                 "recentAppsEmpty");
        // All Apps has no empty state: an empty list.
        QVERIFY(!f.view().menuPage(Pomvar::AllApps)->isShowingEmptyState());
    }

    void categoryExpansion_data()
    {
        QTest::addColumn<bool>("oneOpen");
        QTest::newRow("one open at a time") << true;
        QTest::newRow("each on its own") << false;
    }

    void categoryExpansion()
    {
        QFETCH(bool, oneOpen);
        PanelFixture f;
        f.setPrefs(FakeMenus::prefs(0, true, oneOpen));
        QVERIFY(open(f));
        MenuListView& mine = f.menuView(0);
        QVERIFY(!mine.isExpanded(f.rowOf(mine, "Games")));
        mine.clearFocus();
        click(mine, f.rowOf(mine, "Games"));
        QVERIFY(mine.hasFocus());
        click(mine, f.rowOf(mine, "Work"));
        QVERIFY(mine.isExpanded(f.rowOf(mine, "Work")));
        QCOMPARE(mine.isExpanded(f.rowOf(mine, "Games")), !oneOpen);
        QCOMPARE(f.vm().expandedAppCats().at("Games"), !oneOpen);
        // The pinned app is never touched.
        QCOMPARE(f.vm().expandedAppCats().count("app1"), 0u);
        // Closing saves the map; the next opening shows it again.
        f.panel().dismiss();
        QCOMPARE(UserDefaults::expandedAppCats()->at("Work"), true);
        QVERIFY(f.clickTray());
        MenuListView& again = f.menuView(0);
        QCOMPARE(again.isExpanded(f.rowOf(again, "Games")), !oneOpen);
        QVERIFY(again.isExpanded(f.rowOf(again, "Work")));
        QVERIFY(!again.isExpanded(f.rowOf(again, "Sound & Video")));
    }

    void openingRefreshesModifiedMenus()
    {
        PanelFixture f;
        QVERIFY(open(f));
        f.panel().dismiss();
        f.menus().addApp({ "app5",
                           "Fifth",
                           f.icons().square().toStdString(),
                           f.icons().square().toStdString() });
        f.menus().install(f.server());
        f.server().queueReply("get-menu-data-modified-status",
                              FakeRuntimeServer::Reply::json(FakeMenus::everythingModified()));
        QVERIFY(f.clickTray());
        QCOMPARE(f.menuView(2).model()->rowCount(), 5);
    }
};

QTEST_MAIN(TestPomvarView)
#include "tst_pomvarview.moc"
