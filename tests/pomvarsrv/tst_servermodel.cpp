// The server in-process: the store and its file, the payloads, the flags every change sets and
// a report clears, renames reported once, every change saved, the request texts parsed, which
// requests are answered, the port option. The new-category prompt is tst_organizer's, with the
// organizer's own name dialogs.
#include "SrvClient.h"
#include "TestDesktop.h"
#include "pomvarsrv/app/ServerOptions.h"
#include "pomvarsrv/ipc/RequestHandler.h"
#include "pomvarsrv/ipc/RequestParser.h"
#include "pomvarsrv/ipc/ServerActions.h"
#include "pomvarsrv/model/ServerModel.h"
#include "pomvarsrv/model/StoreFile.h"
#include "wire/Protocol.h"
#include "wire/RuntimeEndpoint.h"

#include <QApplication>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace pomvar;
using namespace pomvar::srv;
using Json = nlohmann::json;
using Flags = MenuDataStatus;
namespace rq = pomvar::request;

namespace {

// Quotes, a backslash, control characters and multi-byte UTF-8.
const std::string kOdd = "q\"b\\s/\n\t\r\x01\x1f \xc3\xa9 \xe2\x82\xac \xf0\x9f\x98\x80";

InstalledApps threeApps()
{
    return InstalledApps({ { "a.desktop", "Alpha", "a", "/i/a24.png", "/i/a48.png" },
                           { "b.desktop", kOdd, "b", "/i/b24.png", "/i/b48.png" },
                           { "c.desktop", "Gamma", "c", "/i/c24.png", "/i/c48.png" } });
}

// The actions a request asks of the rest of the server, as lines.
struct RecordedActions : ServerActions
{
    QStringList calls;
    void launch(const QString& appkey) override { calls << "launch " + appkey; }
    void askNewCategory(const QString& appkey) override { calls << "new category " + appkey; }
    void showSearch() override { calls << "search"; }
    void showOrganizer(int pane, const QString& item) override
    {
        calls << QStringLiteral("organizer %1 %2").arg(pane).arg(item);
    }
    void showAppInfo(const QString& appkey) override { calls << "app info " + appkey; }
    void showCategoryInfo(const QString& appcat) override { calls << "category info " + appcat; }
    void showAbout() override { calls << "about"; }
    void showUpdates() override { calls << "updates"; }
    void quit() override { calls << "quit"; }
    bool isUpdateAvailable() const override { return false; }
    std::string_view updateStatus() const override { return "noUpdate"; }
};

} // namespace

class TestServerModel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void storeAndItsFile()
    {
        // What the model does not reach: unpinning, refused names, adding twice, the Recent cap.
        Store store;
        QVERIFY(store.togglePin("a") && store.togglePin("b") && !store.togglePin("a"));
        QVERIFY(store.togglePin("a") && store.isPinned("a") && !store.isPinned("x"));
        QCOMPARE(store.pins(), (std::vector<std::string>{ "b", "a" }));
        QVERIFY(!store.createCategory("") && store.createCategory(kOdd) &&
                store.createCategory("V"));
        QVERIFY(store.addMember("y", kOdd) && !store.addMember("y", kOdd) &&
                !store.addMember("y", "?"));
        QVERIFY(!store.renameCategory(kOdd, "V") && !store.renameCategory(kOdd, ""));
        // Newest first, each app once, the oldest dropped beyond twelve.
        for (const char app : std::string_view("abcdefghijklmnd"))
            store.pushRecent(std::string(1, app));
        QByteArray recent;
        for (const auto& app : store.recent())
            recent += app;
        QCOMPARE(recent, QByteArray("dnmlkjihgfec"));
        // Use halves every half-life; a launch adds one.
        const std::int64_t now = 1'700'000'000, halfLife = std::int64_t(Store::kUseHalfLife);
        store.noteUse("a", now - 2 * halfLife);
        store.noteUse("a", now - halfLife);
        QCOMPARE(store.use("a", now), 0.75);
        QCOMPARE(store.use("x", now), 0.0);
        // Saved and read back whole, an empty category, use and prefs unlike the defaults included.
        store.setPrefs(UserPrefs{ 2, false, false, false, true });
        QTemporaryDir dir;
        StoreFile file(dir.path() + QStringLiteral("/pomvar/pomvarsrv.json"));
        QVERIFY(file.load() == Store{});
        QVERIFY(file.save(store) && file.load() == store);
        QVERIFY(store.clearRecent() && !store.clearRecent());
        // Private to its owner (the "user" bits repeat the owner's).
        QCOMPARE(QFile::permissions(file.path()) & 0x7077, QFile::ReadOwner | QFile::WriteOwner);
        // Missing members take their defaults.
        QVERIFY(Store::fromJson(Json::parse(R"({"version": 1, "prefs": {}})"))->prefs() ==
                UserPrefs{});
        // Unreadable, or not a store: kept aside, and the defaults used.
        const char* damaged[] = {
            R"({"version": 1, "pins": [tru)",
            R"({"pins": []})",
            R"({"version": 1, "pins": 3})",
            R"({"version": 1, "prefs": {"MenuDensity": "1"}})",
            R"({"version": 1, "categories": [{"apps": []}]})",
            R"({"version": 1, "categories": [{"name": "A"}, {"name": "A"}]})"
        };
        for (const char* text : damaged) {
            QVERIFY(pomvar::test::TestDesktop::write(file.path(), text));
            QVERIFY2(file.load() == Store{} && !QFile::exists(file.path()), text);
            QCOMPARE(pomvar::test::TestDesktop::read(file.setAsidePath()), QByteArray(text));
            QVERIFY(QFile::remove(file.setAsidePath()));
        }
    }

    void payloadsLeaveOutAppsNotInstalled()
    {
        Store store;
        store.togglePin("b.desktop");
        store.togglePin("gone.desktop");
        store.createCategory(kOdd);
        for (const char* app : { "gone.desktop", "c.desktop", "b.desktop" })
            store.toggleMember(app, kOdd);
        store.pushRecent("a.desktop");
        store.pushRecent("gone.desktop");
        ServerModel model(nullptr, store);
        model.setApps(threeApps());
        const auto app = [](const std::string& k, const std::string& name, bool pinned) {
            return Json{ { "appkey", k + ".desktop" },
                         { "name", name },
                         { "bundleid", k },
                         { "iconpath", "/i/" + k + "24.png" },
                         { "pinned", pinned },
                         { "iconpath2x", "/i/" + k + "48.png" } };
        };
        const Json a = app("a", "Alpha", false), b = app("b", kOdd, true),
                   c = app("c", "Gamma", false);
        JCOMPARE(Json::parse(model.allAppsPayload()), Json::array({ a, b, c }));
        JCOMPARE(Json::parse(model.recentAppsPayload()), Json::array({ a }));
        Json pinned = b;
        pinned.erase("pinned");
        JCOMPARE(Json::parse(model.takeMyAppsPayload()),
                 (Json{ { "pinnedapps", Json::array({ pinned }) },
                        { "appcats", Json::array({ kOdd }) },
                        { "appcatapps", { { kOdd, Json::array({ c, b }) } } },
                        { "renamedAppcats", Json::array() } }));
        // A rename is reported once; bytes that are not UTF-8 come out replaced, never as broken
        // JSON.
        QVERIFY(model.renameCategory(kOdd, "New \xc0"));
        const Json mine = Json::parse(model.takeMyAppsPayload());
        const std::string replaced = "New \xef\xbf\xbd";
        JCOMPARE(mine["renamedAppcats"],
                 Json::array({ Json{ { "old", kOdd }, { "new", replaced } } }));
        JCOMPARE(Json::parse(model.takeMyAppsPayload())["renamedAppcats"], Json::array());
    }

    void changesSetTheirFlagsAndAreSaved()
    {
        QTemporaryDir dir;
        StoreFile file(dir.path() + QStringLiteral("/store.json"));
        ServerModel model(&file);
        QVERIFY(!model.isReady());
        model.setApps(threeApps());
        QVERIFY(model.isReady() && model.takeFlags() == Flags{});
        model.allAppsPayload();
        // Each change succeeds (or is refused), changes the store or not, and sets these flags.
        const AppEntry rendered{ "c.desktop", {}, {}, "/r/c24.png", "/r/c48.png" };
        const std::tuple<std::function<bool()>, bool, QByteArray> changes[] = {
            { [&] { return model.togglePin("a.desktop"); }, true, "p" },
            { [&] { return !model.togglePin("gone.desktop"); }, false, "" },
            { [&] { return model.createCategoryWith("Old", "a.desktop"); }, true, "c" },
            { [&] { return !model.createCategoryWith("Old", "b.desktop"); }, false, "" },
            { [&] { return model.toggleMember("a.desktop", "Old") == false; }, true, "c" },
            { [&] { return !model.toggleMember("a.desktop", "None"); }, false, "" },
            { [&] { return model.noteLaunched("b.desktop"), true; }, true, "r" },
            { [&] { return model.setApps(threeApps()), model.clearRecent(), true; }, true, "fr" },
            { [&] { return model.setPrefs(UserPrefs{ .menuDensity = 1 }), true; }, true, "" },
            { [&] { return model.renameCategory("Old", "Work"); }, true, "c" },
            { [&] { return !model.renameCategory("?", "X"); }, false, "" },
            // Icons rendered later replace the generic one, and the menus are to be fetched again.
            { [&] { return model.setIcons({ rendered }), true; }, false, "f" },
            { [&] { return model.setIcons({}), true; }, false, "" },
            { [&] { return model.deleteCategory("Work") && !model.deleteCategory("Old"); },
              true,
              "c" },
        };
        for (const auto& [change, changesStore, flags] : changes) {
            const Store before = model.store();
            QVERIFY(change());
            const Flags set = model.takeFlags();
            QCOMPARE(QByteArray(set.appFolderModified ? "f" : "") +
                         (set.recentAppsModified ? "r" : "") + (set.appcatsModified ? "c" : "") +
                         (set.pinnedAppsModified ? "p" : ""),
                     flags);
            QCOMPARE(!(model.store() == before), changesStore);
            QVERIFY(file.load() == model.store());
            // All Apps is kept between requests, never beyond a change.
            QVERIFY(model.allAppsPayload() == MenuPayloads::allApps(model.apps(), model.store()));
        }
        JCOMPARE(Json::parse(model.allAppsPayload())[2]["iconpath2x"], "/r/c48.png");
    }

    // An icon file deleted after it was named (a cache cleaner) is never sent: before each menu
    // the files are checked, a missing one is replaced by the fallback, the front end fetches
    // the menus again and the server renders the icon again.
    void missingIconsAreReplacedAndRenderedAgain()
    {
        QTemporaryDir dir;
        const auto file = [&](const QString& name) {
            QFile(dir.filePath(name)).open(QIODevice::WriteOnly);
            return dir.filePath(name).toStdString();
        };
        ServerModel model;
        model.setFallbackIcons(file("g24.png"), file("g48.png"));
        int renders = 0;
        model.setIconsMissingHandler([&] { ++renders; });
        model.setApps(
            InstalledApps({ { "a.desktop", "A", "a", file("a24.png"), file("a48.png") },
                            { "b.desktop", "B", "b", file("b24.png"), file("b48.png") } }));
        QVERIFY(model.takeFlags() == Flags{});
        QVERIFY(QFile::remove(dir.filePath("b48.png")));
        const Flags flags = model.takeFlags();
        QVERIFY(flags.appFolderModified);
        QCOMPARE(renders, 1);
        const Json all = Json::parse(model.allAppsPayload());
        JCOMPARE(all[0]["iconpath2x"], dir.filePath("a48.png").toStdString());
        JCOMPARE(all[1]["iconpath"], dir.filePath("g24.png").toStdString());
        JCOMPARE(all[1]["iconpath2x"], dir.filePath("g48.png").toStdString());
        QVERIFY(model.takeFlags() == Flags{});
        QCOMPARE(renders, 1);
    }

    // Every request text the front end writes, read back by the server's parser: values with
    // quotes, backslashes, JSON escapes and the request's own closing text pasted in; then plain
    // JSON, and the bodies refused for not being well-formed requests.
    void requestTextsRoundTrip()
    {
        // The parse as JSON, absent fields left out; null for no request.
        const auto check = [](const std::string& body, const Json& expected) {
            const auto r = RequestParser::parse(body);
            Json out = r ? Json{ { "id", r->id } } : Json();
            for (const auto& [name, value] : { std::pair("appkey", r ? r->appkey : std::nullopt),
                                               { "appcat", r ? r->appcat : std::nullopt },
                                               { "itemkey", r ? r->itemkey : std::nullopt } })
                value ? void(out[name] = *value) : void();
            if (r && r->pane)
                out["pane"] = *r->pane;
            JCOMPARE(out, expected);
        };
        check(rq::plain(rq::quit), { { "id", "quit" } });
        // A quote, a trailing backslash, JSON escapes, each request's closing text, empty.
        for (const std::string v :
             { "we\"ird\\", "a\\nb\\\"c\\u0041", "x\"\n}", "y\"\n }   ", "" }) {
            check(rq::launch(v), { { "id", "launch" }, { "appkey", v } });
            check(rq::getInfoApp(v), { { "id", "get-info-app" }, { "appkey", v } });
            check(rq::togglePinApp(v), { { "id", "toggle-pin-app" }, { "appkey", v } });
            check(rq::createNewAppcatCxtmnu(v),
                  { { "id", "create-new-appcat-cxtmnu" }, { "appkey", v } });
            check(rq::getInfoAppcat(v), { { "id", "get-info-appcat" }, { "appcat", v } });
            check(rq::toggleSetAppcat(v, v),
                  { { "id", "toggle-set-appcat" }, { "appkey", v }, { "appcat", v } });
            // An empty item key goes out as null.
            Json organizer = { { "id", "organizer" }, { "pane", 1 } };
            if (!v.empty())
                organizer["itemkey"] = v;
            check(rq::organizer(OrganizerDlgMode::organizeApp, v), organizer);
        }
        check(R"({"appkey": "x\"y", "id": "launch"})",
              { { "id", "launch" }, { "appkey", "x\"y" } });
        check(R"({"id": "organizer", "pane": 0, "itemkey": null})",
              { { "id", "organizer" }, { "pane", 0 } });
        // Anything else is refused: a known id needs exactly its fields, of their types.
        for (const std::string refused : { "garbage",
                                           "[1,2,3]",
                                           "{\"id\": 5}",
                                           "{\n    \"id\": \"",
                                           "{\"id\": \"make-coffee\"}",
                                           "{\n    \"id\": \"toggle-set-appcat\",\n    \"app",
                                           "{\n    \"id\": \"launch\"\n}",
                                           R"({"id": "launch"})",
                                           R"({"id": "quit", "appkey": "x"})",
                                           R"({"id": "launch", "appkey": 1})",
                                           R"({"id": "organizer", "pane": "1", "itemkey": null})",
                                           R"({"id": "organizer", "pane": 1})",
                                           "{\n    \"id\": \"organizer\",\n    \"pane\": x" })
            check(refused, nullptr);
    }
    void onlyAwaitedRequestsAreAnswered()
    {
        ServerModel model;
        model.setApps(threeApps());
        model.createCategoryWith("Tools", "c.desktop");
        model.takeFlags();
        RecordedActions actions;
        RequestHandler handler(model, actions);
        // "id|appkey|appcat"; the reply, or null for none.
        const auto reply = [&](const QString& text) {
            const QStringList parts = text.split(u'|');
            const auto r = handler.handle({ .id = parts[0].toStdString(),
                                            .appkey = parts.value(1).toStdString(),
                                            .appcat = parts.value(2).toStdString() });
            return Json::parse(r.value_or("null"));
        };
        JCOMPARE(reply("get-allapps-menu-data"), Json::parse(model.allAppsPayload()));
        JCOMPARE(reply("get-recentapps-menu-data"), Json::parse(model.recentAppsPayload()));
        JCOMPARE(reply("get-myapps-menu-data"),
                 Json::parse(ServerModel(model).takeMyAppsPayload()));
        Json replies;
        const QString texts =
            "get-app-status get-user-prefs check-update-available get-app-update-status "
            "toggle-set-appcat|a.desktop|Tools toggle-set-appcat|gone.desktop|Tools "
            "toggle-pin-app|b.desktop get-menu-data-modified-status launch|a.desktop "
            "launch|gone.desktop create-new-appcat-cxtmnu|c.desktop make-coffee quit "
            "create-new-appcat-cxtmnu|gone.desktop";
        for (const QString& text : texts.split(u' '))
            replies.push_back(reply(text));
        JCOMPARE(replies, Json::parse(R"([{"ready": true, "updateFinished": false},
            {"MenuDensity": 0, "AnimationFx": true, "SaveExpAppCats": true, "SaveLastMenu": true,
             "OneExpAppCat": false}, {"isUpdateAvailable": false}, {"status": "noUpdate"},
            {"isset": true}, {"isset": false}, null, {"appFolderModified": false,
             "recentAppsModified": false, "appcatsModified": true, "pinnedAppsModified": true},
            null, null, null, null, null, null])"));
        QCOMPARE(actions.calls,
                 QStringList({ "launch a.desktop", "new category c.desktop", "quit" }));
    }

    void portOption()
    {
        const int fixed = pomvar::wire::kRuntimePort;
        for (const auto& [value, port] :
             { std::pair("1", 1), { "65535", 65535 }, { "0", fixed }, { "65536", fixed } }) {
            qputenv("POMVARSRV_PORT", value);
            QCOMPARE(int(ServerOptions::port()), port);
        }
    }
};

QTEST_MAIN(TestServerModel)
#include "tst_servermodel.moc"
