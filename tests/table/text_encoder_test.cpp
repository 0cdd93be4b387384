#include "table/text_encoder.h"

#include <random>

#include "table/font_test_support.h"
#include "table/text_decoder.h"

namespace {

class TextEncoderTest : public FontTest {
protected:
    // Encodes through font 1; the bytes, or {0xEE, 0xEE} when encoding fails.
    static Bytes Encode(const std::string& text) {
        const unsigned char* bytes = EncodeText(1, text.c_str());
        if (!bytes) return {0xEE, 0xEE};
        return Bytes(bytes, bytes + EncodedLength());
    }
    // 0x41 A, 0x42 B, 0x80 AB, 0xFE a line break, 0xFF the terminal.
    static FontBuilder Letters() {
        FontBuilder font;
        font.Entry(0x41, "A").Entry(0x42, "B").Entry(0x80, "AB");
        font.Entry(0xFE, "", ENTRY_NEWLINE).Entry(0xFF, "", ENTRY_TERMINAL);
        return font;
    }
    static const Bytes kFailed;
};
const Bytes TextEncoderTest::kFailed = {0xEE, 0xEE};

TEST_F(TextEncoderTest, LongestTextsLineFeedsRawBytesAndTheTerminal) {
    ASSERT_EQ(Letters().Entry(0x00, "<end>", ENTRY_TERMINAL).Entry(0x50, "[X]").TwoByte(0x8140, "AB").Load(), 1);
    EXPECT_EQ(Encode("AAB"), (Bytes{0x41, 0x80, 0xFF}));
    EXPECT_EQ(Encode("A\nB"), (Bytes{0x41, 0xFE, 0x42, 0xFF}));
    EXPECT_EQ(Encode("A[07]B"), (Bytes{0x41, 0x07, 0x42, 0xFF}));
    EXPECT_EQ(Encode("[X]"), (Bytes{0x50, 0xFF}));
    EXPECT_EQ(Encode("[zz][FF]"), (Bytes{0x00, 0xFF}));
    EXPECT_EQ(Encode("A<end>"), (Bytes{0x41, 0x00}));
    EXPECT_EQ(Encode(""), (Bytes{0xFF}));
    EXPECT_EQ(EncodedLength(), 1);
    EXPECT_EQ(Encode("A\rB"), kFailed);
    EXPECT_EQ(Encode("a"), kFailed);
    EXPECT_EQ(Encode("A[0"), kFailed);
    EXPECT_EQ(EncodedLength(), 1);
}

TEST_F(TextEncoderTest, ParameterEntries) {
    ASSERT_EQ(Letters()
                  .Entry(0x05, "<wait @>", ENTRY_PARAM)
                  .Entry(0x06, "<pos @>", ENTRY_PARAM | ENTRY_PARAM2)
                  .Entry(0x07, "<wai", ENTRY_PARAM)
                  .Entry(0x04, "<wait 1E>B")
                  .Entry(0x09, "@b")
                  .TwoByte(0x9000, "<big @>", ENTRY_PARAM)
                  .Load(),
              1);
    EXPECT_EQ(Encode("<wait 1E>"), (Bytes{0x05, 0x1E, 0xFF}));
    EXPECT_EQ(Encode("<wait  \t1e>A"), (Bytes{0x05, 0x1E, 0x41, 0xFF}));
    EXPECT_EQ(Encode("<wait 1Ex>"), kFailed);
    EXPECT_EQ(Encode("<wait zz>"), (Bytes{0x05, 0x00, 0xFF}));
    EXPECT_EQ(Encode("<pos  1E 02>"), (Bytes{0x06, 0x1E, 0x02, 0xFF}));
    EXPECT_EQ(Encode("<pos 1E02>"), kFailed);
    // The matching parameter entry 0x05 wins over the longer plain text of 0x04.
    EXPECT_EQ(Encode("<wait 1E>B"), (Bytes{0x05, 0x1E, 0x42, 0xFF}));
    EXPECT_EQ(Encode("<wai"), (Bytes{0x07, 0xFF}));
    EXPECT_EQ(Encode("@b"), (Bytes{0x09, 0xFF}));
    EXPECT_EQ(Encode("<wait 1"), kFailed);
    EXPECT_EQ(Encode("<big 7F>"), (Bytes{0x90, 0x00, 0x7F, 0xFF}));
}

TEST_F(TextEncoderTest, EqualTextsTakeTheLowestEntry) {
    ASSERT_EQ(Letters().TwoByte(0x8140, "C").Entry(0xC3, "C").TwoByte(0x8141, "CD").Load(), 1);
    EXPECT_EQ(Encode("C"), (Bytes{0xC3, 0xFF}));
    EXPECT_EQ(Encode("CDC"), (Bytes{0x81, 0x41, 0xC3, 0xFF}));
}

TEST_F(TextEncoderTest, BackslashNamesDependOnThePosition) {
    ASSERT_EQ(Letters().Entry(0x10, "<back02>").Entry(0x11, "<BACK00>").TwoByte(0x8000, "<back12>").Load(), 1);
    EXPECT_EQ(Encode("\\"), (Bytes{0x11, 0xFF}));
    EXPECT_EQ(Encode("AB\\"), (Bytes{0x80, 0x10, 0xFF}));
    EXPECT_EQ(Encode("A\\"), kFailed);
    EXPECT_EQ(Encode("AAAAAAAAAAAA\\"),
              (Bytes{0x41, 0x41, 0x41, 0x41, 0x41, 0x41, 0x41, 0x41, 0x41, 0x41, 0x41, 0x41, 0x80, 0x00, 0xFF}));
}

TEST_F(TextEncoderTest, RefusesWithoutATerminalOrPastTheArea) {
    ASSERT_EQ(Letters().Load(), 1);
    EXPECT_EQ(Encode(std::string(1022, 'A')).size(), 1023u);
    EXPECT_EQ(Encode(std::string(1023, 'A')), kFailed);
    EXPECT_EQ(Encode("A[FF]"), (Bytes{0x41, 0xFF}));
    ResetFontSet();
    ASSERT_EQ(FontBuilder().Entry(0x41, "A").Entry(0xFF, "<end>", ENTRY_TERMINAL).Load(), 1);
    EXPECT_EQ(Encode("A<end>"), (Bytes{0x41, 0xFF}));
    EXPECT_EQ(Encode("A"), kFailed);
    EXPECT_EQ(Encode("\n"), kFailed);
}

TEST_F(TextEncoderTest, ExportedEncodeReportsFailures) {
    long length = 7;
    EXPECT_EQ(Trelvane_Encode(1, "A", &length), nullptr);
    EXPECT_EQ(LastErrorSummary(), "-200||0,0|font|1");
    EXPECT_EQ(length, 0);
    ASSERT_EQ(Letters().Load(), 1);
    char* bytes = Trelvane_Encode(1, "AB", &length);
    ASSERT_NE(bytes, nullptr);
    EXPECT_EQ(length, 2);
    EXPECT_EQ(Bytes(bytes, bytes + 3), (Bytes{0x80, 0xFF, 0x00}));
    EXPECT_EQ(Trelvane_Encode(1, "A?B", &length), nullptr);
    EXPECT_EQ(LastErrorSummary(), "-251||0,0|A?B|");
    EXPECT_EQ(length, 0);
}

TEST_F(TextEncoderTest, RandomTextsRoundTrip) {
    const char* words[] = {"a", "b", "c", "ab", "abc", "the", "th", "e", " ", "<wait @>", "<pos @>"};
    FontBuilder font;
    font.Entry(0xFE, "", ENTRY_NEWLINE).Entry(0xFF, "", ENTRY_TERMINAL);
    for (int i = 0; i < 9; ++i) font.Entry(0x20 + i, words[i]);
    font.Entry(0x05, words[9], ENTRY_PARAM).Entry(0x06, words[10], ENTRY_PARAM | ENTRY_PARAM2);
    font.TwoByte(0x8140, "ca").TwoByte(0x8141, "hello");
    ASSERT_EQ(font.Load(), 1);
    std::mt19937 random(1234);
    const char* pieces[] = {"a", "b", "c", "ab", "the", "e", " ", "\n", "<wait  3F>", "<pos  00 A1>", "ca", "hello"};
    for (int round = 0; round < 500; ++round) {
        std::string text;
        for (int n = random() % 40; n > 0; --n) text += pieces[random() % 12];
        Bytes bytes = Encode(text);
        ASSERT_NE(bytes, kFailed) << text;
        const char* decoded = DecodeText(1, bytes.data(), bytes.data() + bytes.size());
        ASSERT_NE(decoded, nullptr);
        EXPECT_EQ(decoded, text);
        EXPECT_EQ(EncodedLength(), static_cast<int32_t>(bytes.size()));
    }
}

}  // namespace
