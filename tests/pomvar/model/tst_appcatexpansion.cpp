#include "FakeMenus.h"
#include "FakeRuntimeServer.h"
#include "model/AppCatExpansion.h"
#include "model/PomvarViewModel.h"
#include "model/UserDefaults.h"

#include <QSettings>
#include <QSignalSpy>
#include <QTest>

using namespace pomvar;
using test::FakeRuntimeServer;
using Reply = FakeRuntimeServer::Reply;
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

    // Collapsing the others when one opens: tst_pomvarview.
    void buildsReconcileWithTheSavedMap()
    {
        FakeRuntimeServer server;
        QVERIFY(server.listen());
        test::FakeMenus menus;
        menus.addApps(1, "/i/24.png", "/i/48.png");
        menus.addCategory("A", { "app1" });
        menus.addCategory("New", {});
        menus.addCategory("C", {});
        menus.rename("Old", "New");
        menus.install(server);
        // No saved map: all collapsed, whatever the preference.
        PomvarViewModel vm(PomvarRT{ "localhost", server.port() });
        QCOMPARE(vm.expandedAppCats(), (Map{ { "A", false }, { "New", false }, { "C", false } }));
        // Saved map with a rename: "Old" becomes "New".
        UserDefaults::setExpandedAppCats({ { "A", true }, { "Old", true } });
        server.queueReply("get-menu-data-modified-status",
                          Reply::json(test::FakeMenus::modified("appcatsModified")));
        QSignalSpy reset(&vm, &PomvarViewModel::expandedAppCatsChanged);
        vm.updateMenu();
        QCOMPARE(reset.count(), 1); // assigned at once
        QCOMPARE(vm.expandedAppCats(), (Map{ { "A", true }, { "New", true }, { "C", false } }));
    }
};

QTEST_GUILESS_MAIN(TestAppCatExpansion)
#include "tst_appcatexpansion.moc"
