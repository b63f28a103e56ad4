#include "wire/Frame.h"
#include "wire/FrameDecoder.h"
#include "wire/Utf8.h"

#include <QTest>

using namespace pomvar::wire;

class TestFrame : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void prefixesAreBigEndianAndBounded()
    {
        QCOMPARE(*requestPrefix(30), std::string("\x00\x1e", 2));
        QCOMPARE(*requestPrefix(0xFFFF), std::string("\xff\xff", 2));
        QVERIFY(!requestPrefix(0x10000));
        QCOMPARE(*replyPrefix(5), std::string("\x00\x00\x00\x05", 4));
        QCOMPARE(*replyPrefix(0x01020304), std::string("\x01\x02\x03\x04", 4));
        QVERIFY(!replyPrefix(std::size_t{ 1 } << 32));
        QCOMPARE(decodeLength(std::string("\x80\x00\x00\x01", 4), 4), 0x80000001u);
        QCOMPARE(*encodeRequestFrame("abc"),
                 std::string("\x00\x03"
                             "abc",
                             5));
        QVERIFY(!encodeRequestFrame(std::string(0x10000, 'x')));
    }

    void decoderReassemblesFramesFromAnyChunking()
    {
        std::string stream;
        const std::vector<std::string> bodies = { "{}", std::string(70000, 'a'), "", "é" };
        for (const auto& body : bodies)
            stream += *encodeReplyFrame(body);
        for (const std::size_t chunk :
             { std::size_t{ 1 }, std::size_t{ 3 }, std::size_t{ 4096 }, stream.size() }) {
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
    }

    void decoderFlagsOversizedPrefix()
    {
        RequestDecoder decoder(16);
        decoder.feed(std::string("\x00\x11", 2) + std::string(17, 'x'));
        std::string body;
        QVERIFY(!decoder.next(body));
        QVERIFY(decoder.oversized());
    }

    void utf8ValidationIsStrict()
    {
        QVERIFY(isValidUtf8(""));
        QVERIFY(isValidUtf8("plain ascii text that is longer than eight bytes"));
        QVERIFY(isValidUtf8("\xc3\xa9\xe2\x82\xac\xf0\x9f\x98\x80"));
        QVERIFY(!isValidUtf8("\xff"));
        QVERIFY(!isValidUtf8("\xc0\xaf"));         // overlong
        QVERIFY(!isValidUtf8("\xed\xa0\x80"));     // surrogate
        QVERIFY(!isValidUtf8("\xf4\x90\x80\x80")); // above U+10FFFF
        QVERIFY(!isValidUtf8("abcdefgh\xe2\x82")); // cut short
        QCOMPARE(utf8Length("h\xc3\xa9llo \xf0\x9f\x98\x80"), std::size_t{ 7 });
    }
};

QTEST_APPLESS_MAIN(TestFrame)
#include "tst_frame.moc"
