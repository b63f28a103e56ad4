#include "FakeRuntimeServer.h"
#include "MenuPayloads.h"
#include "model/AppCatExpansion.h"
#include "model/PomvarViewModel.h"
#include "model/UserDefaults.h"

#include <QSettings>
#include <QSignalSpy>
#include <QStandardPaths>
#include <QTest>

using namespace pomvar;
using test::FakeRuntimeServer;
using Map = AppCatExpansion::ExpansionMap;
using nlohmann::json;

namespace {

json renames(std::initializer_list<std::pair<const char*, const char*>> pairs)
{
    json list = json::array();
    for (const auto& [from, to] : pairs)
        list.push_back({ { "old", from }, { "new", to } });
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

    void renamesCarryTheStateOver()
    {
        const Map saved = { { "A", true }, { "Old", true } };
        const std::vector<std::string> categories = { "A", "New", "C" };
        QCOMPARE(AppCatExpansion::reconcile(
                     saved, renames({ { "Old", "New" } }), categories, prefsWith(true)),
                 (Map{ { "A", true }, { "New", true }, { "C", false } }));
        QCOMPARE(AppCatExpansion::reconcile(
                     saved, renames({ { "Old", "New" } }), categories, prefsWith(false)),
                 (Map{ { "A", false }, { "New", false }, { "C", false } }));
    }

    void renamesWithoutASavedEntryOrToTheSameNameDropIt()
    {
        const std::vector<std::string> categories = { "A", "B" };
        // "Gone" has no entry: the entry saved under "B" is removed, then B comes back collapsed.
        QCOMPARE(AppCatExpansion::reconcile({ { "A", true }, { "B", true } },
                                            renames({ { "Gone", "B" } }),
                                            categories,
                                            prefsWith(true)),
                 (Map{ { "A", true }, { "B", false } }));
        QCOMPARE(AppCatExpansion::reconcile({ { "A", true }, { "B", true } },
                                            renames({ { "A", "A" } }),
                                            categories,
                                            prefsWith(true)),
                 (Map{ { "A", false }, { "B", true } }));
    }

    void deletedCategoriesArePruned()
    {
        QCOMPARE(AppCatExpansion::reconcile({ { "Kept", true }, { "Deleted", true } },
                                            json::array(),
                                            { "Kept" },
                                            prefsWith(true)),
                 (Map{ { "Kept", true } }));
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
        const json apps = test::allAppsJson(3);
        server.setDefaultReply("get-allapps-menu-data", FakeRuntimeServer::Reply::json(apps));
        server.queueReply(
            "get-myapps-menu-data",
            FakeRuntimeServer::Reply::json(test::myAppsJson(
                { apps[0] },
                { { "A", { apps[1] } }, { "New", {} }, { "C", { apps[1], apps[2] } } },
                { { "Old", "New" } })));

        // No saved map: all collapsed, whatever the preference.
        PomvarViewModel vm(PomvarRT{ "localhost", server.port() });
        QCOMPARE(vm.expandedAppCats(), (Map{ { "A", false }, { "New", false }, { "C", false } }));
        QCOMPARE(vm.appsAppcats().at("app0001.desktop"), (std::set<std::string>{ "A", "C" }));
        QVERIFY(vm.appsAppcats().at("app0000.desktop").empty());

        // Saved map with a rename: "Old" becomes "New".
        UserDefaults::setExpandedAppCats({ { "A", true }, { "Old", true } });
        server.queueReply(
            "get-menu-data-modified-status",
            FakeRuntimeServer::Reply::json(test::modifiedFlags(false, false, true, false)));
        server.queueReply("get-myapps-menu-data",
                          FakeRuntimeServer::Reply::json(
                              test::myAppsJson({ apps[0] },
                                               { { "A", { apps[1] } }, { "New", {} }, { "C", {} } },
                                               { { "Old", "New" } })));
        QSignalSpy reset(&vm, &PomvarViewModel::expandedAppCatsChanged);
        vm.updateMenu();
        QCOMPARE(reset.count(), 1); // assigned at once
        QCOMPARE(vm.expandedAppCats(), (Map{ { "A", true }, { "New", true }, { "C", false } }));
    }

    void collapsingLeavesThePinnedRowsAndTheNamedCategory()
    {
        FakeRuntimeServer server;
        QVERIFY(server.listen());
        const json apps = test::allAppsJson(2);
        server.setDefaultReply("get-allapps-menu-data", FakeRuntimeServer::Reply::json(apps));
        server.setDefaultReply(
            "get-myapps-menu-data",
            FakeRuntimeServer::Reply::json(
                test::myAppsJson({ apps[0] }, { { "A", { apps[1] } }, { "B", {} }, { "C", {} } })));
        UserDefaults::setExpandedAppCats({ { "A", true }, { "B", true }, { "C", true } });
        PomvarViewModel vm(PomvarRT{ "localhost", server.port() });
        QCOMPARE(vm.expandedAppCats(), (Map{ { "A", true }, { "B", true }, { "C", true } }));
        QSignalSpy stored(&vm, &PomvarViewModel::expandedAppCatChanged);
        vm.collapseAppCats("B");
        QCOMPARE(vm.expandedAppCats(), (Map{ { "A", false }, { "B", true }, { "C", false } }));
        QCOMPARE(stored.count(), 2); // one change per category stored
        QVERIFY(!vm.expandedAppCats().contains(apps[0]["appkey"].get<std::string>()));
        vm.collapseAppCats("b"); // names compare exactly
        QCOMPARE(vm.expandedAppCats().at("B"), false);
    }
};

QTEST_GUILESS_MAIN(TestAppCatExpansion)
#include "tst_appcatexpansion.moc"
