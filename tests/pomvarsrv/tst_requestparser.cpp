// The request parser against the exact texts the front end writes, values with quotes and
// backslashes pasted in, plain JSON, and damaged bodies.
#include "RequestParser.h"
#include "SrvClient.h"

#include <QTest>

using pomvar::srv::Request;
using pomvar::srv::RequestParser;
using pomvar::srvtest::SrvClient;

class TestRequestParser : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void plainRequests();
    void appkeyRequests_data();
    void appkeyRequests();
    void toggleSetAppcat();
    void organizer();
    void jsonBodies();
    void damagedBodies();
    void replyCatalogue();
};

void TestRequestParser::plainRequests()
{
    for (const char* id : { "get-app-status",
                            "get-user-prefs",
                            "get-menu-data-modified-status",
                            "get-allapps-menu-data",
                            "quit",
                            "about",
                            "app-search" }) {
        const auto request = RequestParser::parse(SrvClient::plain(id));
        QVERIFY2(request.has_value(), id);
        QCOMPARE(*request, Request{ .id = id });
    }
    // The exact 30 bytes of get-user-prefs.
    QCOMPARE(SrvClient::plain("get-user-prefs").size(), std::size_t(30));
}

void TestRequestParser::appkeyRequests_data()
{
    QTest::addColumn<QString>("id");
    QTest::addColumn<QString>("appkey");
    for (const char* id :
         { "launch", "get-info-app", "toggle-pin-app", "create-new-appcat-cxtmnu" }) {
        QTest::addRow("%s plain", id) << id << "org.example.App.desktop";
        QTest::addRow("%s quote", id) << id << "we\"ird.desktop";
        QTest::addRow("%s backslash", id) << id << "back\\slash.desktop";
        // Valid JSON escapes that must still be read as the characters pasted.
        QTest::addRow("%s escape", id) << id << "a\\nb\\\"c.desktop";
        QTest::addRow("%s empty", id) << id << "";
        QTest::addRow("%s closing text", id) << id << "x\"\n}";
    }
}

void TestRequestParser::appkeyRequests()
{
    QFETCH(QString, id);
    QFETCH(QString, appkey);
    const auto request =
        RequestParser::parse(SrvClient::withAppkey(id.toStdString(), appkey.toStdString()));
    QVERIFY(request.has_value());
    QCOMPARE(QString::fromStdString(request->id), id);
    QCOMPARE(request->appkey, std::optional(appkey.toStdString()));
    QVERIFY(!request->appcat);

    const auto info =
        RequestParser::parse(SrvClient::withAppcat("get-info-appcat", appkey.toStdString()));
    QVERIFY(info.has_value());
    QCOMPARE(info->appcat, std::optional(appkey.toStdString()));
}

void TestRequestParser::toggleSetAppcat()
{
    const std::string text = SrvClient::toggleSetAppcat("org.example.App.desktop", "Say \"hi\"");
    QVERIFY(text.ends_with(std::string_view("\"\n }   ")));
    const auto request = RequestParser::parse(text);
    QVERIFY(request.has_value());
    QCOMPARE(request->id, std::string("toggle-set-appcat"));
    QCOMPARE(request->appkey, std::optional<std::string>("org.example.App.desktop"));
    QCOMPARE(request->appcat, std::optional<std::string>("Say \"hi\""));

    const auto backslash = RequestParser::parse(SrvClient::toggleSetAppcat("k", "C:\\dir\\"));
    QVERIFY(backslash.has_value());
    QCOMPARE(backslash->appcat, std::optional<std::string>("C:\\dir\\"));

    const auto empty = RequestParser::parse(SrvClient::toggleSetAppcat("", ""));
    QVERIFY(empty.has_value());
    QCOMPARE(empty->appkey, std::optional<std::string>(""));
    QCOMPARE(empty->appcat, std::optional<std::string>(""));
}

void TestRequestParser::organizer()
{
    const auto none = RequestParser::parse(SrvClient::organizer(2, ""));
    QVERIFY(none.has_value());
    QCOMPARE(none->pane, std::optional<std::int64_t>(2));
    QVERIFY(!none->itemkey);

    const auto item = RequestParser::parse(SrvClient::organizer(1, "a\"b"));
    QVERIFY(item.has_value());
    QCOMPARE(item->pane, std::optional<std::int64_t>(1));
    QCOMPARE(item->itemkey, std::optional<std::string>("a\"b"));
}

void TestRequestParser::jsonBodies()
{
    const auto compact = RequestParser::parse(R"({"id":"launch","appkey":"x\"y.desktop"})");
    QVERIFY(compact.has_value());
    QCOMPARE(compact->appkey, std::optional<std::string>("x\"y.desktop"));

    const auto organizer =
        RequestParser::parse(R"({"pane": 0, "itemkey": null, "id": "organizer"})");
    QVERIFY(organizer.has_value());
    QCOMPARE(organizer->pane, std::optional<std::int64_t>(0));
    QVERIFY(!organizer->itemkey);

    // A JSON request with an id nobody sends is still read; the handler ignores it.
    const auto unknown = RequestParser::parse(R"({"id": "make-coffee"})");
    QVERIFY(unknown.has_value());
    QCOMPARE(unknown->id, std::string("make-coffee"));
}

void TestRequestParser::damagedBodies()
{
    for (const std::string& body : { std::string(),
                                     std::string("{"),
                                     std::string("garbage"),
                                     std::string("[1,2,3]"),
                                     std::string(R"({"id": 5})"),
                                     std::string("\0\0\0", 3),
                                     std::string("{\n    \"id\": \"") })
        QVERIFY2(!RequestParser::parse(body).has_value(), body.c_str());

    // The opening of a known request still yields its id, so that an awaited request is
    // answered; its fields are not guessed.
    const auto truncated = RequestParser::parse("{\n    \"id\": \"toggle-set-appcat\",\n    \"app");
    QVERIFY(truncated.has_value());
    QCOMPARE(truncated->id, std::string("toggle-set-appcat"));
    QVERIFY(!truncated->appkey);
    QVERIFY(!truncated->appcat);
}

void TestRequestParser::replyCatalogue()
{
    for (const char* id : { "get-app-status",
                            "get-user-prefs",
                            "get-menu-data-modified-status",
                            "get-myapps-menu-data",
                            "get-recentapps-menu-data",
                            "get-allapps-menu-data",
                            "toggle-set-appcat",
                            "check-update-available",
                            "get-app-update-status" })
        QVERIFY2(Request::expectsReply(id) && Request::isKnown(id), id);
    for (const char* id : { "check-updates",
                            "organizer",
                            "launch",
                            "get-info-app",
                            "toggle-pin-app",
                            "create-new-appcat-cxtmnu",
                            "get-info-appcat",
                            "app-search",
                            "about",
                            "quit" })
        QVERIFY2(!Request::expectsReply(id) && Request::isKnown(id), id);
    QVERIFY(!Request::isKnown("make-coffee"));
    // Well-formed, so parsed; the handler logs and ignores the unknown id.
    QVERIFY(RequestParser::parse(SrvClient::plain("make-coffee")).has_value());
}

QTEST_APPLESS_MAIN(TestRequestParser)
#include "tst_requestparser.moc"
