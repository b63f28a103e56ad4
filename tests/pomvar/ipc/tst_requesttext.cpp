#include "ipc/RequestText.h"

#include <QTest>

using namespace pomvar;

class TestRequestText : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void plainRequestsHaveTheExactBytes()
    {
        QCOMPARE(request::plain(request::getUserPrefs),
                 std::string("{\n    \"id\": \"get-user-prefs\"\n}"));
        QCOMPARE(request::plain(request::getUserPrefs).size(), std::size_t{ 30 });
        QCOMPARE(request::plain(request::about).size(), std::size_t{ 21 });
        QCOMPARE(request::plain(request::quit), std::string("{\n    \"id\": \"quit\"\n}"));
        QCOMPARE(request::plain(request::quit).size(), std::size_t{ 20 });
    }

    void fieldsArePastedUnescaped()
    {
        QCOMPARE(request::launch("a\"b\\c"),
                 std::string("{\n    \"id\": \"launch\",\n    \"appkey\": \"a\"b\\c\"\n}"));
        QCOMPARE(request::getInfoApp("x.desktop"),
                 std::string("{\n    \"id\": \"get-info-app\",\n    \"appkey\": \"x.desktop\"\n}"));
        QCOMPARE(request::togglePinApp("k"),
                 std::string("{\n    \"id\": \"toggle-pin-app\",\n    \"appkey\": \"k\"\n}"));
        QCOMPARE(
            request::createNewAppcatCxtmnu("k"),
            std::string("{\n    \"id\": \"create-new-appcat-cxtmnu\",\n    \"appkey\": \"k\"\n}"));
        QCOMPARE(
            request::getInfoAppcat("Games & \"Fun\""),
            std::string(
                "{\n    \"id\": \"get-info-appcat\",\n    \"appcat\": \"Games & \"Fun\"\"\n}"));
    }

    void toggleSetAppcatKeepsItsTrailingBytes()
    {
        const std::string text = request::toggleSetAppcat("k", "Work");
        QCOMPARE(text,
                 std::string("{\n    \"id\": \"toggle-set-appcat\",\n    \"appkey\": \"k\",\n"
                             "    \"appcat\": \"Work\"\n }   "));
        QCOMPARE(text.substr(text.size() - 7), std::string("\x22\x0a\x20\x7d\x20\x20\x20"));
    }

    void organizerSendsNullForAnEmptyKey()
    {
        QCOMPARE(request::organizer(OrganizerDlgMode::organize, ""),
                 std::string(
                     "{\n    \"id\": \"organizer\",\n    \"pane\": 0,\n    \"itemkey\": null\n}"));
        QCOMPARE(request::organizer(OrganizerDlgMode::organizeApp, "a"),
                 std::string(
                     "{\n    \"id\": \"organizer\",\n    \"pane\": 1,\n    \"itemkey\": \"a\"\n}"));
        QCOMPARE(request::organizer(OrganizerDlgMode::settings, ""),
                 std::string(
                     "{\n    \"id\": \"organizer\",\n    \"pane\": 2,\n    \"itemkey\": null\n}"));
    }

    void noRequestEndsInALineFeed()
    {
        for (const auto& text : { request::plain(request::checkUpdates),
                                  request::launch("k"),
                                  request::toggleSetAppcat("k", "c"),
                                  request::organizer(OrganizerDlgMode::organize, "") })
            QVERIFY(text.back() != '\n');
    }
};

QTEST_APPLESS_MAIN(TestRequestText)
#include "tst_requesttext.moc"
