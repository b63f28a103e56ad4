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
        settings.setValue("ExpandedAppCats", QVariantMap{ { "A", QStringLiteral("true") } });
        settings.sync();
        QVERIFY(!UserDefaults::expandedAppCats()); // values must be booleans
        settings.setValue("ExpandedAppCats", QStringLiteral("A"));
        settings.sync();
        QVERIFY(!UserDefaults::expandedAppCats());
    }

    void buildsReconcileWithTheSavedMap()
    {
        FakeRuntimeServer server;
        QVERIFY(server.listen());
        test::FakeMenus menus;
        menus.addApps(3, "/i/24.png", "/i/48.png");
        menus.pin("app1");
        menus.addCategory("A", { "app2" });
        menus.addCategory("New", {});
        menus.addCategory("C", { "app2", "app3" });
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
        // Collapsing leaves the named category and never touches the pinned rows.
        QSignalSpy stored(&vm, &PomvarViewModel::expandedAppCatChanged);
        vm.collapseAppCats("New");
        QCOMPARE(vm.expandedAppCats(), (Map{ { "A", false }, { "New", true }, { "C", false } }));
        QCOMPARE(stored.count(), 2); // every other category stored
        vm.collapseAppCats("new");   // names compare exactly
        QCOMPARE(vm.expandedAppCats().at("New"), false);
    }
};

QTEST_GUILESS_MAIN(TestAppCatExpansion)
#include "tst_appcatexpansion.moc"
