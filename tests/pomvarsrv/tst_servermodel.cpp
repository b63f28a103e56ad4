// The server's model and requests in-process: the store and its file, the payloads, the flags
// every change sets and a report clears, renames reported once, every change saved; every request
// text the front end writes read back by the parser, the bodies refused, which requests are
// answered and what they ask of the rest of the server. Framing and connections are
// tst_catalogue's, over TCP; the organizer's name dialogs are tst_serverwindows'.
#include "SrvClient.h"
#include "TestDesktop.h"
#include "pomvarsrv/ipc/RequestHandler.h"
#include "pomvarsrv/ipc/RequestParser.h"
#include "pomvarsrv/ipc/ServerActions.h"
#include "pomvarsrv/model/ServerModel.h"
#include "pomvarsrv/model/StoreFile.h"
#include "wire/Protocol.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

#include <functional>

using namespace pomvar;
using namespace pomvar::srv;
using Json = nlohmann::json;
using Flags = MenuDataStatus;
using Keys = std::vector<std::string>;
using pomvar::test::TestDesktop;
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
    template <typename... Args>
    void note(const char* action, const Args&... args)
    {
        calls << (QStringList{ action } << ... << QVariant(args).toString()).join(' ');
    }
    void launch(const QString& appkey) override { note("launch", appkey); }
    void askNewCategory(const QString& appkey) override { note("new category", appkey); }
    void showSearch() override { note("search"); }
    void placeSearch(int x, int y) override { note("place", x, y); }
    quint64 showSearchAt(int x, int y) override { return note("search at", x, y), 42; }
    void typeInSearch(int k, int m, const QString& text) override { note("key", k, m, text); }
    void endTyping() override { note("typed"); }
    void setActivationToken(const QString& token) override { note("token", token); }
    void showOrganizer(int pane, const QString& item) override { note("organizer", pane, item); }
    void showAppInfo(const QString& appkey) override { note("app info", appkey); }
    void showCategoryInfo(const QString& appcat) override { note("category info", appcat); }
    void showAbout() override { note("about"); }
    void showUpdates() override { note("updates"); }
    void quit() override { note("quit"); }
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
        QCOMPARE(store.pins(), (Keys{ "b", "a" }));
        QVERIFY(!store.createCategory("") && store.createCategory(kOdd) &&
                store.createCategory("V"));
        QVERIFY(store.addMember("y", kOdd) && !store.addMember("y", kOdd) &&
                !store.addMember("y", "?"));
        QVERIFY(!store.renameCategory(kOdd, "V") && !store.renameCategory(kOdd, ""));
        // Newest first, each app once, the oldest dropped beyond twelve.
        for (const char app : std::string_view("abcdefghijklmnd"))
            store.pushRecent(std::string(1, app));
        QCOMPARE(store.recent(),
                 (Keys{ "d", "n", "m", "l", "k", "j", "i", "h", "g", "f", "e", "c" }));
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
        // A write cut short by a kill leaves its temporary file: the next load removes it, and
        // only it.
        for (const char* name : { "pomvarsrv.json.x1Y2z3", "pomvarsrv.json.corrupt-1" })
            QVERIFY(TestDesktop::write(dir.filePath(QStringLiteral("pomvar/") + name), "{"));
        QVERIFY(file.load() == store);
        QCOMPARE(QDir(dir.filePath("pomvar")).entryList(QDir::Files),
                 QStringList({ "pomvarsrv.json", "pomvarsrv.json.corrupt-1" }));
        QVERIFY(store.clearRecent() && !store.clearRecent());
        // Private to its owner (the "user" bits repeat the owner's).
        QCOMPARE(QFile::permissions(file.path()) & 0x7077, QFile::ReadOwner | QFile::WriteOwner);
        // Missing members take their defaults.
        QVERIFY(Store::fromJson(Json::parse(R"({"version": 1, "prefs": {}})"))->prefs() ==
                UserPrefs{});
        // Unreadable, or not a store: kept aside, and the defaults used (the texts parted by '|').
        const QString damaged =
            R"({"version": 1, "pins": [tru|{"pins": []}|{"version": 1, "pins": 3}|)"
            R"({"version": 1, "prefs": {"MenuDensity": "1"}}|)"
            R"({"version": 1, "categories": [{"apps": []}]}|)"
            R"({"version": 1, "categories": [{"name": "A"}, {"name": "A"}]})";
        for (const QString& text : damaged.split(u'|')) {
            QVERIFY(TestDesktop::write(file.path(), text.toUtf8()));
            QVERIFY2(file.load() == Store{} && !QFile::exists(file.path()), qPrintable(text));
            QCOMPARE(TestDesktop::read(file.setAsidePath()), text.toUtf8());
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
            // The organizer's undo of the clearing.
            { [&] { return model.restoreRecent({ "b.desktop" }), true; }, true, "r" },
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
    void missingIconsAreReplacedAndRenderedAgain_data()
    {
        QTest::addColumn<int>("apps");
        QTest::newRow("a few icons, looked at one by one") << 2;
        QTest::newRow("many icons in the folder, listed at once") << 70;
    }
    void missingIconsAreReplacedAndRenderedAgain()
    {
        QFETCH(int, apps);
        QTemporaryDir dir;
        const auto file = [&](const std::string& name) {
            QFile(dir.filePath(QString::fromStdString(name))).open(QIODevice::WriteOnly);
            return dir.filePath(QString::fromStdString(name)).toStdString();
        };
        ServerModel model;
        model.setFallbackIcons(file("g24.png"), file("g48.png"));
        int renders = 0;
        model.setIconsMissingHandler([&] { ++renders; });
        std::vector<AppEntry> entries;
        for (int i = 0; i < apps; ++i) {
            const std::string n = std::to_string(i);
            entries.push_back(
                { n + ".desktop", "App " + n, "a", file(n + "-24.png"), file(n + "-48.png") });
        }
        model.setApps(InstalledApps(entries));
        QVERIFY(model.takeFlags() == Flags{});
        QVERIFY(QFile::remove(dir.filePath("1-48.png")));
        QVERIFY(model.takeFlags().appFolderModified);
        QCOMPARE(renders, 1);
        const Json all = Json::parse(model.allAppsPayload());
        JCOMPARE(all[0]["iconpath2x"], dir.filePath("0-48.png").toStdString());
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
        const auto check = [](const std::string& body, const std::optional<Request>& expected) {
            QVERIFY2(RequestParser::parse(body) == expected, body.c_str());
        };
        check(rq::plain(rq::quit), Request{ .id = "quit" });
        // A quote, a trailing backslash, JSON escapes, each request's closing text, empty.
        for (const std::string v :
             { "we\"ird\\", "a\\nb\\\"c\\u0041", "x\"\n}", "y\"\n }   ", "" }) {
            for (const auto& [build, id] :
                 { std::pair(&rq::launch, "launch"),
                   { &rq::getInfoApp, "get-info-app" },
                   { &rq::togglePinApp, "toggle-pin-app" },
                   { &rq::createNewAppcatCxtmnu, "create-new-appcat-cxtmnu" } })
                check(build(v), Request{ .id = id, .appkey = v });
            check(rq::getInfoAppcat(v), Request{ .id = "get-info-appcat", .appcat = v });
            check(rq::toggleSetAppcat(v, v),
                  Request{ .id = "toggle-set-appcat", .appkey = v, .appcat = v });
            // An empty item key goes out as null.
            check(rq::organizer(OrganizerDlgMode::organizeApp, v),
                  Request{ .id = "organizer",
                           .pane = 1,
                           .itemkey = v.empty() ? std::nullopt : std::optional(v) });
            check(rq::placePinnedApp(v, "\t"),
                  Request{ .id = "place-pinned-app", .appkey = v, .beforekey = "\t" });
            check(rq::placeAppcat(v, v),
                  Request{ .id = "place-appcat", .appcat = v, .beforekey = v });
            check(rq::placeAppcatApp(v, v, ""),
                  Request{ .id = "place-appcat-app", .appkey = v, .appcat = v, .beforekey = "" });
            // The search's requests are JSON: their strings come back as they were.
            check(rq::appSearchKey(65, 0x04000000, v),
                  Request{ .id = "app-search-key", .key = 65, .modifiers = 0x04000000, .text = v });
            check(rq::activationToken(v), Request{ .id = "activation-token", .token = v });
        }
        check(rq::appSearchAt(-5, 7), Request{ .id = "app-search-at", .x = -5, .y = 7 });
        check(rq::appSearchPlace(3, 4), Request{ .id = "app-search-place", .x = 3, .y = 4 });
        check("{\"appkey\": \"x\\\"y\", \"id\": \"launch\"}",
              Request{ .id = "launch", .appkey = "x\"y" });
        check(R"({"id": "organizer", "pane": 0, "itemkey": null})",
              Request{ .id = "organizer", .pane = 0 });
        // Anything else is refused (the bodies parted by '|'): a known id needs exactly its
        // fields, of their types.
        const QString refused =
            "garbage|[1,2,3]|{\"id\": 5}|{\n    \"id\": \"|{\"id\": \"make-coffee\"}|"
            "{\n    \"id\": \"toggle-set-appcat\",\n    \"app|{\n    \"id\": \"launch\"\n}|"
            R"({"id": "launch"}|{"id": "quit", "appkey": "x"}|{"id": "launch", "appkey": 1}|)"
            R"({"id": "organizer", "pane": "1", "itemkey": null}|{"id": "organizer", "pane": 1}|)"
            R"({"id": "place-appcat", "appcat": "G"}|{"id": "app-search-at", "x": 1, "y": "2"}|)"
            R"({"id": "app-search-key", "key": 1, "text": ""}|)"
            "{\n    \"id\": \"organizer\",\n    \"pane\": x";
        for (const QString& body : refused.split(u'|'))
            check(body.toStdString(), std::nullopt);
    }
    void onlyAwaitedRequestsAreAnswered()
    {
        ServerModel model;
        model.setApps(threeApps());
        model.createCategoryWith("Tools", "c.desktop");
        model.takeFlags();
        RecordedActions actions;
        RequestHandler handler(model, actions);
        // The reply to each request, or null for none. The menus' payloads are the tests' above;
        // the status and update replies, tst_serverwindows', over the wire.
        Json replies;
        for (const std::string& text : { rq::plain(rq::getUserPrefs),
                                         rq::toggleSetAppcat("a.desktop", "Tools"),
                                         rq::toggleSetAppcat("gone.desktop", "Tools"),
                                         rq::togglePinApp("b.desktop"),
                                         rq::plain(rq::getMenuDataModifiedStatus),
                                         rq::launch("a.desktop"),
                                         rq::launch("gone.desktop"),
                                         rq::createNewAppcatCxtmnu("c.desktop"),
                                         rq::createNewAppcatCxtmnu("gone.desktop"),
                                         rq::plain(rq::quit),
                                         rq::appSearchPlace(1, 2),
                                         rq::appSearchAt(3, 4),
                                         rq::appSearchKey(65, 0, "a"),
                                         rq::plain(rq::appSearchTyped),
                                         rq::activationToken("t_TIME9") })
            replies.push_back(
                Json::parse(handler.handle(*RequestParser::parse(text)).value_or("null")));
        JCOMPARE(replies, Json::parse(R"([{"MenuDensity": 0, "AnimationFx": true,
            "SaveExpAppCats": true, "SaveLastMenu": true, "OneExpAppCat": false}, {"isset": true},
            {"isset": false}, null, {"appFolderModified": false, "recentAppsModified": false,
             "appcatsModified": true, "pinnedAppsModified": true},
            null, null, null, null, null, null, {"window": 42}, null, null, null])"));
        QCOMPARE(actions.calls,
                 QStringList({ "launch a.desktop",
                               "new category c.desktop",
                               "quit",
                               "place 1 2",
                               "search at 3 4",
                               "key 65 0 a",
                               "typed",
                               "token t_TIME9" }));
        // The panel's drops: a pin placed before another or last, a category before another, an
        // app filed into a category before one of its apps. Nothing else is asked of the server.
        actions.calls.clear();
        model.togglePin("a.desktop"); // pins: b, a
        model.createCategoryWith("Games", "a.desktop");
        model.takeFlags();
        for (const std::string& text : { rq::placePinnedApp("c.desktop", "a.desktop"),
                                         rq::placePinnedApp("b.desktop", ""),
                                         rq::placeAppcat("Games", "Tools"),
                                         rq::placeAppcatApp("b.desktop", "Tools", "a.desktop") })
            QVERIFY(!handler.handle(*RequestParser::parse(text)));
        QCOMPARE(model.store().pins(), (Keys{ "c.desktop", "a.desktop", "b.desktop" }));
        QCOMPARE(model.store().categories().front().name, "Games");
        QCOMPARE(model.store().category("Tools")->apps,
                 (Keys{ "c.desktop", "b.desktop", "a.desktop" }));
        const Flags flags = model.takeFlags();
        QVERIFY(flags.pinnedAppsModified && flags.appcatsModified && !flags.recentAppsModified);
        QVERIFY(actions.calls.isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestServerModel)
#include "tst_servermodel.moc"
