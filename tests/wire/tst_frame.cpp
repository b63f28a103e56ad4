// Frames reassembled from any chunking, an oversized prefix flagged, and strict UTF-8.
#include "wire/Frame.h"
#include "wire/FrameDecoder.h"
#include "wire/Utf8.h"

#include <QTest>

using namespace pomvar::wire;

Q_DECLARE_METATYPE(std::string)

class TestFrame : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void decoderReassemblesFramesFromAnyChunking()
    {
        QCOMPARE(*encodeRequestFrame("abc"),
                 std::string("\x00\x03"
                             "abc",
                             5));
        QVERIFY(!encodeRequestFrame(std::string(0x10000, 'x')));
        QCOMPARE(*replyPrefix(0x01020304), std::string("\x01\x02\x03\x04", 4));
        std::string stream;
        const std::vector<std::string> bodies = { "{}", std::string(70000, 'a'), "", "é" };
        for (const auto& body : bodies)
            stream += *encodeReplyFrame(body);
        for (const std::size_t chunk : { std::size_t{ 1 }, std::size_t{ 3 }, stream.size() }) {
            ReplyDecoder decoder;
            std::vector<std::string> out;
            std::string body;
            for (std::size_t at = 0; at < stream.size(); at += chunk) {
                decoder.feed(std::string_view(stream).substr(at, chunk));
                while (decoder.next(body))
                    out.push_back(body);
            }
            QCOMPARE(out, bodies);
            QCOMPARE(decoder.buffered(), std::size_t{ 0 });
        }
        RequestDecoder limited(16);
        limited.feed(std::string("\x00\x11", 2) + std::string(17, 'x'));
        std::string body;
        QVERIFY(!limited.next(body) && limited.oversized());
    }

    void utf8ValidationIsStrict_data()
    {
        QTest::addColumn<std::string>("text");
        QTest::addColumn<bool>("valid");
        QTest::newRow("empty") << std::string() << true;
        QTest::newRow("long ASCII")
            << std::string("plain ascii text, longer than eight bytes") << true;
        QTest::newRow("2, 3 and 4 bytes")
            << std::string("\xc3\xa9\xe2\x82\xac\xf0\x9f\x98\x80") << true;
        QTest::newRow("stray byte") << std::string("\xff") << false;
        QTest::newRow("overlong") << std::string("\xc0\xaf") << false;
        QTest::newRow("overlong 3 bytes") << std::string("\xe0\x80\xaf") << false;
        QTest::newRow("surrogate") << std::string("\xed\xa0\x80") << false;
        QTest::newRow("above U+10FFFF") << std::string("\xf4\x90\x80\x80") << false;
        QTest::newRow("cut short after ASCII") << std::string("abcdefgh\xe2\x82") << false;
    }
    void utf8ValidationIsStrict()
    {
        QFETCH(std::string, text);
        QFETCH(bool, valid);
        QCOMPARE(isValidUtf8(text), valid);
    }
};

QTEST_APPLESS_MAIN(TestFrame)
#include "tst_frame.moc"
