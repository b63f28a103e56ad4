// Every request text the front end writes, read back by the server's parser: values with
// quotes, backslashes, JSON escapes and the request's own closing text pasted in; then plain
// JSON and damaged bodies.
#include "RequestParser.h"
#include "SrvClient.h"
#include "wire/Protocol.h"

#include <QTest>

using pomvar::OrganizerDlgMode;
using pomvar::srv::Request;
using pomvar::srv::RequestParser;
namespace rq = pomvar::request;

class TestRequestParser : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void roundTrip();
};

void TestRequestParser::roundTrip()
{
    // The parse as JSON, absent fields left out; null for no request.
    const auto parsed = [](const std::string& body) {
        const auto r = RequestParser::parse(body);
        nlohmann::json out = r ? nlohmann::json{ { "id", r->id } } : nlohmann::json();
        for (const auto& [name, value] : { std::pair("appkey", r ? r->appkey : std::nullopt),
                                           { "appcat", r ? r->appcat : std::nullopt },
                                           { "itemkey", r ? r->itemkey : std::nullopt } })
            value ? void(out[name] = *value) : void();
        if (r && r->pane)
            out["pane"] = *r->pane;
        return out;
    };
    const auto check = [&](const std::string& body, const nlohmann::json& expected) {
        JCOMPARE(parsed(body), expected);
    };
    for (const auto id : { rq::getAppStatus,
                           rq::getUserPrefs,
                           rq::getMenuDataModifiedStatus,
                           rq::getMyAppsMenuData,
                           rq::getRecentAppsMenuData,
                           rq::getAllAppsMenuData,
                           rq::checkUpdateAvailable,
                           rq::getAppUpdateStatus,
                           rq::checkUpdates,
                           rq::appSearch,
                           rq::about,
                           rq::quit })
        check(rq::plain(id), { { "id", id } });
    // Plain, a quote, a backslash, JSON escapes, each request's closing text, UTF-8, empty.
    for (const std::string v : { "org.example.App.desktop",
                                 "we\"ird.desktop",
                                 "C:\\dir\\",
                                 "a\\nb\\\"c\\u0041",
                                 "x\"\n}",
                                 "y\"\n }   ",
                                 "\xc3\xa9t\xc3\xa9",
                                 "" }) {
        check(rq::launch(v), { { "id", "launch" }, { "appkey", v } });
        check(rq::getInfoApp(v), { { "id", "get-info-app" }, { "appkey", v } });
        check(rq::togglePinApp(v), { { "id", "toggle-pin-app" }, { "appkey", v } });
        check(rq::createNewAppcatCxtmnu(v),
              { { "id", "create-new-appcat-cxtmnu" }, { "appkey", v } });
        check(rq::getInfoAppcat(v), { { "id", "get-info-appcat" }, { "appcat", v } });
        check(rq::toggleSetAppcat(v, v),
              { { "id", "toggle-set-appcat" }, { "appkey", v }, { "appcat", v } });
        // An empty item key goes out as null.
        nlohmann::json organizer = { { "id", "organizer" }, { "pane", 1 } };
        if (!v.empty())
            organizer["itemkey"] = v;
        check(rq::organizer(OrganizerDlgMode::organizeApp, v), organizer);
    }
    check(rq::organizer(OrganizerDlgMode::settings, ""), { { "id", "organizer" }, { "pane", 2 } });
    check(R"({"appkey": "x\"y", "id": "launch"})", { { "id", "launch" }, { "appkey", "x\"y" } });
    check(R"({"id": "organizer", "pane": "1", "itemkey": null})", { { "id", "organizer" } });
    check(R"({"id": "make-coffee"})", { { "id", "make-coffee" } });
    // Cut short, a known request still yields its id so that an awaited one is answered.
    check("{\n    \"id\": \"toggle-set-appcat\",\n    \"app", { { "id", "toggle-set-appcat" } });
    check("{\n    \"id\": \"organizer\",\n    \"pane\": \"", { { "id", "organizer" } });
    for (const std::string damaged :
         { "", "{", "garbage", "[1,2,3]", "{\"id\": 5}", "{\n    \"id\": \"" })
        check(damaged, nullptr);
    check(std::string("\0\0\0", 3), nullptr);
}

QTEST_APPLESS_MAIN(TestRequestParser)
#include "tst_requestparser.moc"
