// How the front end reads the server's replies: what JsonDocument adds to simdjson's parser (a
// byte order mark skipped, a text read in place or from a copy alike, a refusal that says why),
// and the menu payloads' rows, their fields read leniently.
// The view model against a fake runtime server: what a build fetches and in what order, a failed
// fetch, the actions' answers and the update poll. The post-update notice is e2e_update's. Then
// the categories' expansion: renames carried, deleted categories pruned, a saved map read.
#include "FakeMenus.h"
#include "ipc/JsonDocument.h"
#include "model/AppCatExpansion.h"
#include "model/MenuList.h"
#include "model/MenuPayloadReader.h"
#include "model/PomvarViewModel.h"
#include "model/UserDefaults.h"

#include <QSettings>
#include <QSignalSpy>
#include <QTest>

using namespace pomvar;
using namespace pomvar::test;
using Reply = FakeRuntimeServer::Reply;
using Ids = std::vector<std::string>;
using Map = AppCatExpansion::ExpansionMap;
using nlohmann::json;

const Ids kAllMenus = { "get-allapps-menu-data",
                        "get-myapps-menu-data",
                        "get-recentapps-menu-data" };

namespace {

JsonDocument parsed(const std::string& text)
{
    return JsonDocument::parse(text).value(); // throws on a text that is not JSON
}

// An app row as the reader makes it.
TreeItem app(std::string key, bool pinned = false, bool pinnedRow = false)
{
    return { key, "", pinnedRow, pinned, "", "", "", std::nullopt };
}

TreeItem category(std::string name, std::vector<TreeItem> apps)
{
    return { name, name, false, false, std::nullopt, std::nullopt, std::nullopt, std::move(apps) };
}

// A server with two apps, one pinned, one category and one recent app.
void serveSmallMenus(FakeRuntimeServer& server)
{
    FakeMenus menus;
    menus.addApp({ "app1", "App 1", "/i/24.png", "/i/48.png" });
    menus.addApp({ "app2", "App 2", "/i/24.png", "/i/48.png" });
    menus.pin("app1");
    menus.addCategory("Work", { "app2" });
    menus.addRecent("app2");
    menus.install(server);
}

// The ids of the requests received that end with `suffix`.
Ids sent(const FakeRuntimeServer& server, const std::string& suffix = "")
{
    Ids ids;
    for (const std::string& body : server.requests())
        if (std::string id = FakeRuntimeServer::requestId(body); id.ends_with(suffix))
            ids.push_back(std::move(id));
    return ids;
}

} // namespace

class TestViewModel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void payloadsBecomeRows()
    {
        // Read in place when the text has room for the parser's padding, else from a copy; a byte
        // order mark skipped (Recent's array below); a refusal says why.
        std::string padded = R"({"k": "v"})", error;
        padded.reserve(padded.size() + simdjson::SIMDJSON_PADDING);
        QVERIFY(parsed(padded).root()["k"].get_string().value() == "v");
        QVERIFY(parsed(std::string(padded)).root()["k"].get_string().value() == "v");
        QVERIFY(!JsonDocument::parse("{\"k\":}", &error) && !error.empty());
        const std::string full =
            R"({"appkey": "a", "name": "A", "bundleid": "b", "iconpath": "i", "iconpath2x": "j")";
        TreeItem a = { "a", "A", false, false, "b", "i", "j", std::nullopt }, noKey = app("");
        noKey.name = "No key";
        // Recent: an array alone, an object gives no rows.
        MenuList recent;
        MenuPayloadReader::readRecentApps(parsed("{\"a\": " + full + "}}").root(), recent);
        MenuPayloadReader::readRecentApps(parsed("\xEF\xBB\xBF[" + full + "}]").root(), recent);
        QVERIFY(recent.items() == std::vector{ a });
        // All Apps, row by row: fields read leniently (texts of other types, "pinned" a number,
        // "Yes"), an object's members as apps in key order (a repeated key once, the last value),
        // anything else nothing.
        MenuList all;
        QSignalSpy inserted(&all, &QAbstractItemModel::rowsInserted);
        for (const std::string& payload :
             { "[" + full + R"(, "pinned": 1}, {"name": "No key"}, {"appkey": 42, "name": null,
                 "bundleid": true, "iconpath": [1], "pinned": "Yes"}, {"appkey": "n", "pinned":
                 "no"}, {"appkey": "z", "pinned": 0}])",
               std::string(R"({"k2": {"appkey": "b"}, "k1": {"appkey": "y", "appkey": "x"},
                               "k2": {"appkey": "c"}})"),
               std::string("\"text\"") })
            MenuPayloadReader::readAllApps(parsed(payload).root(), all);
        a.isPinned = true;
        const TreeItem lenient = { "42", "", false, true, "true", "", "", std::nullopt };
        QVERIFY(all.items() ==
                (std::vector{ a, noKey, lenient, app("n"), app("z"), app("x"), app("c") }));
        QCOMPARE(inserted.count(), 7);
        // My Apps: the pinned block (its apps come without "pinned"), then the categories.
        MenuList mine;
        MenuPayloadReader::readMyApps(
            parsed(R"({"pinnedapps": [{"appkey": "p"}], "appcats": ["Work", "Empty"],
                       "appcatapps": {"Work": [{"appkey": "w", "pinned": true}], "Empty": []}})")
                .root(),
            mine);
        QVERIFY(mine.items() == (std::vector{ app("p", true, true),
                                              category("Work", { app("w", true) }),
                                              category("Empty", {}) }));
        // Renames in their order (a repeated key read as its last value), the malformed ones
        // kept as sent.
        const auto renames = MenuPayloadReader::readRenames(
            parsed(R"({"renamedAppcats": [{"old": "A", "new": "X", "new": "B"},
                                          {"new": 2, "old": null}, {"old": "C"}, 5]})")
                .root());
        QStringList read;
        for (const CategoryRename& r : renames)
            read << QString::fromStdString(r.oldName + ">" + r.newName + ":" +
                                           r.malformed.value_or("-"));
        QCOMPARE(read, QStringList({ "A>B:-", ">2:-", ">:{\"old\":\"C\"}", ">:5" }));
        QVERIFY(MenuPayloadReader::readRenames(parsed(R"({"renamedAppcats": {}})").root()).empty());
    }

    void theRefreshFollowsTheFlags()
    {
        // The flag set, the menus then refetched, whether the apps' categories are indexed anew.
        const std::tuple<json, Ids, bool> cases[] = {
            { FakeMenus::modified(), {}, false },
            { FakeMenus::modified("appFolderModified"), kAllMenus, true },
            { FakeMenus::modified("appcatsModified"), { kAllMenus[1] }, true },
            { FakeMenus::modified("pinnedAppsModified"), kAllMenus, false },
            { FakeMenus::modified("recentAppsModified"), { kAllMenus[2] }, false },
        };
        for (const auto& [flags, refetched, indexRebuilt] : cases) {
            FakeRuntimeServer server;
            serveSmallMenus(server);
            PomvarViewModel vm(PomvarRT{ "localhost", server.port() }); // the first build
            QVERIFY(vm.isReady() && vm.prefs());
            server.clearRequests();
            server.queueReply("get-menu-data-modified-status", Reply::json(flags));
            QSignalSpy indexChanges(&vm, &PomvarViewModel::appsAppcatsChanged);
            vm.updateMenu();
            // The first opening reads the status before the flags too; a build asks in this order.
            Ids expected = { "get-app-status", "get-menu-data-modified-status", "get-app-status" };
            expected.push_back("get-user-prefs");
            expected.insert(expected.end(), refetched.begin(), refetched.end());
            expected.push_back("check-update-available");
            QCOMPARE(sent(server), expected);
            QVERIFY(vm.isLoadedOnStartup());
            QCOMPARE(indexChanges.count() > 0, indexRebuilt);
            // Whatever was refetched, the lists are whole again.
            QVERIFY(vm.allAppsMenuData().size() == 2 && vm.myAppsTreeData().size() == 2 &&
                    vm.recentAppsMenuData().size() == 1);
            QCOMPARE(vm.appsAppcats(),
                     (PomvarViewModel::AppCategories{ { "app1", {} }, { "app2", { "Work" } } }));
            server.clearRequests();
            vm.updateMenu(); // later openings start with the flags
            QCOMPARE(sent(server).front(), std::string("get-menu-data-modified-status"));
        }
    }

    void aFailedFetchEndsTheBuildAndIsRetriedAtTheNextOpening()
    {
        FakeRuntimeServer server;
        serveSmallMenus(server);
        server.queueReply("check-update-available", Reply::json({ { "isUpdateAvailable", true } }));
        PomvarViewModel vm(PomvarRT{ "localhost", server.port() });
        QVERIFY(vm.isUpdateAvailable());

        // All Apps fails while every list is empty: nothing else is fetched, the flag is kept.
        server.queueReply("get-menu-data-modified-status",
                          Reply::json(FakeMenus::modified("appFolderModified")));
        server.queueReply("get-allapps-menu-data", Reply::text("not json"));
        server.clearRequests();
        vm.updateMenu();
        QCOMPARE(sent(server, "-menu-data"), Ids{ "get-allapps-menu-data" });
        QVERIFY(vm.allAppsMenuData().isEmpty() && vm.myAppsTreeData().isEmpty());
        QVERIFY(vm.isUpdateAvailable());

        // Next opening, no flag: the empty lists are fetched again. An incomplete update answer
        // counts as no update.
        server.queueReply("check-update-available", Reply::json(json::object()));
        server.clearRequests();
        vm.updateMenu();
        QCOMPARE(sent(server, "-menu-data"), kAllMenus);
        QCOMPARE(vm.allAppsMenuData().size(), std::size_t{ 2 });
        QVERIFY(!vm.isUpdateAvailable());
        // The actions return the server's answer.
        server.queueReply("toggle-set-appcat", Reply::json({ { "isset", false } }));
        QVERIFY(!vm.toggleSetAppCategory("a\"b", "Games") && vm.toggleSetAppCategory("k", "Work"));
    }

    void everyStartPollsAfreshUntilEachPollSeesAFinalStatus()
    {
        FakeRuntimeServer server;
        const auto status = [](const char* text) { return Reply::json({ { "status", text } }); };
        server.setDefaultReply("get-app-update-status", status("checking"));
        PomvarViewModel vm(PomvarRT{ "localhost", server.port() });
        server.clearRequests();
        QVERIFY(!vm.appUpdateStatusTimer());
        vm.openOrganizer(OrganizerDlgMode::organizeApp, "a");
        QPointer<QTimer> first = vm.appUpdateStatusTimer();
        QVERIFY(first && first->isActive());
        QCOMPARE(first->interval(), 1000);
        vm.checkUpdates();
        QPointer<QTimer> second = vm.appUpdateStatusTimer();
        QVERIFY(second && second != first);
        vm.settings();
        // The first poll is replaced, not stopped: both ask until each sees a final answer.
        QTRY_VERIFY_WITH_TIMEOUT(sent(server, "get-app-update-status").size() >= 3, 5000);
        QVERIFY(first->isActive() && second->isActive());
        for (int poll = 0; poll < 3; ++poll)
            server.queueReply("get-app-update-status", status("noUpdate"));
        QTRY_VERIFY_WITH_TIMEOUT(!first && !second, 5000);

        // Ready to install ends the program on the third tick; the status's case matters.
        for (const char* text : { "downloading", "NoUpdate", "readyToInstall" })
            server.queueReply("get-app-update-status", status(text));
        int terminations = 0;
        vm.setTerminateApplication([&] { ++terminations; });
        server.clearRequests();
        vm.checkUpdates();
        QPointer<QTimer> poll = vm.appUpdateStatusTimer();
        QTRY_COMPARE_WITH_TIMEOUT(terminations, 1, 10000);
        QCOMPARE(sent(server, "get-app-update-status").size(), std::size_t{ 3 });
        QTRY_VERIFY(!poll); // stopped and released
    }

    void expansionCarriesRenamesAndPrunesAndReadsOnlyBooleans()
    {
        // The saved map ("A+": A open), the rename, whether maps are saved, then the map for the
        // categories now there: A, New and C.
        const std::tuple<QString, CategoryRename, bool, QString> cases[] = {
            { "A+ Old+ Deleted+", { "Old", "New", {} }, true, "A+ New+ C-" }, // deleted ones go
            { "A+ Old+", { "Old", "New", {} }, false, "A- New- C-" }, // not saved: all closed
            // "Gone" has no entry: the one saved under "New" goes, New comes back collapsed.
            { "A+ New+", { "Gone", "New", {} }, true, "A+ New- C-" },
            { "A+ New+", { "A", "A", {} }, true, "A- New+ C-" }, // a rename to itself drops it
        };
        const auto map = [](const QString& text) {
            Map read;
            for (const QString& entry : text.split(' '))
                read[entry.chopped(1).toStdString()] = entry.endsWith('+');
            return read;
        };
        for (const auto& [saved, rename, saveExpAppCats, expected] : cases) {
            UserPrefs prefs;
            prefs.saveExpAppCats = saveExpAppCats;
            QCOMPARE(AppCatExpansion::reconcile(map(saved), { rename }, { "A", "New", "C" }, prefs),
                     map(expected));
        }
        // A saved map of anything but booleans is no map.
        QSettings settings(QSettings::IniFormat, QSettings::UserScope, "pomvar", "pomvar");
        for (const QVariant& saved : { QVariant(QVariantMap{ { "A", "true" } }), QVariant("A") }) {
            settings.setValue("ExpandedAppCats", saved);
            QVERIFY(!UserDefaults::expandedAppCats());
        }
        settings.clear();
    }
};

QTEST_GUILESS_MAIN(TestViewModel)
#include "tst_viewmodel.moc"
