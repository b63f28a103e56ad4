#include "FakeMenus.h"
#include "FakeRuntimeServer.h"
#include "model/AppCatExpansion.h"
#include "model/PomvarViewModel.h"
#include "model/UserDefaults.h"

#include <QSettings>
#include <QSignalSpy>
#include <QStandardPaths>
#include <QTest>

using namespace pomvar;
using test::FakeRuntimeServer;
using Reply = FakeRuntimeServer::Reply;
using Map = AppCatExpansion::ExpansionMap;
using Renames = std::vector<CategoryRename>;

Q_DECLARE_METATYPE(Renames)
Q_DECLARE_METATYPE(std::vector<std::string>)
Q_DECLARE_METATYPE(Map)

namespace {

Renames renames(std::initializer_list<std::pair<const char*, const char*>> pairs)
{
    Renames list;
    for (const auto& [from, to] : pairs)
        list.push_back({ from, to, {} });
    return list;
}

UserPrefs prefsWith(bool saveExpAppCats, bool oneExpAppCat = false)
{
    UserPrefs prefs;
    prefs.saveExpAppCats = saveExpAppCats;
    prefs.oneExpAppCat = oneExpAppCat;
    return prefs;
}

} // namespace

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
        QTest::addColumn<Renames>("renamed");
        QTest::addColumn<std::vector<std::string>>("categories");
        QTest::addColumn<bool>("saveExpAppCats");
        QTest::addColumn<Map>("expected");
        const std::vector<std::string> abc = { "A", "New", "C" };
        QTest::newRow("rename carries the state")
            << Map{ { "A", true }, { "Old", true } } << renames({ { "Old", "New" } }) << abc << true
            << Map{ { "A", true }, { "New", true }, { "C", false } };
        QTest::newRow("not saving: all collapsed")
            << Map{ { "A", true }, { "Old", true } } << renames({ { "Old", "New" } }) << abc
            << false << Map{ { "A", false }, { "New", false }, { "C", false } };
        // "Gone" has no entry: the entry saved under "New" is removed, then New comes back
        // collapsed.
        QTest::newRow("rename without a saved entry")
            << Map{ { "A", true }, { "New", true } } << renames({ { "Gone", "New" } }) << abc
            << true << Map{ { "A", true }, { "New", false }, { "C", false } };
        QTest::newRow("rename to the same name drops it")
            << Map{ { "A", true }, { "New", true } } << renames({ { "A", "A" } }) << abc << true
            << Map{ { "A", false }, { "New", true }, { "C", false } };
        QTest::newRow("deleted categories are pruned")
            << Map{ { "A", true }, { "Deleted", true } } << Renames()
            << std::vector<std::string>{ "A" } << true << Map{ { "A", true } };
    }
    void reconcileCarriesRenamesAndPrunes()
    {
        QFETCH(Map, saved);
        QFETCH(Renames, renamed);
        QFETCH(std::vector<std::string>, categories);
        QFETCH(bool, saveExpAppCats);
        QFETCH(Map, expected);
        QCOMPARE(AppCatExpansion::reconcile(saved, renamed, categories, prefsWith(saveExpAppCats)),
                 expected);
    }
    void savedMapRoundTripsAnyCategoryName()
    {
        const Map expanded = { { "Games & \"Fun\"", true },
                               { "a/b\\c", false },
                               { "Müsik ♫", true },
                               { "", true },
                               { "with = and ; and [brackets]", true } };
        UserDefaults::setExpandedAppCats(expanded);
        QCOMPARE(UserDefaults::expandedAppCats(), std::optional<Map>(expanded));
        UserDefaults::setLastMenu(2);
        QCOMPARE(UserDefaults::lastMenu(), 2);

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
        QCOMPARE(vm.appsAppcats().at("app2"), (std::set<std::string>{ "A", "C" }));
        QVERIFY(vm.appsAppcats().at("app1").empty());
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
