// The request texts byte for byte, one per way of writing them: values are pasted unescaped,
// toggle-set-appcat keeps its odd ending, and the organizer sends null for an empty key.
#include "wire/Protocol.h"

#include <QTest>

using namespace pomvar;

Q_DECLARE_METATYPE(std::string)

class TestRequestText : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void textsAreExact_data()
    {
        QTest::addColumn<std::string>("text");
        QTest::addColumn<std::string>("expected");
        QTest::newRow("plain") << request::plain(request::getUserPrefs)
                               << std::string("{\n    \"id\": \"get-user-prefs\"\n}");
        QTest::newRow("launch, pasted")
            << request::launch("a\"b\\c")
            << std::string("{\n    \"id\": \"launch\",\n    \"appkey\": \"a\"b\\c\"\n}");
        QTest::newRow("get-info-appcat, pasted")
            << request::getInfoAppcat("Games & \"Fun\"")
            << std::string(
                   "{\n    \"id\": \"get-info-appcat\",\n    \"appcat\": \"Games & \"Fun\"\"\n}");
        QTest::newRow("toggle-set-appcat")
            << request::toggleSetAppcat("k", "Work")
            << std::string("{\n    \"id\": \"toggle-set-appcat\",\n    \"appkey\": \"k\",\n"
                           "    \"appcat\": \"Work\"\n }   ");
        QTest::newRow("organizer, no key")
            << request::organizer(OrganizerDlgMode::settings, "")
            << std::string(
                   "{\n    \"id\": \"organizer\",\n    \"pane\": 2,\n    \"itemkey\": null\n}");
        QTest::newRow("organizer, key")
            << request::organizer(OrganizerDlgMode::organizeApp, "a")
            << std::string(
                   "{\n    \"id\": \"organizer\",\n    \"pane\": 1,\n    \"itemkey\": \"a\"\n}");
    }
    void textsAreExact()
    {
        QFETCH(std::string, text);
        QFETCH(std::string, expected);
        QCOMPARE(text, expected);
    }
};

QTEST_APPLESS_MAIN(TestRequestText)
#include "tst_requesttext.moc"
