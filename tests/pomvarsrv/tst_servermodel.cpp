// The server's state behind the requests: payloads leave out apps that are not installed,
// every change sets its flag and is saved, flags clear when reported, renames go out once.
#include "RequestHandler.h"
#include "RequestParser.h"
#include "ServerModel.h"
#include "SrvClient.h"
#include "StoreFile.h"

#include <nlohmann/json.hpp>

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace pomvar::srv;
using pomvar::srvtest::SrvClient;
using Json = nlohmann::json;

// Compares a JSON value with another or with a plain value, showing the value on failure.
#define JCOMPARE(actual, expected) QVERIFY2((actual) == (expected), Json(actual).dump().c_str())

namespace {

InstalledApps threeApps()
{
    return InstalledApps({ { "a.desktop", "Alpha", "a", "/i/a24.png", "/i/a48.png" },
                           { "b.desktop", "Beta", "b", "/i/b24.png", "/i/b48.png" },
                           { "c.desktop", "Gamma", "c", "/i/c24.png", "/i/c48.png" } });
}

} // namespace

class TestServerModel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void payloadsLeaveOutAppsNotInstalled();
    void payloadsAreValidJsonWhateverTheNames();
    void flagsAreSetAndClearedWhenReported();
    void renamesAreDeliveredOnce();
    void everyChangeIsSaved();
    void handlerRepliesOnlyToAwaitedRequests();
};

void TestServerModel::payloadsLeaveOutAppsNotInstalled()
{
    Store store;
    store.togglePin("b.desktop");
    store.togglePin("gone.desktop");
    store.createCategory("Tools");
    store.toggleMember("gone.desktop", "Tools");
    store.toggleMember("c.desktop", "Tools");
    store.toggleMember("b.desktop", "Tools");
    store.pushRecent("a.desktop");
    store.pushRecent("gone.desktop");
    ServerModel model(nullptr, store);
    model.setApps(threeApps());

    const Json all = Json::parse(model.allAppsPayload());
    QCOMPARE(all.size(), std::size_t(3));
    JCOMPARE(all[0]["appkey"], "a.desktop");
    JCOMPARE(all[1]["pinned"], true);
    JCOMPARE(all[2]["iconpath2x"], "/i/c48.png");
    JCOMPARE(all[0]["bundleid"], "a");

    const Json recent = Json::parse(model.recentAppsPayload());
    JCOMPARE(recent, Json::parse(R"([{"appkey":"a.desktop","name":"Alpha","bundleid":"a",
        "iconpath":"/i/a24.png","iconpath2x":"/i/a48.png","pinned":false}])"));

    const Json mine = Json::parse(model.takeMyAppsPayload());
    QCOMPARE(mine["pinnedapps"].size(), std::size_t(1));
    JCOMPARE(mine["pinnedapps"][0]["appkey"], "b.desktop");
    QVERIFY(!mine["pinnedapps"][0].contains("pinned"));
    JCOMPARE(mine["appcats"], Json::array({ "Tools" }));
    QCOMPARE(mine["appcatapps"]["Tools"].size(), std::size_t(2));
    JCOMPARE(mine["appcatapps"]["Tools"][0]["appkey"], "c.desktop");
    JCOMPARE(mine["appcatapps"]["Tools"][1]["pinned"], true);
    JCOMPARE(mine["renamedAppcats"], Json::array());
    // The store keeps what is not installed, for when the app comes back.
    QCOMPARE(model.store().pins().size(), std::size_t(2));
}

void TestServerModel::payloadsAreValidJsonWhateverTheNames()
{
    const std::string odd = "q\"b\\s/\n\t\x01\x1f \xc3\xa9 \xe2\x82\xac \xf0\x9f\x98\x80";
    Store store;
    store.createCategory(odd);
    store.toggleMember(odd, odd);
    store.togglePin(odd);
    store.pushRecent(odd);
    store.createCategory("bad \xff\xfe utf-8");
    ServerModel model(nullptr, store);
    model.setApps(InstalledApps({ { odd, odd, odd, odd, odd } }));
    model.renameCategory("bad \xff\xfe utf-8", "renamed \xc0");

    const Json all = Json::parse(model.allAppsPayload());
    JCOMPARE(all[0]["name"], odd);
    JCOMPARE(all[0]["pinned"], true);
    JCOMPARE(Json::parse(model.recentAppsPayload())[0]["appkey"], odd);
    const Json mine = Json::parse(model.takeMyAppsPayload());
    JCOMPARE(mine["pinnedapps"][0]["iconpath2x"], odd);
    JCOMPARE(mine["appcatapps"][odd][0]["bundleid"], odd);
    // Bytes that are not UTF-8 come out replaced, never as broken JSON.
    JCOMPARE(mine["renamedAppcats"][0]["old"], "bad \xef\xbf\xbd\xef\xbf\xbd utf-8");
    JCOMPARE(mine["appcats"][1], "renamed \xef\xbf\xbd");
}

void TestServerModel::flagsAreSetAndClearedWhenReported()
{
    ServerModel model;
    QVERIFY(!model.isReady());
    model.setApps(threeApps());
    QVERIFY(model.isReady());
    QVERIFY(model.takeFlags() == ModifiedFlags{});

    QVERIFY(model.togglePin("a.desktop"));
    QVERIFY(!model.togglePin("gone.desktop"));
    QVERIFY((model.takeFlags() == ModifiedFlags{ .pinnedApps = true }));
    QVERIFY(model.takeFlags() == ModifiedFlags{});

    QVERIFY(model.createCategoryWith("Tools", "a.desktop"));
    QVERIFY((model.takeFlags() == ModifiedFlags{ .appcats = true }));
    QCOMPARE(model.toggleMember("a.desktop", "Tools"), std::optional(false));
    QCOMPARE(model.toggleMember("a.desktop", "None"), std::optional<bool>());
    QVERIFY((model.takeFlags() == ModifiedFlags{ .appcats = true }));

    model.noteLaunched("b.desktop");
    QVERIFY((model.takeFlags() == ModifiedFlags{ .recentApps = true }));
    model.setApps(threeApps());
    model.clearRecent();
    QVERIFY((model.takeFlags() == ModifiedFlags{ .appFolder = true, .recentApps = true }));
}

void TestServerModel::renamesAreDeliveredOnce()
{
    ServerModel model;
    model.setApps(threeApps());
    model.createCategoryWith("Old", "a.desktop");
    model.takeMyAppsPayload();
    QVERIFY(model.renameCategory("Old", "New \"one\""));
    QVERIFY(!model.renameCategory("Missing", "X"));
    QVERIFY((model.takeFlags() == ModifiedFlags{ .appcats = true }));

    const Json first = Json::parse(model.takeMyAppsPayload());
    JCOMPARE(first["renamedAppcats"], Json::parse(R"([{"old": "Old", "new": "New \"one\""}])"));
    JCOMPARE(first["appcats"], Json::array({ "New \"one\"" }));
    const Json second = Json::parse(model.takeMyAppsPayload());
    JCOMPARE(second["renamedAppcats"], Json::array());

    QVERIFY(model.deleteCategory("New \"one\""));
    JCOMPARE(Json::parse(model.takeMyAppsPayload())["appcats"], Json::array());
}

void TestServerModel::everyChangeIsSaved()
{
    QTemporaryDir dir;
    StoreFile file(dir.path() + QStringLiteral("/store.json"));
    ServerModel model(&file);
    model.setApps(threeApps());
    model.togglePin("c.desktop");
    QCOMPARE(file.load().pins(), std::vector<std::string>{ "c.desktop" });
    model.createCategoryWith("Tools", "b.desktop");
    QCOMPARE(file.load().category("Tools")->apps, std::vector<std::string>{ "b.desktop" });
    model.noteLaunched("a.desktop");
    QCOMPARE(file.load().recent(), std::vector<std::string>{ "a.desktop" });
    model.setPrefs(UserPrefs{ .menuDensity = 1 });
    QCOMPARE(file.load().prefs().menuDensity, 1);
}

void TestServerModel::handlerRepliesOnlyToAwaitedRequests()
{
    ServerModel model;
    model.setApps(threeApps());
    RequestHandler handler(model);
    QSignalSpy launches(&handler, &RequestHandler::launchRequested);
    QSignalSpy prompts(&handler, &RequestHandler::newCategoryRequested);
    QSignalSpy quits(&handler, &RequestHandler::quitRequested);
    const auto handle = [&](const std::string& text) {
        return handler.handle(*RequestParser::parse(text));
    };

    JCOMPARE(Json::parse(*handle(SrvClient::plain("get-app-status"))),
             Json::parse(R"({"ready": true, "updateFinished": false})"));
    JCOMPARE(Json::parse(*handle(SrvClient::plain("get-user-prefs"))),
             Json::parse(R"({"MenuDensity": 0, "AnimationFx": true, "SaveExpAppCats": true,
                             "SaveLastMenu": true, "OneExpAppCat": false})"));
    JCOMPARE(Json::parse(*handle(SrvClient::plain("check-update-available"))),
             Json::parse(R"({"isUpdateAvailable": false})"));
    JCOMPARE(Json::parse(*handle(SrvClient::plain("get-app-update-status"))),
             Json::parse(R"({"status": "noUpdate"})"));
    JCOMPARE(Json::parse(*handle(SrvClient::toggleSetAppcat("a.desktop", "None"))),
             Json::parse(R"({"isset": false})"));

    for (const auto& text : { SrvClient::plain("check-updates"),
                              SrvClient::plain("about"),
                              SrvClient::plain("app-search"),
                              SrvClient::organizer(0, ""),
                              SrvClient::withAppkey("get-info-app", "a.desktop"),
                              SrvClient::withAppcat("get-info-appcat", "x"),
                              SrvClient::withAppkey("launch", "a.desktop"),
                              SrvClient::withAppkey("launch", "not-installed.desktop"),
                              SrvClient::withAppkey("toggle-pin-app", "b.desktop"),
                              SrvClient::withAppkey("create-new-appcat-cxtmnu", "c.desktop"),
                              std::string(R"({"id": "make-coffee"})"),
                              SrvClient::plain("quit") })
        QVERIFY2(!handle(text).has_value(), text.c_str());
    QCOMPARE(launches.size(), 1);
    QCOMPARE(launches[0][0].toString(), QStringLiteral("a.desktop"));
    QCOMPARE(prompts.size(), 1);
    QCOMPARE(quits.size(), 1);
    QVERIFY(model.store().isPinned("b.desktop"));
}

QTEST_GUILESS_MAIN(TestServerModel)
#include "tst_servermodel.moc"
