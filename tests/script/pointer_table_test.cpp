#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>

#include "script/game_image.h"
#include "support/test_support.h"
#include "table/font_set.h"
#include "trelvane.h"

namespace {

struct FreeTable {
    void operator()(PointerTable* table) const { std::free(table); }
};
using FoundTable = std::unique_ptr<PointerTable, FreeTable>;

class PointerTableTest : public ::testing::Test {
protected:
    void SetUp() override {
        ResetFontSet();
        WriteFile(dir / "game.tbl", GameTable());
        ASSERT_EQ(Trelvane_LoadFont((dir / "game.tbl").c_str()), 1);
    }
    void TearDown() override { Trelvane_FreeROM(-1); }

    void Load(const GameImage& image) {
        image.WriteNes(dir / "game.nes");
        ASSERT_EQ(Trelvane_LoadROM((dir / "game.nes").c_str()), 1);
    }

    static PointerTable Record(int table, int size, int frequency, int base) {
        PointerTable record{};
        record.table = table;
        record.size = size;
        record.frequency = frequency;
        record.base = base;
        return record;
    }

    // Every field of a record, for exact comparisons.
    static std::vector<int> Fields(const PointerTable& t) {
        return {t.low, t.high, t.bank, t.size, t.frequency, t.count, t.base, t.table};
    }

    TempDir dir;
};

TEST_F(PointerTableTest, FinderTakesInTheFirstStringsPointerThroughTheBackwardStep) {
    GameImage image(0x20000);
    std::vector<int64_t> strings = image.PutStrings(0x10010, NumberedTexts(20));
    image.PutPointers(0x4000, 2, PointerValues(strings, 0x8010));
    Load(image);
    FoundTable found(Trelvane_FindPointerTable(1, 0x10010));
    ASSERT_TRUE(found);
    EXPECT_EQ(Fields(*found), (std::vector<int>{0, 0, 0, 2, 1, 20, 0x8010, 0x4000}));
    for (long i = 0; i < 20; ++i) EXPECT_EQ(Trelvane_GetPointer(1, found.get(), i), strings[i]);
}

TEST_F(PointerTableTest, StringsOfOneLengthAreFoundOneEntryEarly) {
    GameImage image(0x20000);
    std::vector<std::string> texts(20, "Same");
    std::vector<int64_t> strings = image.PutStrings(0x10010, texts);
    image.PutPointers(0x4000, 2, PointerValues(strings, 0x8010));
    Load(image);
    FoundTable found(Trelvane_FindPointerTable(1, 0x10010));
    ASSERT_TRUE(found);
    EXPECT_EQ(Fields(*found), (std::vector<int>{0, 0, 0, 2, 1, 20, 0x8010 + 5, 0x4000}));
    EXPECT_EQ(Trelvane_GetPointer(1, found.get(), 0), strings[1]);
}

TEST_F(PointerTableTest, TwoStringsPerPointer) {
    GameImage image(0x20000);
    std::vector<int64_t> strings = image.PutStrings(0x10010, NumberedTexts(40));
    std::vector<int64_t> firsts;
    for (size_t i = 0; i < strings.size(); i += 2) firsts.push_back(strings[i]);
    image.PutPointers(0x6000, 2, PointerValues(firsts, 0x8010));
    Load(image);
    FoundTable found(Trelvane_FindPointerTable(1, 0x10010));
    ASSERT_TRUE(found);
    EXPECT_EQ(Fields(*found), (std::vector<int>{0, 0, 0, 2, 2, 40, 0x8010, 0x6000}));
    // String 5 is the second behind pointer 2.
    EXPECT_EQ(Trelvane_GetPointer(1, found.get(), 5), strings[5]);
}

TEST_F(PointerTableTest, ThreeByteTablesWinOverTwoByteOnes) {
    GameImage image(0x20000);
    std::vector<int64_t> strings = image.PutStrings(0x10010, NumberedTexts(20));
    image.PutPointers(0x5000, 2, PointerValues(strings, 0x8010));
    image.PutPointers(0x7000, 3, PointerValues(strings, -0xC00000));
    Load(image);
    FoundTable found(Trelvane_FindPointerTable(1, 0x10010));
    ASSERT_TRUE(found);
    EXPECT_EQ(Fields(*found), (std::vector<int>{0, 0, 0, 3, 1, 20, -0xC00000, 0x7000}));
}

TEST_F(PointerTableTest, SingleByteTablesBecomeSplitTables) {
    GameImage image(0x40000);
    // Low and high bytes in separate tables. Of two copies of the high bytes,
    // the one nearer the low table wins.
    std::vector<int64_t> strings = image.PutStrings(0x10010, NumberedTexts(20, 30));
    std::vector<int64_t> values = PointerValues(strings, 0x10000);
    image.PutPointerBytes(0x3000, 0, values);
    image.PutPointerBytes(0x2400, 1, values);
    image.PutPointerBytes(0x3400, 1, values);
    // Short strings within one 256-byte page need no high table.
    std::vector<int64_t> pageStrings = image.PutStrings(0x37A10, ShortTexts(20));
    image.PutPointerBytes(0x1000, 0, PointerValues(pageStrings, 0x37A00));
    Load(image);

    FoundTable split(Trelvane_FindPointerTable(1, 0x10010));
    ASSERT_TRUE(split);
    EXPECT_EQ(Fields(*split), (std::vector<int>{0x3000, 0x3400, 0, 2, 1, 20, 0x10000, 0}));
    EXPECT_EQ(Trelvane_GetPointer(1, split.get(), 19), strings[19]);

    FoundTable lowOnly(Trelvane_FindPointerTable(1, 0x37A10));
    ASSERT_TRUE(lowOnly);
    EXPECT_EQ(Fields(*lowOnly), (std::vector<int>{0x1000, 0, 0, 1, 1, 20, 0x37A00, 0}));
}

TEST_F(PointerTableTest, NothingFoundInFillerOrOutsideTheImage) {
    GameImage image(0x10000);
    image.PutStrings(0x8000, NumberedTexts(20));
    Load(image);
    EXPECT_EQ(Trelvane_FindPointerTable(1, 0x8000), nullptr);
    EXPECT_EQ(Trelvane_FindPointerTable(1, 0x10000), nullptr);
    EXPECT_EQ(Trelvane_FindPointerTable(1, -1), nullptr);
}

TEST_F(PointerTableTest, TablesAtBothEndsOfTheImage) {
    // The table fills the first bytes of the image and its strings run up to
    // the last byte: nothing outside the image is read at either end.
    std::vector<std::string> texts = NumberedTexts(20);
    size_t textBytes = 0;
    for (const std::string& text : texts) textBytes += text.size() + 1;
    GameImage image(0x1000 + textBytes);
    std::vector<int64_t> strings = image.PutStrings(0x1000, texts);
    image.PutPointers(0, 2, PointerValues(strings, 0));
    Load(image);
    FoundTable atStart(Trelvane_FindPointerTable(1, 0x1000));
    ASSERT_TRUE(atStart);
    EXPECT_EQ(Fields(*atStart), (std::vector<int>{0, 0, 0, 2, 1, 20, 0, 0}));
    Trelvane_FreeROM(-1);

    GameImage tail(0x2000);
    strings = tail.PutStrings(0x100, texts);
    tail.PutPointers(0x2000 - 40, 2, PointerValues(strings, 0));
    Load(tail);
    FoundTable atEnd(Trelvane_FindPointerTable(1, 0x100));
    ASSERT_TRUE(atEnd);
    EXPECT_EQ(Fields(*atEnd), (std::vector<int>{0, 0, 0, 2, 1, 20, 0, 0x2000 - 40}));
    EXPECT_EQ(Trelvane_GetPointer(1, atEnd.get(), 20), -1);
}

TEST_F(PointerTableTest, AdjustKeepsDuplicatesAndSharedTails) {
    GameImage image(0x1000);
    std::vector<int64_t> s = image.PutStrings(0x800, {"Hello", "World", "Again", "Last"});
    // A higher target before the table ends the backward walk; a lower one
    // after it ends the forward walk.
    image.PutPointers(0x100, 2, {0xFFF, s[0], s[1], s[1], s[1] + 2, s[2], s[3], 0});
    Load(image);
    PointerTable table = Record(0x100 + 3 * 2, 2, 1, 0);
    Trelvane_AdjustPointerTable(1, &table);
    EXPECT_EQ(Fields(table), (std::vector<int>{0, 0, 0, 2, 1, 6, 0, 0x102}));
    EXPECT_EQ(Trelvane_GetPointer(1, &table, 3), s[1] + 2);

    // With two strings per pointer a shared tail ends the table.
    image.PutPointers(0x200, 2, {0xFFF, s[0], s[0] + 2, s[2], 0});
    Trelvane_FreeROM(-1);
    Load(image);
    table = Record(0x202, 2, 2, 0);
    Trelvane_AdjustPointerTable(1, &table);
    EXPECT_EQ(table.count, 2);
}

TEST_F(PointerTableTest, SplitPointersJoinTheirBytes) {
    GameImage image(0x1000);
    image.Put(0x10, {0x34, 0x35});
    image.Put(0x20, {0x12, 0x13});
    image.Put(0x30, {0x01, 0x02});
    Load(image);
    PointerTable table{};
    table.low = 0x10;
    table.frequency = 1;
    table.base = -0x10000;
    EXPECT_EQ(Trelvane_GetPointer(1, &table, 1), 0x35 - 0x10000);
    table.high = 0x20;
    EXPECT_EQ(Trelvane_GetPointer(1, &table, 1), 0x1335 - 0x10000);
    table.bank = 0x30;
    EXPECT_EQ(Trelvane_GetPointer(1, &table, 0), 0x011234 - 0x10000);
    // The bank table is read only together with a high table.
    table.high = 0;
    EXPECT_EQ(Trelvane_GetPointer(1, &table, 0), 0x34 - 0x10000);
}

TEST_F(PointerTableTest, RecordsThatDescribeNothingReadNothing) {
    // In an image of zeros every entry repeats the one before it, so a table
    // runs from the image's first byte to its last.
    GameImage image(0x100);
    std::fill(image.bytes.begin(), image.bytes.end(), 0);
    Load(image);
    struct Case {
        PointerTable table;
        int count;
    } cases[] = {
        {Record(0x10, 0, 1, 0), 256},   // size 0 reads as 1
        {Record(0x10, 2, 0, 0), 128},   // frequency 0 reads as 1
        {Record(0x100, 2, 1, 0), 0},    // first entry outside the image
        {Record(-4, 7, -3, 0), 0},
    };
    for (Case& c : cases) {
        Trelvane_AdjustPointerTable(1, &c.table);
        EXPECT_EQ(c.table.count, c.count);
        EXPECT_EQ(Trelvane_GetPointer(1, &c.table, -1), -1);
    }
    EXPECT_EQ(Trelvane_GetPointer(1, &cases[2].table, 0), -1);
    EXPECT_EQ(Trelvane_GetPointer(1, nullptr, 0), -1);
}

}  // namespace
