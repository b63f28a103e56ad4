// Frames reassembled from any chunking, an oversized prefix flagged, strict UTF-8. (The request
// texts: the server's tests read each with its own parser.)
#include "wire/Frame.h"
#include "wire/FrameDecoder.h"
#include "wire/Utf8.h"

#include <QTest>

using namespace pomvar::wire;

class TestWire : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void decoderReassemblesFramesFromAnyChunking()
    {
        QCOMPARE(*encodeRequestFrame("abc"), std::string("\0\3abc", 5));
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

    void utf8ValidationIsStrict()
    {
        const std::pair<std::string, bool> cases[] = {
            { "plain ascii text, longer than eight bytes", true },
            { "\xc3\xa9\xe2\x82\xac\xf0\x9f\x98\x80", true }, // 2, 3 and 4 bytes
            { "\xff", false },                                // stray byte
            { "\xc0\xaf", false },                            // overlong
            { "\xc3(", false },                               // no continuation byte
            { "\xed\xa0\x80", false },                        // surrogate
            { "\xf4\x90\x80\x80", false },                    // above U+10FFFF
            { "abcdefgh\xe2\x82", false },                    // cut short after ASCII
        };
        for (const auto& [text, valid] : cases)
            QVERIFY2(isValidUtf8(text) == valid, text.c_str());
    }
};

QTEST_APPLESS_MAIN(TestWire)
#include "tst_wire.moc"
