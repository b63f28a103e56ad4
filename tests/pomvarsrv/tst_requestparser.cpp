// Every request text the front end writes, read back by the server's parser: values with
// quotes, backslashes, JSON escapes and the request's own closing text pasted in; then plain
// JSON, and the bodies refused for not being well-formed requests.
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
    void roundTrip()
    {
        // The parse as JSON, absent fields left out; null for no request.
        const auto check = [](const std::string& body, const nlohmann::json& expected) {
            const auto r = RequestParser::parse(body);
            nlohmann::json out = r ? nlohmann::json{ { "id", r->id } } : nlohmann::json();
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
            nlohmann::json organizer = { { "id", "organizer" }, { "pane", 1 } };
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
};

QTEST_APPLESS_MAIN(TestRequestParser)
#include "tst_requestparser.moc"
