#include "model/AppCatExpansion.h"
#include "model/UserDefaults.h"

#include <QSettings>
#include <QTest>

using namespace pomvar;
using Map = AppCatExpansion::ExpansionMap;

Q_DECLARE_METATYPE(CategoryRename)
Q_DECLARE_METATYPE(Map)

class TestAppCatExpansion : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        QSettings(QSettings::IniFormat, QSettings::UserScope, "pomvar", "pomvar").clear();
    }

    void reconcileCarriesRenamesAndPrunes_data()
    {
        QTest::addColumn<Map>("saved");
        QTest::addColumn<CategoryRename>("rename");
        QTest::addColumn<bool>("saveExpAppCats");
        QTest::addColumn<Map>("expected"); // the categories are now A, New and C
        QTest::newRow("rename carries the state, deleted categories go")
            << Map{ { "A", true }, { "Old", true }, { "Deleted", true } }
            << CategoryRename{ "Old", "New", {} } << true
            << Map{ { "A", true }, { "New", true }, { "C", false } };
        QTest::newRow("not saving: all collapsed")
            << Map{ { "A", true }, { "Old", true } } << CategoryRename{ "Old", "New", {} } << false
            << Map{ { "A", false }, { "New", false }, { "C", false } };
        // "Gone" has no entry: the entry saved under "New" is removed, then New comes back
        // collapsed.
        QTest::newRow("rename without a saved entry")
            << Map{ { "A", true }, { "New", true } } << CategoryRename{ "Gone", "New", {} } << true
            << Map{ { "A", true }, { "New", false }, { "C", false } };
        QTest::newRow("rename to the same name drops it")
            << Map{ { "A", true }, { "New", true } } << CategoryRename{ "A", "A", {} } << true
            << Map{ { "A", false }, { "New", true }, { "C", false } };
    }
    void reconcileCarriesRenamesAndPrunes()
    {
        QFETCH(Map, saved);
        QFETCH(CategoryRename, rename);
        QFETCH(bool, saveExpAppCats);
        QFETCH(Map, expected);
        UserPrefs prefs;
        prefs.saveExpAppCats = saveExpAppCats;
        QCOMPARE(AppCatExpansion::reconcile(saved, { rename }, { "A", "New", "C" }, prefs),
                 expected);
    }
    void savedMapsOfNonBooleansAreIgnored()
    {
        QSettings settings(QSettings::IniFormat, QSettings::UserScope, "pomvar", "pomvar");
        // Values must be booleans.
        for (const QVariant& saved : { QVariant(QVariantMap{ { "A", "true" } }), QVariant("A") }) {
            settings.setValue("ExpandedAppCats", saved);
            settings.sync();
            QVERIFY(!UserDefaults::expandedAppCats());
        }
    }
};

QTEST_GUILESS_MAIN(TestAppCatExpansion)
#include "tst_appcatexpansion.moc"
