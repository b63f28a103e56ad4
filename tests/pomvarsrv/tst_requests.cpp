// The server's requests in-process: every request text the front end writes read back by the
// parser, the bodies refused, which requests are answered and what they ask of the rest of the
// server. Framing and connections are tst_protocol's, over TCP.
#include "SrvClient.h"
#include "pomvarsrv/ipc/RequestHandler.h"
#include "pomvarsrv/ipc/RequestParser.h"
#include "pomvarsrv/ipc/ServerActions.h"
#include "pomvarsrv/model/ServerModel.h"
#include "wire/Protocol.h"

#include <QTest>

#include <functional>

using namespace pomvar;
using namespace pomvar::srv;
using Json = nlohmann::json;
namespace rq = pomvar::request;

namespace {

InstalledApps threeApps()
{
    return InstalledApps({ { "a.desktop", "Alpha", "a", "/i/a24.png", "/i/a48.png" },
                           { "b.desktop", "Beta", "b", "/i/b24.png", "/i/b48.png" },
                           { "c.desktop", "Gamma", "c", "/i/c24.png", "/i/c48.png" } });
}

// The actions a request asks of the rest of the server, as lines.
struct RecordedActions : ServerActions
{
    QStringList calls;
    void launch(const QString& appkey) override { calls << "launch " + appkey; }
    void askNewCategory(const QString& appkey) override { calls << "new category " + appkey; }
    void showSearch() override { calls << "search"; }
    void placeSearch(int x, int y) override
    {
        calls << QStringLiteral("place %1 %2").arg(x).arg(y);
    }
    quint64 showSearchAt(int x, int y) override
    {
        calls << QStringLiteral("search at %1 %2").arg(x).arg(y);
        return 42;
    }
    void typeInSearch(int key, int modifiers, const QString& text) override
    {
        calls << QStringLiteral("key %1 %2 %3").arg(key).arg(modifiers).arg(text);
    }
    void endTyping() override { calls << "typed"; }
    void setActivationToken(const QString& token) override { calls << "token " + token; }
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

class TestRequests : public QObject
{
    Q_OBJECT

private Q_SLOTS:
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
                                               { "itemkey", r ? r->itemkey : std::nullopt },
                                               { "beforekey", r ? r->beforekey : std::nullopt },
                                               { "text", r ? r->text : std::nullopt },
                                               { "token", r ? r->token : std::nullopt } })
                value ? void(out[name] = *value) : void();
            for (const auto& [name, value] : { std::pair("pane", r ? r->pane : std::nullopt),
                                               { "x", r ? r->x : std::nullopt },
                                               { "y", r ? r->y : std::nullopt },
                                               { "key", r ? r->key : std::nullopt },
                                               { "modifiers", r ? r->modifiers : std::nullopt } })
                value ? void(out[name] = *value) : void();
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
            check(rq::placePinnedApp(v, "\t"),
                  { { "id", "place-pinned-app" }, { "appkey", v }, { "beforekey", "\t" } });
            check(rq::placeAppcat(v, v),
                  { { "id", "place-appcat" }, { "appcat", v }, { "beforekey", v } });
            check(rq::placeAppcatApp(v, v, ""),
                  { { "id", "place-appcat-app" },
                    { "appkey", v },
                    { "appcat", v },
                    { "beforekey", "" } });
            // The search's requests are JSON: their strings come back as they were.
            check(rq::appSearchKey(65, 0x04000000, v),
                  { { "id", "app-search-key" },
                    { "key", 65 },
                    { "modifiers", 0x04000000 },
                    { "text", v } });
            check(rq::activationToken(v), { { "id", "activation-token" }, { "token", v } });
        }
        check(rq::appSearchAt(-5, 7), { { "id", "app-search-at" }, { "x", -5 }, { "y", 7 } });
        check(rq::appSearchPlace(3, 4), { { "id", "app-search-place" }, { "x", 3 }, { "y", 4 } });
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
                                           R"({"id": "place-appcat", "appcat": "G"})",
                                           R"({"id": "app-search-at", "x": 1, "y": "2"})",
                                           R"({"id": "app-search-key", "key": 1, "text": ""})",
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
        for (const Request& request :
             { Request{ .id = "app-search-place", .x = 1, .y = 2 },
               Request{ .id = "app-search-at", .x = 3, .y = 4 },
               Request{ .id = "app-search-key", .key = 65, .modifiers = 0, .text = "a" },
               Request{ .id = "app-search-typed" },
               Request{ .id = "activation-token", .token = "t_TIME9" } })
            replies.push_back(Json::parse(handler.handle(request).value_or("null")));
        JCOMPARE(replies, Json::parse(R"([{"ready": true, "updateFinished": false},
            {"MenuDensity": 0, "AnimationFx": true, "SaveExpAppCats": true, "SaveLastMenu": true,
             "OneExpAppCat": false}, {"isUpdateAvailable": false}, {"status": "noUpdate"},
            {"isset": true}, {"isset": false}, null, {"appFolderModified": false,
             "recentAppsModified": false, "appcatsModified": true, "pinnedAppsModified": true},
            null, null, null, null, null, null, null, {"window": 42}, null, null, null])"));
        QCOMPARE(actions.calls,
                 QStringList({ "launch a.desktop",
                               "new category c.desktop",
                               "quit",
                               "place 1 2",
                               "search at 3 4",
                               "key 65 0 a",
                               "typed",
                               "token t_TIME9" }));
    }

    // The panel's drops change the store and raise the flags exactly as the organizer's calls.
    void dropsChangeTheStoreAsTheOrganizer()
    {
        using Call = std::function<bool(ServerModel&)>;
        const std::pair<std::string, Call> cases[] = {
            { rq::placePinnedApp("c.desktop", "a.desktop"),
              [](ServerModel& m) { return m.placePins({ "c.desktop" }, "a.desktop"); } },
            { rq::placePinnedApp("a.desktop", ""),
              [](ServerModel& m) { return m.placePins({ "a.desktop" }, ""); } },
            { rq::placeAppcat("Tools", "Games"),
              [](ServerModel& m) { return m.placeCategories({ "Tools" }, "Games"); } },
            { rq::placeAppcatApp("b.desktop", "Games", "a.desktop"),
              [](ServerModel& m) {
                  return m.placeMembers("Games", { "b.desktop" }, "a.desktop");
              } },
        };
        ServerModel base;
        base.setApps(threeApps());
        base.placePins({ "a.desktop", "b.desktop" }, "");
        base.createCategoryWith("Games", "a.desktop");
        base.createCategoryWith("Tools", "c.desktop");
        base.takeFlags();
        RecordedActions actions;
        for (const auto& [text, call] : cases) {
            ServerModel viaPanel = base, viaOrganizer = base;
            RequestHandler(viaPanel, actions).handle(*RequestParser::parse(text));
            QVERIFY2(call(viaOrganizer), text.c_str());
            QVERIFY(viaPanel.store() == viaOrganizer.store());
            QVERIFY(viaPanel.takeFlags() == viaOrganizer.takeFlags());
        }
        QVERIFY(actions.calls.isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestRequests)
#include "tst_requests.moc"
