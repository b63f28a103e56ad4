// App and category rows: sizes per density and menu, the icon file and its proportions, an icon
// file that cannot be read stopping the program, the hover highlight and its text readable on it
// under a light and a dark palette, keys and clicks. Also run on a display scaled by 2
// (tst_menurows_scale).
#include "ChildProcess.h"
#include "IconFiles.h"
#include "Palettes.h"
#include "model/MenuList.h"
#include "ui/MenuListView.h"
#include "ui/MenuSelectionColor.h"

#include <QAbstractItemModelTester>
#include <QtTest>

using namespace pomvar;

namespace {

TreeItem app(const std::string& key, const QString& icon, bool pinnedRow = false, bool pin = false)
{
    const std::string path = icon.toStdString();
    return { key, key, pinnedRow, pin || pinnedRow, "", path, path, std::nullopt };
}

// A pinned app, then Games with an app and a pinned app.
void fillMyApps(MenuList& list, const QString& icon)
{
    list.append(app("pinned", icon, true));
    const std::vector<TreeItem> games = { app("member", icon), app("pin", icon, false, true) };
    list.append(
        { "Games", "Games", false, false, std::nullopt, std::nullopt, std::nullopt, games });
}

// The colour drawn at a point of the view, whatever the display's scale; antialiased fills may
// be a step off per channel.
bool drawnNear(MenuListView& view, QPoint point, const QColor& colour)
{
    const QColor drawn =
        view.viewport()->grab().toImage().pixelColor(point * view.devicePixelRatioF());
    return std::abs(drawn.red() - colour.red()) + std::abs(drawn.green() - colour.green()) +
               std::abs(drawn.blue() - colour.blue()) <=
           6;
}

} // namespace

class TestMenuRows : public QObject
{
    Q_OBJECT

private:
    test::IconFiles m_icons;
    std::optional<UserPrefs> m_prefs = UserPrefs{};

    std::unique_ptr<MenuListView> makeView(Pomvar menu, MenuList& list)
    {
        auto view = std::make_unique<MenuListView>(
            menu, list, [this]() -> const std::optional<UserPrefs>& { return m_prefs; });
        view->resize(266, 400);
        view->show();
        view->expandAll();
        return view;
    }

    static QRect icon(MenuListView& view, const QModelIndex& index)
    {
        return view.rowDelegate()->iconRect(view.visualRect(index), index, view.viewport());
    }

private Q_SLOTS:
    void density()
    {
        // Compact rows: smaller icons, a smaller pinned-app indent.
        for (const auto& [density, sz, pinnedPad, catSide] :
             { std::tuple{ 1, 18, 6, 16 }, std::tuple{ 2, 24, 8, 24 } }) {
            m_prefs->menuDensity = density;
            MenuList list;
            fillMyApps(list, m_icons.square());
            const QModelIndex games = list.index(1, 0);
            // All Apps keeps small icons; the My Apps stack is indented by 6, a category's apps
            // by 8 more, and the indent follows the app's pin wherever it is listed. A category's
            // icon follows its chevron.
            const std::tuple<Pomvar, QModelIndex, int, int> rows[] = {
                { Pomvar::AllApps, list.index(0, 0), 18, 5 },
                { Pomvar::MyApps, list.index(0, 0), sz, 6 + pinnedPad },
                { Pomvar::MyApps, list.index(0, 0, games), sz, 6 + 8 + 36 },
                { Pomvar::MyApps, list.index(1, 0, games), sz, 6 + 8 + pinnedPad },
                { Pomvar::MyApps, games, catSide, 6 + 16 }
            };
            for (const auto& [menu, index, side, left] : rows) {
                auto view = makeView(menu, list);
                const QRect cell = view->visualRect(index), drawn = icon(*view, index);
                QCOMPARE(drawn.size(), QSize(side, side));
                QCOMPARE(drawn.left() - cell.left(), left);
                // Centred in its row.
                QVERIFY(std::abs((drawn.top() - cell.top()) - (cell.bottom() - drawn.bottom())) <=
                        1);
            }
        }
    }

    // The server vouches for every icon file: one that cannot be read is a broken contract.
    void anUnreadableIconStopsTheProgram()
    {
        MenuList all;
        all.append(app("a", "/nonexistent/icon.png"));
        if (qEnvironmentVariableIsSet("POMVAR_TEST_CHILD")) { // the child: stops while showing it
            makeView(Pomvar::AllApps, all)->grab();
            return;
        }
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("POMVAR_TEST_CHILD", "1");
        const test::ChildOutcome outcome = test::runChild(QCoreApplication::applicationFilePath(),
                                                          { QTest::currentTestFunction() },
                                                          20000,
                                                          environment);
        QVERIFY2(outcome.crashed() &&
                     outcome.err.contains("cannot read the icon file '/nonexistent/icon.png'"),
                 outcome.err.constData());
    }

    void iconAndHoverAccent()
    {
        const bool scaled = qEnvironmentVariableIsSet("QT_SCALE_FACTOR");
        for (const QPalette& palette : { test::lightPalette(), test::darkPalette() }) {
            MenuList recent;
            TreeItem item = app("Harmonium Player", m_icons.wide());
            item.iconPath2x = m_icons.wide3().toStdString();
            recent.append(item);
            auto view = makeView(Pomvar::Recent, recent);
            view->setPalette(palette);
            QVERIFY(QTest::qWaitForWindowExposed(view.get()));
            // The icon is 24 high and keeps the proportions of the file for the display's scale;
            // painting draws that file.
            const QImage image(scaled ? m_icons.wide3() : m_icons.wide());
            const QRect row = view->visualRect(recent.index(0, 0)),
                        drawn = icon(*view, recent.index(0, 0));
            QCOMPARE(drawn.size(), QSize(24 * image.width() / image.height(), 24));
            QVERIFY(drawnNear(*view, drawn.center(), image.pixelColor(0, 0)));
            // Hovered, the row turns the accent colour, a plain fill up to its corners.
            const QPoint probe(row.right() - 10, row.center().y());
            const QColor accent = MenuSelectionColor(true).color(view->palette());
            // From below the rows, so that the pointer moves.
            QTest::mouseMove(view->viewport(), QPoint(row.center().x(), 300));
            QTest::mouseMove(view->viewport(), row.center());
            QTRY_VERIFY(drawnNear(*view, probe, accent));
            QVERIFY(drawnNear(*view, row.topLeft(), accent));
            QVERIFY(drawnNear(*view, row.bottomRight(), accent));
            // The name, right of the icon, reads on it.
            const qreal scale = view->devicePixelRatioF();
            const QRect name = row.adjusted(drawn.right() + 2 - row.left(), 2, -2, -2);
            QVERIFY(test::textContrast(view->viewport()->grab().toImage(),
                                       QRect(name.topLeft() * scale, name.size() * scale),
                                       accent) >= 4.5);
            QEvent leave(QEvent::Leave);
            QApplication::sendEvent(view.get(), &leave);
            QTRY_VERIFY(!drawnNear(*view, probe, accent));
        }
    }

    void keysAndClicksActivateRows()
    {
        MenuList mine;
        QAbstractItemModelTester tester(&mine,
                                        QAbstractItemModelTester::FailureReportingMode::QtTest);
        fillMyApps(mine, m_icons.square());
        auto view = makeView(Pomvar::MyApps, mine);
        view->collapseAll();
        const QModelIndex games = mine.index(1, 0), member = mine.index(0, 0, games);
        QSignalSpy launched(view.get(), &MenuListView::appActivated);
        QSignalSpy toggled(view.get(), &MenuListView::categoryToggled);
        QTest::keySequence(view.get(), QKeySequence(Qt::Key_Down, Qt::Key_Return, Qt::Key_Down));
        QCOMPARE(view->currentIndex(), games);
        QTest::keyClick(view.get(), Qt::Key_Right);
        // The view waits for the panel to store the state; it never expands by itself.
        QVERIFY(!view->isExpanded(games));
        view->expand(games);
        QTest::keyClick(view.get(), Qt::Key_Left);
        QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, view->visualRect(games).center());
        QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, view->visualRect(member).center());
        QCOMPARE(launched.count(), 2);
        QCOMPARE(launched.at(0).at(0).toModelIndex(), mine.index(0, 0));
        QCOMPARE(launched.at(1).at(0).toModelIndex(), member);
        QCOMPARE(toggled.count(), 3);
        for (int i = 0; i < 3; ++i)
            QCOMPARE(toggled.at(i).at(1).toBool(), i == 0);
    }
};

QTEST_MAIN(TestMenuRows)
#include "tst_menurows.moc"
