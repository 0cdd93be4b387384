#include <random>

#include "table/font_test_support.h"
#include "table/text_encoder.h"

namespace {

using TextCodecTest = FontTest;

const Bytes kFailed = {0xEE, 0xEE};

// Encodes through font 1; the bytes, or kFailed when encoding fails.
Bytes Encode(const std::string& text) {
    const EncodedText encoded = EncodeText(1, text.c_str());
    return encoded.bytes ? Bytes(encoded.bytes, encoded.bytes + encoded.length) : kFailed;
}

TEST_F(TextCodecTest, PlainTwoByteAndParameterCodesAndClippedLongTexts) {
    const std::string longText(1500, 'w');
    FontBuilder font = Letters().Entry(0x10, longText.c_str());
    font.Entry(0x00, "<end>", ENTRY_TERMINAL | ENTRY_NEWLINE).TwoByte(0x8140, "X").TwoByte(0x8150, nullptr);
    font.Entry(0x05, "<wait @>", ENTRY_PARAM).Entry(0x06, "<pos @>", ENTRY_PARAM | ENTRY_PARAM2 | ENTRY_NEWLINE);
    ASSERT_EQ(font.Entry(0x07, "<sound>", ENTRY_PARAM).Entry(0x08, nullptr, ENTRY_PARAM).Load(), 1);
    const struct {
        Bytes bytes;
        const char* text;
        int32_t length;  // bytes read, up to and with the terminal
    } cases[] = {
        {{0x41, 0x42, 0xFF, 0x41}, "AB", 3},
        {{0x41, 0x7E, 0xFF}, "A[7E]", 3},
        {{0x41, 0xFE, 0x42, 0xFF}, "A\nB", 4},
        {{0x42, 0x00, 0x41}, "B<end>\n", 2},
        {{0x81, 0x40, 0xFF}, "X", 3},
        {{0x81, 0x41, 0xFF}, "[81]", 3},
        {{0x81, 0x50, 0xFF}, "[81][50]", 3},
        {{0x05, 0x1E, 0x41, 0xFF}, "<wait  1E>A", 4},
        {{0x06, 0x1E, 0x02, 0xFF}, "<pos  1E 02>\n", 4},
        {{0x07, 0x41, 0x42, 0xFF}, "<sound>B", 4},
        {{0x08, 0x41, 0x42, 0xFF}, "[08]B", 4},
        // The end of the readable bytes ends the text, inside a code or not.
        {{0x41, 0x42}, "AB", 2},
        {{0x41, 0x81}, "A[81]", 2},
        {{0x41, 0x06, 0x11}, "A[06][11]", 3},
        {{}, "", 0},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        EXPECT_EQ(DecodeCounted(c.bytes), std::pair(std::string(c.text), c.length));
    }
    EXPECT_EQ(DecodeCounted(Bytes(3000, 0x41)), std::pair(std::string(1985, 'A'), 1985));
    // The second long text passes 1984 and is clipped at the area's end.
    EXPECT_EQ(DecodeCounted({0x41, 0x10, 0x10, 0x10, 0xFF}), std::pair("A" + longText + longText.substr(0, 546), 3));
    ASSERT_EQ(Decode({0x10, 0x10, 0x10, 0x10, 0xFF}).size(), 2047u);
}

TEST_F(TextCodecTest, RomanjiJoiningRules) {
    FontBuilder font = Letters();
    const char* texts[] = {"ka",   "ki",  "shi", "chi", "ji", "hi", "a",  "DE", "SHI", "KI",
                           "-tsu", "-ya", "-yu", "-yo", "-TSU", "-YA", "-I", "-O", "-x"};
    for (int i = 0; i < 10; ++i) font.Entry(0x01 + i, texts[i]);
    for (int i = 10; i < 19; ++i) font.Entry(0x10 + i - 10, texts[i]);
    font.Entry(0x20, "<w @>", ENTRY_PARAM | ENTRY_NEWLINE).Entry(0x21, "KA").Rule(FONT_RULE_ROMANJI);
    ASSERT_EQ(font.Load(), 1);
    const struct {
        Bytes bytes;
        const char* text;
    } cases[] = {
        {{0x01, 0x10, 0x01, 0xFF}, "kakka"}, {{0x02, 0x11, 0xFF}, "kya"},       {{0x03, 0x11, 0xFF}, "sha"},
        {{0x04, 0x13, 0xFF}, "cho"},         {{0x05, 0x12, 0xFF}, "ju"},        {{0x06, 0x11, 0xFF}, "hya"},
        {{0x07, 0x11, 0xFF}, "a-ya"},        {{0x11, 0xFF}, "-ya"},             {{0x08, 0x16, 0xFF}, "Di"},
        {{0x07, 0x16, 0xFF}, "a-I"},         {{0x09, 0x15, 0xFF}, "SHA"},       {{0x0A, 0x15, 0xFF}, "KYA"},
        {{0x14, 0x21, 0xFF}, "KKA"},         {{0x14, 0x01, 0xFF}, "-TSUka"},    {{0x01, 0x10, 0xFF}, "ka-tsu"},
        {{0x01, 0x10, 0x30, 0xFF}, "ka-tsu[30]"}, {{0x01, 0x10}, "ka-tsu"},     {{0x20, 0x1E, 0x41, 0xFF}, "<w  1E>A"},
        {{0x08, 0x17, 0x18, 0x01, 0xFF}, "Do-xka"}, {{0x02, 0xFE, 0x11, 0xFF}, "ki\n-ya"},
    };
    for (const auto& c : cases) EXPECT_EQ(Decode(c.bytes), c.text) << c.text;
    // The joined text has no room to grow at the end of the area: the decoding fails.
    EXPECT_EQ(DecodeCounted(Bytes(1983, 0x41)), std::pair(std::string(1983, 'A'), 1983));
    EXPECT_EQ(DecodeCounted(Bytes(1984, 0x41)), std::pair(std::string("<null>"), 0));
}

TEST_F(TextCodecTest, LongestTextsParametersRawBytesAndTheTerminal) {
    FontBuilder font = Letters();
    font.Entry(0x00, "<end>", ENTRY_TERMINAL).Entry(0x50, "[X]").Entry(0x04, "<wait 1E>B").Entry(0x09, "@b");
    font.Entry(0x05, "<wait @>", ENTRY_PARAM).Entry(0x06, "<pos @>", ENTRY_PARAM | ENTRY_PARAM2);
    font.Entry(0x07, "<wai", ENTRY_PARAM).TwoByte(0x8140, "AB").TwoByte(0x9000, "<big @>", ENTRY_PARAM);
    font.TwoByte(0x8141, "C").Entry(0xC3, "C").TwoByte(0x8142, "CD");  // equal texts
    font.Entry(0x10, "<back02>").Entry(0x11, "<BACK00>").TwoByte(0x8000, "<back12>");  // a backslash names its position
    ASSERT_EQ(font.Load(), 1);
    const struct {
        const char* text;
        Bytes bytes;
    } cases[] = {
        {"AAB", {0x41, 0x80, 0xFF}},
        {"A\nB", {0x41, 0xFE, 0x42, 0xFF}},
        {"A[07]B", {0x41, 0x07, 0x42, 0xFF}},
        {"[X]", {0x50, 0xFF}},
        {"[zz][FF]", {0x00, 0xFF}},
        {"A<end>", {0x41, 0x00}},
        {"", {0xFF}},
        {"A\rB", kFailed},
        {"a", kFailed},
        {"A[0", kFailed},
        {"<wait 1E>", {0x05, 0x1E, 0xFF}},
        {"<wait  \t1e>A", {0x05, 0x1E, 0x41, 0xFF}},
        {"<wait 1Ex>", kFailed},
        {"<wait zz>", {0x05, 0x00, 0xFF}},
        {"<pos  1E 02>", {0x06, 0x1E, 0x02, 0xFF}},
        {"<pos 1E02>", kFailed},
        {"<wait 1E>B", {0x05, 0x1E, 0x42, 0xFF}},  // the matching parameter entry wins over a longer plain text
        {"<wai", {0x07, 0xFF}},
        {"@b", {0x09, 0xFF}},
        {"C", {0xC3, 0xFF}},  // equal texts: the lowest entry index
        {"CDC", {0x81, 0x42, 0xC3, 0xFF}},
        {"\\", {0x11, 0xFF}},
        {"AB\\", {0x80, 0x10, 0xFF}},
        {"A\\", kFailed},
        {"AAAAAAAAAAAA\\", {0x41, 0x41, 0x41, 0x41, 0x41, 0x41, 0x41, 0x41, 0x41, 0x41, 0x41, 0x41, 0x80, 0, 0xFF}},
        {"<big 7F>", {0x90, 0x00, 0x7F, 0xFF}},
        {"<wait 1", kFailed},
    };
    for (const auto& c : cases) EXPECT_EQ(Encode(c.text), c.bytes) << c.text;
    EXPECT_EQ(Encode(std::string(1022, 'A')).size(), 1023u);
    EXPECT_EQ(Encode(std::string(1023, 'A')), kFailed);
    ResetFontSet();
    ASSERT_EQ(FontBuilder().Entry(0x41, "A").Entry(0xFF, "<end>", ENTRY_TERMINAL).Load(), 1);
    EXPECT_EQ(Encode("A<end>"), (Bytes{0x41, 0xFF}));
    EXPECT_EQ(Encode("A"), kFailed);
}

TEST_F(TextCodecTest, ExportedCallsReportTheirRefusals) {
    long length = 99;
    auto decode = [&](long font, long address) {  // "text/length"
        const char* text = Trelvane_Decode(font, address, &length);
        return std::string(text ? text : "<null>") + "/" + std::to_string(length);
    };
    EXPECT_EQ(Trelvane_Encode(1, "A", &length), nullptr);
    EXPECT_EQ(LastErrorSummary(), "-200||0,0|font|1");
    ASSERT_EQ(Letters().Load(), 1);
    const char* bytes = Trelvane_Encode(1, "AB", &length);
    ASSERT_NE(bytes, nullptr);
    EXPECT_EQ(Bytes(bytes, bytes + length + 1), (Bytes{0x80, 0xFF, 0x00}));
    EXPECT_EQ(Trelvane_Encode(1, "A?B", &length), nullptr);
    EXPECT_EQ(LastErrorSummary(), "-251||0,0|A?B|");
    EXPECT_EQ(length, 0);

    EXPECT_EQ(Trelvane_Decode(1, 0, &length), nullptr);
    EXPECT_EQ(LastErrorSummary(), "-200||0,0|ROM|0");
    WriteFile(dir / "game.gb", Bytes{0x00, 0x41, 0x42, 0xFF, 0x41});
    ASSERT_EQ(Trelvane_LoadROM((dir / "game.gb").c_str()), 1);
    EXPECT_EQ(decode(1, 1), "AB/3");
    EXPECT_EQ(decode(1, 4), "A/1");
    EXPECT_EQ(decode(1, 5), "<null>/0");
    EXPECT_EQ(LastErrorSummary(), "-200||0,0|address|5");
    EXPECT_EQ(decode(1, -1), "<null>/0");
    EXPECT_EQ(decode(2, 1), "<null>/0");
    Trelvane_FreeROM(-1);
}

TEST_F(TextCodecTest, RandomTextsRoundTrip) {
    const char* words[] = {"a", "b", "c", "ab", "abc", "the", "th", "e", " "};
    FontBuilder font;
    font.Entry(0xFE, "", ENTRY_NEWLINE).Entry(0xFF, "", ENTRY_TERMINAL);
    for (int i = 0; i < 9; ++i) font.Entry(0x20 + i, words[i]);
    font.Entry(0x05, "<wait @>", ENTRY_PARAM).Entry(0x06, "<pos @>", ENTRY_PARAM | ENTRY_PARAM2);
    ASSERT_EQ(font.TwoByte(0x8140, "ca").TwoByte(0x8141, "hello").Load(), 1);
    std::mt19937 random(1234);
    const char* pieces[] = {"a", "b", "c", "ab", "the", "e", " ", "\n", "<wait  3F>", "<pos  00 A1>", "ca", "hello"};
    for (int round = 0; round < 500; ++round) {
        std::string text;
        for (int n = random() % 40; n > 0; --n) text += pieces[random() % 12];
        const Bytes bytes = Encode(text);
        ASSERT_NE(bytes, kFailed) << text;
        EXPECT_EQ(DecodeCounted(bytes), std::pair(text, static_cast<int32_t>(bytes.size())));
    }
}

}  // namespace
