#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "core/last_error.h"
#include "core/rom_slots.h"
#include "script/game_image.h"
#include "script/pointer_writer.h"
#include "script/written_text.h"
#include "support/test_support.h"
#include "table/font_set.h"
#include "trelvane.h"

namespace {

class ScriptInserterTest : public ::testing::Test {
protected:
    void SetUp() override {
        ResetFontSet();
        ThePointerDestination = PointerDestination();
        WriteFile(dir / "game.tbl", GameTable());
        LoadZeros(0x2000);
    }
    void TearDown() override { Trelvane_FreeROM(-1); }

    void LoadZeros(size_t size) {
        Trelvane_FreeROM(-1);
        WriteFile(dir / "game.nes", Bytes(16 + size, 0));
        ASSERT_EQ(Trelvane_LoadROM((dir / "game.nes").c_str()), 1);
    }

    // Inserts a script whose header starts with the load line of the game's
    // table; returns the insertion's result.
    long Insert(const std::string& script) {
        ResetFontSet();
        WriteFile(dir / "s.txt", "load \"" + (dir / "game.tbl") + "\"\n" + script);
        return Trelvane_InsertFromFile(1, (dir / "s.txt").c_str());
    }

    static Bytes ImageBytes(size_t at, size_t length) {
        return Bytes(CurrentRom.data + at, CurrentRom.data + at + length);
    }

    // The image with every byte zero except the given runs.
    static bool OnlyChanged(const std::vector<std::pair<size_t, Bytes>>& runs) {
        Bytes expected(static_cast<size_t>(CurrentRom.size), 0);
        for (const auto& [at, bytes] : runs) std::copy(bytes.begin(), bytes.end(), expected.begin() + at);
        return ImageBytes(0, expected.size()) == expected;
    }

    TempDir dir;
};

TEST_F(ScriptInserterTest, HeaderErrors) {
    struct Case {
        std::string script;
        std::string error;
    } cases[] = {
        {"textaddress load", "s.txt:2,13:Expected 'number', found 'load'."},
        {"pointertable (", "s.txt:2,14:Expected 'address', found '('."},
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
    };
    for (const Case& c : cases) {
        EXPECT_EQ(Insert(c.script), 0) << c.script;
        EXPECT_EQ(std::string(Trelvane_GetLastError()), c.error) << c.script;
    }
    EXPECT_EQ(Trelvane_InsertFromFile(1, (dir / "nothere.txt").c_str()), 0);
    EXPECT_EQ(std::string(Trelvane_GetLastError()), "Error opening " + (dir / "nothere.txt") + ".");
    EXPECT_TRUE(OnlyChanged({}));
}

TEST_F(ScriptInserterTest, HeaderCommandsAnyCaseAndAcrossLines) {
    EXPECT_EQ(Insert("TEXTADDRESS\n100h TextAddress\n  200h ; a comment\nPointerTable 10h pointersize 1\n"
                     "firstpointer words are ignored\n[0000]\nHi"),
              1);
    EXPECT_TRUE(OnlyChanged({{0x10, {0x00}}, {0x200, GameText("Hi")}}));
    EXPECT_EQ(std::string(Trelvane_GetLastError()), "s.txt:1 strings - 3/268435455 (0%)");
}

TEST_F(ScriptInserterTest, StringSectionLineRules) {
    EXPECT_EQ(Insert("textaddress 100h [ the rest of this line is skipped\n"
                     "Hello;world\n[0001] ; 000106\n[0A]Hi\n[0002]\nTail_\n[0003]\nTabs \t \t\n"
                     "[0004]\n; comment\n  \nA\n\nB\n\n\n[0005]\n[0006]\n[0A]\n[0007]\n"),
              1);
    Bytes text;
    for (const char* string : {"Hello", "[0A]Hi", "Tail ", "Tabs", "A\n\nB", "", "[0A]"}) {
        Bytes encoded = GameText(string);
        text.insert(text.end(), encoded.begin(), encoded.end());
    }
    EXPECT_TRUE(OnlyChanged({{0x100, text}}));
    // Without a pointer table the whole text counts as one string.
    EXPECT_EQ(std::string(Trelvane_GetLastError()), "s.txt:1 strings - 35/268435455 (0%)");
}

TEST_F(ScriptInserterTest, IdenticalGroupsSharePointers) {
    // Without a first pointer, pointer values count from the text address. A
    // string that is the tail of an earlier one shares its bytes; the last
    // group is always written anew.
    EXPECT_EQ(Insert("textaddress 1000h pointertable 100h pointersize 2\n"
                     "[0000]\nHello\n[0001]\nWorld\n[0002]\nHello\n[0003]\norld\n[0004]\nHello\n"),
              1);
    Bytes text = GameText("Hello");
    for (const char* more : {"World", "Hello"}) {
        Bytes encoded = GameText(more);
        text.insert(text.end(), encoded.begin(), encoded.end());
    }
    EXPECT_TRUE(OnlyChanged({{0x100, {0x00, 0x00, 0x06, 0x00, 0x00, 0x00, 0x07, 0x00, 0x0C, 0x00}}, {0x1000, text}}));
    EXPECT_EQ(std::string(Trelvane_GetLastError()), "s.txt:5 strings - 18/268435455 (0%)");
}

TEST_F(ScriptInserterTest, GroupsByFrequency) {
    EXPECT_EQ(Insert("textaddress 1000h pointertable 100h pointersize 3 pointerfrequency 2\n"
                     "[0000]\nAB\n[0001]\nC\n[0002]\nD\n"),
              1);
    EXPECT_TRUE(OnlyChanged({{0x100, {0x00, 0x00, 0x00, 0x05, 0x00, 0x00}},
                             {0x1000, {'A', 'B', 0xFF, 'C', 0xFF, 'D', 0xFF}}}));
    EXPECT_EQ(std::string(Trelvane_GetLastError()), "s.txt:3 strings - 7/268435455 (0%)");
}

TEST_F(ScriptInserterTest, SplitTablesAndPersistentPointerPlace) {
    LoadZeros(0x20000);
    EXPECT_EQ(Insert("textaddress 12340h firstpointer 12340h\n"
                     "pointertablelow 100h pointertablehigh 200h pointertablebank 300h\n"
                     "[0000]\nA\n[0001]\nB\n"),
              1);
    EXPECT_TRUE(OnlyChanged({{0x100, {0x40, 0x42}},
                             {0x200, {0x23, 0x23}},
                             {0x300, {0x01, 0x01}},
                             {0x12340, {'A', 0xFF, 'B', 0xFF}}}));
    // The pointer table's place and shape carry over to the next script.
    EXPECT_EQ(Insert("textaddress 10000h firstpointer 10000h\n[0000]\nC\n"), 1);
    EXPECT_EQ(ImageBytes(0x100, 3), (Bytes{0x40, 0x42, 0x00}));
    EXPECT_EQ(ImageBytes(0x200, 3), (Bytes{0x23, 0x23, 0x00}));
    EXPECT_EQ(ImageBytes(0x300, 3), (Bytes{0x01, 0x01, 0x01}));
}

TEST_F(ScriptInserterTest, FirstPointerMapsPointerValuesToTheTextAddress) {
    LoadZeros(0x20000);
    EXPECT_EQ(Insert("textaddress 18000h firstpointer 8000h pointertable 100h pointersize 2\n[0000]\nHi\n"), 1);
    EXPECT_TRUE(OnlyChanged({{0x100, {0x00, 0x80}}, {0x18000, GameText("Hi")}}));
    // A first pointer whose bits overlap the text address's offset from it.
    EXPECT_EQ(Insert("textaddress 18010h firstpointer 8010h pointertable 100h pointersize 2\n[0000]\nHi\n"), 1);
    EXPECT_EQ(ImageBytes(0x100, 2), (Bytes{0x10, 0x80}));
    EXPECT_EQ(ImageBytes(0x18010, 3), GameText("Hi"));
}

TEST_F(ScriptInserterTest, SpaceLimit) {
    std::string script = "textaddress 1000h (100) pointertable 100h pointersize 2\n";
    for (int i = 0; i < 3; ++i) script += "[000" + std::to_string(i) + "]\n" + std::string(49, 'a' + i) + "\n";
    EXPECT_EQ(Insert(script), 0);
    EXPECT_EQ(std::string(Trelvane_GetLastError()), "s.txt:Too much space used - 150/100 (150%)");
    // The groups that fit are written; pointers go on being written.
    Bytes text(49, 'a');
    text.push_back(0xFF);
    text.insert(text.end(), 49, 'b');
    text.push_back(0xFF);
    EXPECT_TRUE(OnlyChanged({{0x100, {0x00, 0x00, 0x32, 0x00, 0x64, 0x00}}, {0x1000, text}}));

    // With a limit of 0 the percentage is taken against one byte.
    EXPECT_EQ(Insert("textaddress 1000h (0)\n[0000]\nab\n"), 0);
    EXPECT_EQ(std::string(Trelvane_GetLastError()), "s.txt:Too much space used - 3/0 (300%)");
    EXPECT_EQ(Insert("textaddress 1000h (FFFFFFFFh)\n[0000]\nab\n"), 1);
    EXPECT_EQ(std::string(Trelvane_GetLastError()), "s.txt:1 strings - 3/268435455 (0%)");
}

TEST_F(ScriptInserterTest, NothingIsWrittenOutsideTheImage) {
    EXPECT_EQ(Insert("textaddress 1FFEh\n[0000]\nHello\n"), 0);
    EXPECT_EQ(std::string(Trelvane_GetLastError()), "s.txt:Too much space used - 6/2 (300%)");
    EXPECT_EQ(Insert("textaddress 1000h pointertable 1FFFh pointersize 2\n[0000]\nHello\n"), 0);
    EXPECT_EQ(std::string(Trelvane_GetLastError()), "Pointer at 001FFFh outside the image not supported.");
    ThePointerDestination = PointerDestination();
    EXPECT_EQ(Insert("textaddress 1000h pointertablelow 100h pointertablehigh 2000h\n[0000]\nHello\n"), 0);
    EXPECT_EQ(std::string(Trelvane_GetLastError()), "Pointer at 002000h outside the image not supported.");
    EXPECT_TRUE(OnlyChanged({}));
}

TEST_F(ScriptInserterTest, StringsThatCannotBeEncoded) {
    EXPECT_EQ(Insert("textaddress 1000h\n[0000]\nOK\n[0001]\nBack\\slash\n[0002]\nOK\n"), 0);
    EXPECT_EQ(std::string(Trelvane_GetLastError()), "s.txt:3,1:Unable to encode: Back\\slash");
    EXPECT_EQ(Insert("textaddress 1000h\n[0000]\nOK\n[0001]\nlast\\one"), 0);
    // At the end of the file the column is the reader's token column, which
    // the last line read has moved to the left of the section's "[".
    EXPECT_EQ(std::string(Trelvane_GetLastError()), "s.txt:3,-6:Unable to encode: last\\one");
    // A joined string of 2047 characters reaches the encoder (whose area it
    // overflows); one more character is refused before.
    std::string lines = "textaddress 1000h\n[0000]\n" + std::string(2000, 'a') + "\n";
    EXPECT_EQ(Insert(lines + std::string(46, 'a') + "\n"), 0);
    EXPECT_EQ(LastError().data[0].size(), 2047u);
    EXPECT_EQ(Insert(lines + std::string(47, 'a') + "\n"), 0);
    EXPECT_EQ(std::string(Trelvane_GetLastError()), "s.txt:5,1:Unable to encode: string longer than 2047 characters");
}

TEST_F(ScriptInserterTest, ScriptsThatEndEarlyWriteNothing) {
    EXPECT_EQ(Insert("textaddress 100h (50)"), 1);
    EXPECT_EQ(std::string(Trelvane_GetLastError()), "s.txt:0 strings - 0/50 (0%)");
    EXPECT_EQ(Insert("textaddress 100h pointertable 10h pointersize 2\n[0000] ; 000100\n"), 1);
    EXPECT_EQ(std::string(Trelvane_GetLastError()), "s.txt:1 strings - 0/268435455 (0%)");
    EXPECT_TRUE(OnlyChanged({}));
}

TEST(WrittenTextTest, FindsTheFirstPlaceWhollyInsideTheText) {
    WrittenText text;
    const unsigned char first[] = {'a', 'b', 'c', 'a', 'b'};
    const unsigned char second[] = {'c', 'd', 'a', 'b', 'c', 'd', 'e'};
    text.Append(first, 5);
    text.Append(second, 7);  // abcabcdabcde
    auto find = [&](const std::string& s) {
        return text.Find(reinterpret_cast<const unsigned char*>(s.data()), static_cast<int32_t>(s.size()));
    };
    EXPECT_EQ(find("a"), 0);
    EXPECT_EQ(find("ca"), 2);
    EXPECT_EQ(find("bcd"), 4);
    EXPECT_EQ(find("abcd"), 3);
    EXPECT_EQ(find("cabcd"), 2);
    EXPECT_EQ(find("abcde"), 7);
    EXPECT_EQ(find("de"), 10);
    EXPECT_EQ(find("def"), -1);
    EXPECT_EQ(find("bcdef"), -1);
    EXPECT_EQ(find("x"), -1);
    EXPECT_EQ(find(""), -1);
}

}  // namespace
