#include "table/text_decoder.h"

#include "core/rom_slots.h"
#include "table/font_test_support.h"

namespace {

class TextDecoderTest : public FontTest {
protected:
    // Decodes the bytes through font 1 and returns the text, or "<null>".
    static std::string Decode(const Bytes& bytes) {
        const char* text = DecodeText(1, bytes.data(), bytes.data() + bytes.size());
        return text ? text : "<null>";
    }
    // A font where 0x41 is A, 0x42 B, 0xFE a line break, 0xFF the terminal.
    static FontBuilder Letters() {
        FontBuilder font;
        font.Entry(0x41, "A").Entry(0x42, "B").Entry(0xFE, "", ENTRY_NEWLINE).Entry(0xFF, "", ENTRY_TERMINAL);
        return font;
    }
};

TEST_F(TextDecoderTest, PlainCodesUnknownBytesAndLineBreaks) {
    ASSERT_EQ(Letters().Entry(0x00, "<end>", ENTRY_TERMINAL | ENTRY_NEWLINE).Load(), 1);
    EXPECT_EQ(Decode({0x41, 0x42, 0xFF, 0x41}), "AB");
    EXPECT_EQ(EncodedLength(), 3);
    EXPECT_EQ(Decode({0x41, 0x7E, 0xFF}), "A[7E]");
    EXPECT_EQ(Decode({0x41, 0xFE, 0x42, 0xFF}), "A\nB");
    EXPECT_EQ(Decode({0x42, 0x00, 0x41}), "B<end>\n");
    EXPECT_EQ(EncodedLength(), 2);
}

TEST_F(TextDecoderTest, TwoByteAndParameterCodes) {
    ASSERT_EQ(Letters()
                  .TwoByte(0x8140, "X")
                  .TwoByte(0x8150, nullptr)
                  .Entry(0x05, "<wait @>", ENTRY_PARAM)
                  .Entry(0x06, "<pos @>", ENTRY_PARAM | ENTRY_PARAM2 | ENTRY_NEWLINE)
                  .Entry(0x07, "<sound>", ENTRY_PARAM)
                  .Entry(0x08, nullptr, ENTRY_PARAM)
                  .Load(),
              1);
    EXPECT_EQ(Decode({0x81, 0x40, 0xFF}), "X");
    EXPECT_EQ(EncodedLength(), 3);
    EXPECT_EQ(Decode({0x81, 0x41, 0xFF}), "[81]");
    EXPECT_EQ(EncodedLength(), 3);
    EXPECT_EQ(Decode({0x81, 0x50, 0xFF}), "[81][50]");
    EXPECT_EQ(Decode({0x05, 0x1E, 0x41, 0xFF}), "<wait  1E>A");
    EXPECT_EQ(Decode({0x06, 0x1E, 0x02, 0xFF}), "<pos  1E 02>\n");
    EXPECT_EQ(Decode({0x07, 0x41, 0x42, 0xFF}), "<sound>B");
    EXPECT_EQ(Decode({0x08, 0x41, 0x42, 0xFF}), "[08]B");
    EXPECT_EQ(EncodedLength(), 4);
}

TEST_F(TextDecoderTest, StopsAtTheEndOfTheReadableBytes) {
    ASSERT_EQ(Letters().TwoByte(0x8140, "X").Entry(0x06, "<pos @>", ENTRY_PARAM | ENTRY_PARAM2).Load(), 1);
    EXPECT_EQ(Decode({0x41, 0x42}), "AB");
    EXPECT_EQ(EncodedLength(), 2);
    EXPECT_EQ(Decode({0x41, 0x81}), "A[81]");
    EXPECT_EQ(Decode({0x41, 0x06, 0x10}), "A[06][10]");
    EXPECT_EQ(EncodedLength(), 3);
    EXPECT_EQ(Decode({}), "");
    EXPECT_EQ(EncodedLength(), 0);
}

TEST_F(TextDecoderTest, LongStringsAreCutAndLongTextsClipped) {
    std::string longText(1500, 'w');
    ASSERT_EQ(Letters().Entry(0x10, longText.c_str()).Load(), 1);
    Bytes run(3000, 0x41);
    EXPECT_EQ(Decode(run), std::string(1985, 'A'));
    EXPECT_EQ(EncodedLength(), 1985);
    // The second long text passes 1984 and is clipped at the area's end.
    std::string text = Decode({0x41, 0x10, 0x10, 0x10, 0xFF});
    EXPECT_EQ(text, "A" + longText + longText.substr(0, 546));
    EXPECT_EQ(EncodedLength(), 3);
    ASSERT_EQ(Decode({0x10, 0x10, 0x10, 0x10, 0xFF}).size(), 2047u);
}

TEST_F(TextDecoderTest, RomanjiJoiningRules) {
    ASSERT_EQ(Letters()
                  .Rule(FONT_RULE_ROMANJI)
                  .Entry(0x01, "ka").Entry(0x02, "ki").Entry(0x03, "shi").Entry(0x04, "chi").Entry(0x05, "ji")
                  .Entry(0x06, "hi").Entry(0x07, "a").Entry(0x08, "DE").Entry(0x09, "SHI").Entry(0x0A, "KI")
                  .Entry(0x10, "-tsu").Entry(0x11, "-ya").Entry(0x12, "-yu").Entry(0x13, "-yo").Entry(0x14, "-TSU")
                  .Entry(0x15, "-YA").Entry(0x16, "-I").Entry(0x17, "-O").Entry(0x18, "-x")
                  .Entry(0x20, "<w @>", ENTRY_PARAM | ENTRY_NEWLINE).Entry(0x21, "KA")
                  .Load(),
              1);
    struct Case {
        Bytes bytes;
        const char* text;
    } cases[] = {
        {{0x01, 0x10, 0x01, 0xFF}, "kakka"},
        {{0x02, 0x11, 0xFF}, "kya"},
        {{0x03, 0x11, 0xFF}, "sha"},
        {{0x04, 0x13, 0xFF}, "cho"},
        {{0x05, 0x12, 0xFF}, "ju"},
        {{0x06, 0x11, 0xFF}, "hya"},
        {{0x07, 0x11, 0xFF}, "a-ya"},
        {{0x11, 0xFF}, "-ya"},
        {{0x08, 0x16, 0xFF}, "Di"},
        {{0x07, 0x16, 0xFF}, "a-I"},
        {{0x09, 0x15, 0xFF}, "SHA"},
        {{0x0A, 0x15, 0xFF}, "KYA"},
        {{0x14, 0x21, 0xFF}, "KKA"},
        {{0x14, 0x01, 0xFF}, "-TSUka"},
        {{0x01, 0x10, 0xFF}, "ka-tsu"},
        {{0x01, 0x10, 0x30, 0xFF}, "ka-tsu[30]"},
        {{0x01, 0x10}, "ka-tsu"},
        {{0x08, 0x17, 0x18, 0x01, 0xFF}, "Do-xka"},
        {{0x20, 0x1E, 0x41, 0xFF}, "<w  1E>A"},
        {{0x02, 0xFE, 0x11, 0xFF}, "ki\n-ya"},
    };
    for (const Case& c : cases) EXPECT_EQ(Decode(c.bytes), c.text) << c.text;
}

TEST_F(TextDecoderTest, RomanjiFailsAtTheOutputLimit) {
    ASSERT_EQ(Letters().Rule(FONT_RULE_ROMANJI).Load(), 1);
    EXPECT_EQ(Decode({0x41, 0xFF}), "A");
    EXPECT_EQ(Decode(Bytes(1983, 0x41)), std::string(1983, 'A'));
    EXPECT_EQ(EncodedLength(), 1983);
    EXPECT_EQ(Decode(Bytes(1984, 0x41)), "<null>");
    EXPECT_EQ(EncodedLength(), 1983);
}

TEST_F(TextDecoderTest, DecodeOnTheCurrentImage) {
    ASSERT_EQ(Letters().Load(), 1);
    long length = 99;
    EXPECT_EQ(Trelvane_Decode(1, 0, &length), nullptr);
    EXPECT_EQ(LastErrorSummary(), "-200||0,0|ROM|0");
    WriteFile(dir / "game.gb", Bytes{0x00, 0x41, 0x42, 0xFF, 0x41});
    ASSERT_EQ(Trelvane_LoadROM((dir / "game.gb").c_str()), 1);
    EXPECT_STREQ(Trelvane_Decode(1, 1, &length), "AB");
    EXPECT_EQ(length, 3);
    EXPECT_STREQ(Trelvane_Decode(1, 4, &length), "A");
    EXPECT_EQ(length, 1);
    EXPECT_EQ(Trelvane_Decode(1, 5, &length), nullptr);
    EXPECT_EQ(LastErrorSummary(), "-200||0,0|address|5");
    EXPECT_EQ(length, 0);
    EXPECT_EQ(Trelvane_Decode(1, -1, &length), nullptr);
    EXPECT_EQ(Trelvane_Decode(2, 1, &length), nullptr);
    EXPECT_EQ(LastErrorSummary(), "-200||0,0|font|2");
    Trelvane_FreeROM(-1);
}

}  // namespace
