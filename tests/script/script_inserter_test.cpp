#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "core/last_error.h"
#include "core/rom_slots.h"
#include "script/game_image.h"
#include "script/pointer_writer.h"
#include "script/written_text.h"
#include "table/font_set.h"

namespace {

using namespace std::string_literals;

class ScriptInserterTest : public GameTest {
protected:
    void SetUp() override {
        GameTest::SetUp();
        Load(GameImage(0x2000, true));
    }

    // Inserts a script behind a load line for the game's table, with no
    // pointer table carried over from an earlier script.
    long Insert(const std::string& script) {
        ResetFontSet();
        SetPointerDestination(PointerDestination());
        WriteFile(dir / "s.txt", "load \"" + (dir / "game.tbl") + "\"\n" + script);
        return Trelvane_InsertFromFile(1, (dir / "s.txt").c_str());
    }

    void ExpectInsert(const std::string& script, long result, const std::string& message) {
        EXPECT_EQ(Insert(script), result) << script;
        EXPECT_EQ(std::string(Trelvane_GetLastError()), message) << script;
    }

    // True when the image holds zeros but for the given runs.
    static bool OnlyChanged(const std::vector<std::pair<size_t, Bytes>>& runs) {
        Bytes expected(static_cast<size_t>(CurrentRom().size), 0);
        for (const auto& [at, bytes] : runs) std::copy(bytes.begin(), bytes.end(), expected.begin() + at);
        return Bytes(CurrentRom().data, CurrentRom().data + CurrentRom().size) == expected;
    }
};

TEST_F(ScriptInserterTest, RefusalsWriteNothing) {
    std::string longest = "textaddress 1000h\n[0000]\n" + std::string(2000, 'a') + "\n" + std::string(47, 'a');
    struct Case {
        std::string script, error;
    } cases[] = {
        {"textaddress load", "s.txt:2,13:Expected 'number', found 'load'."},
        {"pointertablehigh\n]", "s.txt:3,1:Expected 'address', found ']'."},
        {"load 12", "s.txt:2,6:Expected 'filename', found '12'."},
        {"textaddress 100h (50 ]", "s.txt:2,22:Expected ')', found ']'."},
        {"textaddress 100h (]", "s.txt:2,19:Expected 'number', found ']'."},
        {"pointersize 5", "s.txt:2,13:Expected '1 to 4', found '5'."},
        {"pointerfrequency 0", "s.txt:2,18:Expected '1 or more', found '0'."},
        {"12 textaddress 10h", "s.txt:2,1:Unknown command: 12"},
        {"textaddress 10h\n)", "s.txt:3,1:Unknown command: )"},
        {"load \"missing.tbl\"", "Error opening missing.tbl."},
        {"pointertable 10h\n[0000]\nHi", "s.txt:Text address unspecified."},
        // A limit of 0 is divided as if it were 1; the end of the image limits too.
        {"textaddress 1000h (0)\n[0000]\nab\n", "s.txt:Too much space used - 3/0 (300%)"},
        {"textaddress 1FFEh\n[0000]\nHello\n", "s.txt:Too much space used - 6/2 (300%)"},
        {"textaddress 1000h pointertable 1FFFh pointersize 2\n[0000]\nHi\n",
         "Pointer at 001FFFh outside the image not supported."},
        {"textaddress 1000h pointertablelow 100h pointertablehigh 2000h\n[0000]\nHi\n",
         "Pointer at 002000h outside the image not supported."},
        {"textaddress 1000h\n[0000]\nBack\\slash\n[0001]\nOK\n", "s.txt:3,1:Unable to encode: Back\\slash"},
        // At the end of the file the column is the reader's token column, which
        // the last line read has moved to the left of the section's "[".
        {"textaddress 1000h\n[0000]\nlast\\one", "s.txt:3,-6:Unable to encode: last\\one"},
        {longest + "\n[0001]", "s.txt:5,1:Unable to encode: string longer than 2047 characters"},
        // Numbers never wrap: what needs more than 32 bits is refused.
        {"pointersize 4294967297", "s.txt:2,13:Expected '1 to 4', found '4294967297'."},
        {"pointerfrequency 100000001h", "s.txt:2,18:Expected '1 or more', found '100000001h'."},
        {"textaddress 10001D040h\n[0000]\nHi", "s.txt:2,13:Expected '32-bit number', found '10001D040h'."},
        {"textaddress 100h (4294967296)", "s.txt:2,19:Expected '32-bit number', found '4294967296'."},
        {"firstpointer 100000000h", "s.txt:2,14:Expected '32-bit number', found '100000000h'."},
        {"pointertable 123456789h", "s.txt:2,14:Expected '32-bit address', found '123456789h'."},
        // A number followed directly by letters is refused whole, not read as its digits.
        {"textaddress 2AE0\n[0000]\nHi", "s.txt:2,13:Expected 'number', found '2AE0'."},
        {"textaddress 1000h (12AB)", "s.txt:2,20:Expected 'number', found '12AB'."},
        {"pointertable 10hx", "s.txt:2,14:Expected 'address', found '10hx'."},
        {"pointersize 2q", "s.txt:2,13:Expected 'number', found '2q'."},
        {"firstpointer 8000z", "s.txt:2,14:Expected 'number', found '8000z'."},
        // A zero byte is refused where it lies, not taken for the end of the file or line.
        {"textaddress 1000h\n[0000]\nHel\0lo\n"s, "s.txt:4,4:Unable to encode: \\0"},
        {"textaddress 1000h\n[0000]\nHi\n\0"s, "s.txt:5,1:Unable to encode: \\0"},
        {"textaddress\0 1000h"s, "s.txt:2,12:Expected 'number', found '\\0'."},
        {"load \"ga\0me.tbl\""s, "s.txt:2,9:Expected 'filename', found '\\0'."},
        {"\0textaddress 1000h"s, "s.txt:2,1:Unknown command: \\0"},
    };
    for (const Case& c : cases) {
        ExpectInsert(c.script, 0, c.error);
        EXPECT_TRUE(OnlyChanged({})) << c.script;
    }
    // 2047 joined characters reach the encoder (and overflow its area).
    longest.pop_back();
    EXPECT_EQ(Insert(longest + "\n[0001]"), 0);
    EXPECT_EQ(LastError().code, TLERR_TEXT_NOENCODE);
    EXPECT_EQ(LastError().data[0], longest.substr(25));
}

TEST_F(ScriptInserterTest, WritesEachGroupAndItsPointers) {
    const std::string a(49, 'a'), b(49, 'b'), c(49, 'c');
    struct Case {
        std::string script, message;
        std::vector<std::pair<size_t, Bytes>> runs;
        long result = 1;
    } cases[] = {
        {"TEXTADDRESS\n100h TextAddress\n  200h ; a comment\nPointerTable 10h pointersize 1\n"
         "firstpointer words are ignored\n[0000]\nHi",
         "s.txt:1 strings - 3/268435455 (0%)", {{0x200, GameText({"Hi"})}}},
        // Without a pointer table the strings go end to end and count as one.
        {"textaddress 100h [ the rest of this line is skipped\n"
         "Hello;world\n[0001] ; 000106\n[0A]Hi\n[0002]\nTail_\n[0003]\nTabs \t \t\n"
         "[0004]\n; comment\n  \nA\n\nB\n\n\n[0005]\n[0006]\n[0A]\n[0007]\n",
         "s.txt:1 strings - 35/268435455 (0%)",
         {{0x100, GameText({"Hello", "[0A]Hi", "Tail ", "Tabs", "A\n\nB", "", "[0A]"})}}},
        // Pointer values count from the text address when no first pointer is
        // given. A tail of earlier text is shared too; the last group never is.
        {"textaddress 1000h pointertable 100h pointersize 2\n"
         "[0000]\nHello\n[0001]\nWorld\n[0002]\nHello\n[0003]\norld\n[0004]\nHello\n",
         "s.txt:5 strings - 18/268435455 (0%)",
         {{0x100, {0, 0, 6, 0, 0, 0, 7, 0, 12, 0}}, {0x1000, GameText({"Hello", "World", "Hello"})}}},
        {"textaddress 1000h pointertable 100h pointersize 3 pointerfrequency 2\n[0000]\nAB\n[0001]\nC\n[0002]\nD",
         "s.txt:3 strings - 7/268435455 (0%)", {{0x100, {0, 0, 0, 5, 0, 0}}, {0x1000, GameText({"AB", "C", "D"})}}},
        {"textaddress 18000h firstpointer 8000h pointertable 100h pointersize 2\n[0000]\nHi\n",
         "s.txt:1 strings - 3/268435455 (0%)", {{0x100, {0x00, 0x80}}, {0x18000, GameText({"Hi"})}}},
        // No limit; and scripts that end early write nothing.
        {"textaddress 100h (FFFFFFFFh)\n[0000]\nab\n", "s.txt:1 strings - 3/268435455 (0%)", {{0x100, GameText({"ab"})}}},
        // Zero bytes in what the reader skips (comments, the rest of a header line) do no harm.
        {"; a zero\0 byte\ntextaddress 100h [0000\0\n; \0\nHi ;\0\n[0001] ; \0\n"s, "s.txt:1 strings - 3/268435455 (0%)",
         {{0x100, GameText({"Hi"})}}},
        {"textaddress 100h (50)", "s.txt:0 strings - 0/50 (0%)", {}},
        {"textaddress 100h pointertable 10h pointersize 2\n[0000] ; 000100\n", "s.txt:1 strings - 0/268435455 (0%)", {}},
        // Past the limit the groups that fit are written, and all pointers.
        {"textaddress 1000h (100) pointertable 100h pointersize 2\n[0000]\n" + a + "\n[0000]\n" + b + "\n[0000]\n" + c,
         "s.txt:Too much space used - 150/100 (150%)", {{0x100, {0, 0, 0x32, 0, 0x64, 0}}, {0x1000, GameText({a, b})}}, 0},
        // Split tables; the last case leaves its pointer place for the next script.
        {"textaddress 12340h firstpointer 12340h\n"
         "pointertablelow 100h pointertablehigh 200h pointertablebank 300h\n[0000]\nA\n[0001]\nB\n",
         "s.txt:2 strings - 4/268435455 (0%)",
         {{0x100, {0x40, 0x42}}, {0x200, {0x23, 0x23}}, {0x300, {0x01, 0x01}}, {0x12340, GameText({"A", "B"})}}},
    };
    for (const Case& row : cases) {
        Load(GameImage(0x20000, true));
        ExpectInsert(row.script, row.result, row.message);
        EXPECT_TRUE(OnlyChanged(row.runs)) << row.script;
    }
    // A script without pointer commands goes on where the last one ended.
    WriteFile(dir / "next.txt", "textaddress 10000h firstpointer 10000h\n[0000]\nC\n");
    EXPECT_EQ(Trelvane_InsertFromFile(1, (dir / "next.txt").c_str()), 1);
    EXPECT_EQ(Bytes(CurrentRom().data + 0x300, CurrentRom().data + 0x303), (Bytes{0x01, 0x01, 0x01}));
}

TEST(WrittenTextTest, FindsTheFirstPlaceWhollyInsideTheText) {
    WrittenText text;
    text.Append(reinterpret_cast<const unsigned char*>("abcab"), 5);
    text.Append(reinterpret_cast<const unsigned char*>("cdabcde"), 7);
    auto find = [&](const std::string& s) {
        return text.Find(reinterpret_cast<const unsigned char*>(s.data()), static_cast<int32_t>(s.size()));
    };
    for (const auto& [bytes, at] : std::vector<std::pair<std::string, int>>{
             {"a", 0}, {"ca", 2}, {"bcd", 4}, {"abcd", 3}, {"cabcd", 2}, {"abcde", 7}, {"de", 10},
             {"def", -1}, {"bcdef", -1}, {"x", -1}, {"", -1}})
        EXPECT_EQ(find(bytes), at) << bytes;
}

}  // namespace
