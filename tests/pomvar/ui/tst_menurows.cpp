// App and category rows: sizes per density and menu, measured from the delegate's geometry,
// the icon's proportions, the hover highlight.
#include "IconFiles.h"
#include "model/MenuList.h"
#include "ui/MenuListView.h"
#include "ui/MenuRowDelegate.h"
#include "ui/MenuSelectionColor.h"

#include <QApplication>
#include <QtTest>

using namespace pomvar;

namespace {

TreeItem app(const std::string& key,
             const QString& icon,
             bool pinnedMenuItem = false,
             bool pinned = false)
{
    TreeItem item;
    item.id = key;
    item.name = "App " + key;
    item.isPinnedAppMenuItem = pinnedMenuItem;
    item.isPinned = pinned || pinnedMenuItem;
    item.bundleID = "";
    item.iconPath = icon.toStdString();
    item.iconPath2x = icon.toStdString();
    return item;
}

TreeItem category(const std::string& name, std::vector<TreeItem> apps)
{
    TreeItem item;
    item.id = name;
    item.name = name;
    item.children = std::move(apps);
    return item;
}

// Antialiased fills may be off by one step per channel.
bool near(const QColor& a, const QColor& b)
{
    return std::abs(a.red() - b.red()) <= 2 && std::abs(a.green() - b.green()) <= 2 &&
           std::abs(a.blue() - b.blue()) <= 2;
}

} // namespace

class TestMenuRows : public QObject
{
    Q_OBJECT

private:
    test::IconFiles m_icons;
    std::optional<UserPrefs> m_prefs;

    std::unique_ptr<MenuListView> makeView(Pomvar menu, MenuList& list)
    {
        auto view = std::make_unique<MenuListView>(
            menu, list, [this]() -> const std::optional<UserPrefs>& { return m_prefs; });
        view->resize(266, 400);
        view->show();
        view->expandAll();
        return view;
    }

    QRect icon(MenuListView& view, const QModelIndex& index)
    {
        return view.rowDelegate()->iconRect(view.visualRect(index), index, view.viewport());
    }

    void fillMyApps(MenuList& list)
    {
        list.append(app("pinned", m_icons.square(), true));
        list.append(category("Games",
                             { app("member", m_icons.square()),
                               app("pinnedMember", m_icons.square(), false, true) }));
    }

private Q_SLOTS:
    void density_data()
    {
        QTest::addColumn<int>("density");
        QTest::addColumn<int>("sz");
        QTest::addColumn<int>("pinnedPad");
        QTest::addColumn<int>("catSide");
        QTest::newRow("compact") << 1 << 18 << 6 << 16;
        QTest::newRow("normal 0") << 0 << 24 << 8 << 24;
        QTest::newRow("normal 2") << 2 << 24 << 8 << 24;
    }

    void density()
    {
        QFETCH(int, density);
        QFETCH(int, sz);
        QFETCH(int, pinnedPad);
        QFETCH(int, catSide);
        m_prefs = UserPrefs{};
        m_prefs->menuDensity = density;

        MenuList all;
        all.append(app("a", m_icons.square()));
        auto allView = makeView(Pomvar::AllApps, all);
        const QModelIndex allRow = all.index(0, 0);
        QCOMPARE(icon(*allView, allRow).size(), QSize(18, 18));
        QCOMPARE(icon(*allView, allRow).left() - allView->visualRect(allRow).left(), 5);

        MenuList recent;
        recent.append(app("r", m_icons.square()));
        auto recentView = makeView(Pomvar::Recent, recent);
        const QModelIndex recentRow = recent.index(0, 0);
        QCOMPARE(icon(*recentView, recentRow).size(), QSize(sz, sz));
        QCOMPARE(icon(*recentView, recentRow).left() - recentView->visualRect(recentRow).left(), 5);

        MenuList mine;
        fillMyApps(mine);
        auto myView = makeView(Pomvar::MyApps, mine);
        const QModelIndex pinned = mine.index(0, 0);
        const QModelIndex games = mine.index(1, 0);
        const QModelIndex member = mine.index(0, 0, games);
        const QModelIndex pinnedMember = mine.index(1, 0, games);
        // The My Apps stack is indented by 6 and the apps of a category by 8 more.
        QCOMPARE(icon(*myView, pinned).size(), QSize(sz, sz));
        QCOMPARE(icon(*myView, pinned).left() - myView->visualRect(pinned).left(), 6 + pinnedPad);
        QCOMPARE(icon(*myView, member).size(), QSize(sz, sz));
        QCOMPARE(icon(*myView, member).left() - myView->visualRect(member).left(), 6 + 8 + 36);
        // The indent follows the app's pin, wherever it is listed.
        QCOMPARE(icon(*myView, pinnedMember).left() - myView->visualRect(pinnedMember).left(),
                 6 + 8 + pinnedPad);
        QCOMPARE(icon(*myView, games).size(), QSize(catSide, catSide));
        // Every row of a menu has the same height, icon plus padding 2 above and below at least.
        QVERIFY(myView->visualRect(pinned).height() >= sz + 4);
        QCOMPARE(myView->visualRect(games).height(), myView->visualRect(pinned).height());
    }

    void iconKeepsItsProportions()
    {
        m_prefs = UserPrefs{};
        MenuList recent;
        recent.append(app("wide", m_icons.wide()));
        recent.append(app("square", m_icons.square()));
        auto view = makeView(Pomvar::Recent, recent);
        QCOMPARE(icon(*view, recent.index(0, 0)).size(), QSize(48, 24));
        QCOMPARE(icon(*view, recent.index(1, 0)).size(), QSize(24, 24));
    }

    void scaleOnePicksTheOneXFile()
    {
        m_prefs = UserPrefs{};
        MenuList all;
        TreeItem item = app("a", m_icons.square());
        item.iconPath2x = m_icons.wide3().toStdString();
        all.append(item);
        auto view = makeView(Pomvar::AllApps, all);
        QCOMPARE(view->devicePixelRatioF(), 1.0);
        QCOMPARE(MenuRowDelegate::iconPath(all.index(0, 0), view->viewport()), m_icons.square());
        QCOMPARE(icon(*view, all.index(0, 0)).size(), QSize(18, 18));
    }

    void rowsArriveOneByOne()
    {
        m_prefs = UserPrefs{};
        MenuList all;
        auto view = makeView(Pomvar::AllApps, all);
        for (int i = 0; i < 50; ++i)
            all.append(app(std::to_string(i), m_icons.square()));
        QVERIFY(view->visualRect(all.index(0, 0)).isValid());
        all.clear();
        QCOMPARE(view->model()->rowCount(), 0);
    }

    void hoverTurnsTheRowAccent()
    {
        m_prefs = UserPrefs{};
        MenuList all;
        all.append(app("a", m_icons.square()));
        all.append(app("b", m_icons.square()));
        auto view = makeView(Pomvar::AllApps, all);
        QVERIFY(QTest::qWaitForWindowExposed(view.get()));
        const QRect row = view->visualRect(all.index(1, 0));
        const QPoint probe(row.right() - 10, row.center().y());
        const QColor accent = MenuSelectionColor(true).color(view->palette());

        QVERIFY(!near(view->viewport()->grab().toImage().pixelColor(probe), accent));
        QTest::mouseMove(view->viewport(), row.center());
        QTRY_VERIFY(near(view->viewport()->grab().toImage().pixelColor(probe), accent));
        QEvent leave(QEvent::Leave);
        QApplication::sendEvent(view.get(), &leave);
        QTRY_VERIFY(!near(view->viewport()->grab().toImage().pixelColor(probe), accent));
    }

    void keyboardMovesAndActivates()
    {
        m_prefs = UserPrefs{};
        MenuList mine;
        fillMyApps(mine);
        auto view = makeView(Pomvar::MyApps, mine);
        view->collapseAll();
        QSignalSpy launched(view.get(), &MenuListView::appActivated);
        QSignalSpy toggled(view.get(), &MenuListView::categoryToggled);
        QTest::keyClick(view.get(), Qt::Key_Down);
        QCOMPARE(view->currentIndex(), mine.index(0, 0));
        QTest::keyClick(view.get(), Qt::Key_Return);
        QCOMPARE(launched.count(), 1);
        QCOMPARE(launched.at(0).at(0).toModelIndex(), mine.index(0, 0));
        QTest::keyClick(view.get(), Qt::Key_Down);
        QCOMPARE(view->currentIndex(), mine.index(1, 0));
        QTest::keyClick(view.get(), Qt::Key_Right);
        QCOMPARE(toggled.count(), 1);
        QCOMPARE(toggled.at(0).at(1).toBool(), true);
        // The view waits for the panel to store the state; it never expands by itself.
        QVERIFY(!view->isExpanded(mine.index(1, 0)));
        view->expand(mine.index(1, 0));
        QTest::keyClick(view.get(), Qt::Key_Left);
        QCOMPARE(toggled.count(), 2);
        QCOMPARE(toggled.at(1).at(1).toBool(), false);
    }

    void clickOnAppRowActivatesIt()
    {
        m_prefs = UserPrefs{};
        MenuList mine;
        fillMyApps(mine);
        auto view = makeView(Pomvar::MyApps, mine);
        QSignalSpy launched(view.get(), &MenuListView::appActivated);
        QSignalSpy toggled(view.get(), &MenuListView::categoryToggled);
        const QModelIndex member = mine.index(0, 0, mine.index(1, 0));
        QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, view->visualRect(member).center());
        QCOMPARE(launched.count(), 1);
        QCOMPARE(launched.at(0).at(0).toModelIndex().data(MenuList::IdRole).toString(),
                 QStringLiteral("member"));
        QTest::mouseClick(
            view->viewport(), Qt::LeftButton, {}, view->visualRect(mine.index(1, 0)).center());
        QCOMPARE(toggled.count(), 1);
        QCOMPARE(toggled.at(0).at(1).toBool(), false);
    }
};

QTEST_MAIN(TestMenuRows)
#include "tst_menurows.moc"
