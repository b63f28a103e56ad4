// On a display whose scale is not 1, rows draw the 2x icon file.
#include "IconFiles.h"
#include "model/MenuList.h"
#include "ui/MenuListView.h"
#include "ui/MenuRowDelegate.h"

#include <QtTest>

using namespace pomvar;

class TestMenuRowsScale : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void scaledDisplayUsesTheTwoXFile()
    {
        test::IconFiles icons;
        std::optional<UserPrefs> prefs = UserPrefs{};
        MenuList all;
        TreeItem item;
        item.id = "a";
        item.name = "Wide at 2x";
        item.bundleID = "";
        item.iconPath = icons.square().toStdString();
        item.iconPath2x = icons.wide3().toStdString();
        all.append(item);
        MenuListView view(
            Pomvar::AllApps, all, [&prefs]() -> const std::optional<UserPrefs>& { return prefs; });
        view.resize(266, 200);
        view.show();
        QVERIFY(QTest::qWaitForWindowExposed(&view));
        QCOMPARE(view.devicePixelRatioF(), 2.0);
        const QModelIndex index = all.index(0, 0);
        QCOMPARE(MenuRowDelegate::iconPath(index, view.viewport()), icons.wide3());
        // The 2x file is three times as wide as high: so is the drawn icon.
        QCOMPARE(
            view.rowDelegate()->iconRect(view.visualRect(index), index, view.viewport()).size(),
            QSize(54, 18));
        // Painting reads that file at the device's resolution.
        QVERIFY(!view.viewport()->grab().isNull());
    }
};

QTEST_MAIN(TestMenuRowsScale)
#include "tst_menurows_scale.moc"
