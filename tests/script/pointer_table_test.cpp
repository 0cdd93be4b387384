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
        Trelvane_FreeROM(-1);
        image.WriteNes(dir / "game.nes");
        ASSERT_EQ(Trelvane_LoadROM((dir / "game.nes").c_str()), 1);
    }

    static FoundTable Find(long address) { return FoundTable(Trelvane_FindPointerTable(1, address)); }

    static PointerTable Record(int table, int size, int frequency) {
        PointerTable record{};
        record.table = table;
        record.size = size;
        record.frequency = frequency;
        return record;
    }

    // low, high, bank, size, frequency, count, base, table; none without a record.
    static std::vector<int> Fields(const PointerTable* t) {
        if (!t) return {};
        return {t->low, t->high, t->bank, t->size, t->frequency, t->count, t->base, t->table};
    }

    TempDir dir;
};

TEST_F(PointerTableTest, FinderMatchesFromTheSecondStringAndStepsBack) {
    GameImage image(0x20000);
    std::vector<int64_t> strings = image.PutStrings(0x10010, NumberedTexts(20));
    image.PutPointers(0x4000, 2, strings, 0x8010);
    Load(image);
    FoundTable found = Find(0x10010);
    EXPECT_EQ(Fields(found.get()), (std::vector<int>{0, 0, 0, 2, 1, 20, 0x8010, 0x4000}));
    for (long i = 0; i < 20; ++i) EXPECT_EQ(Trelvane_GetPointer(1, found.get(), i), strings[i]);

    // Strings of one length repeat their differences: the table is taken one
    // entry early, each entry addressing the string after its own.
    image.PutPointers(0x4000, 2, image.PutStrings(0x10010, std::vector<std::string>(20, "Same")), 0x8010);
    Load(image);
    EXPECT_EQ(Fields(Find(0x10010).get()), (std::vector<int>{0, 0, 0, 2, 1, 20, 0x8010 + 5, 0x4000}));
}

TEST_F(PointerTableTest, TwoStringsPerPointer) {
    GameImage image(0x20000);
    std::vector<int64_t> strings = image.PutStrings(0x10010, NumberedTexts(40)), firsts;
    for (size_t i = 0; i < strings.size(); i += 2) firsts.push_back(strings[i]);
    image.PutPointers(0x6000, 2, firsts, 0x8010);
    Load(image);
    FoundTable found = Find(0x10010);
    EXPECT_EQ(Fields(found.get()), (std::vector<int>{0, 0, 0, 2, 2, 40, 0x8010, 0x6000}));
    EXPECT_EQ(Trelvane_GetPointer(1, found.get(), 5), strings[5]);  // pointer 2, one string on
}

TEST_F(PointerTableTest, SingleByteTablesBecomeSplitTables) {
    // Of two copies of the high bytes, the one nearer the low table wins.
    std::vector<int64_t> strings;
    GameImage image = SplitTableGame(strings);
    image.PutPointers(0x2400, 1, strings, 0x10000, 1);
    Load(image);
    FoundTable split = Find(0x10010);
    EXPECT_EQ(Fields(split.get()), (std::vector<int>{0x3000, 0x3400, 0, 2, 1, 20, 0x10000, 0}));
    EXPECT_EQ(Trelvane_GetPointer(1, split.get(), 19), strings[19]);
    EXPECT_EQ(Fields(Find(0x37A10).get()), (std::vector<int>{0x1000, 0, 0, 1, 1, 20, 0x37A00, 0}));
    EXPECT_EQ(Find(0x8000), nullptr);
    EXPECT_EQ(Find(0x40000), nullptr);
}

TEST_F(PointerTableTest, NothingOutsideTheImageIsReadAtEitherEnd) {
    std::vector<std::string> texts = NumberedTexts(20);
    GameImage image(0x1000 + 247);  // the strings run up to the last byte
    std::vector<int64_t> strings = image.PutStrings(0x1000, texts);
    image.PutPointers(0, 2, strings);
    Load(image);
    EXPECT_EQ(Fields(Find(0x1000).get()), (std::vector<int>{0, 0, 0, 2, 1, 20, 0, 0}));

    GameImage tail(0x2000);
    tail.PutPointers(0x2000 - 40, 2, tail.PutStrings(0x100, texts));
    Load(tail);
    FoundTable atEnd = Find(0x100);
    EXPECT_EQ(Fields(atEnd.get()), (std::vector<int>{0, 0, 0, 2, 1, 20, 0, 0x2000 - 40}));
    EXPECT_EQ(Trelvane_GetPointer(1, atEnd.get(), 20), -1);
}

TEST_F(PointerTableTest, AdjustKeepsDuplicatesAndSharedTails) {
    GameImage image(0x1000);
    std::vector<int64_t> s = image.PutStrings(0x800, {"Hello", "World", "Again", "Last"});
    // A higher target before a table ends the backward walk, a lower one
    // after it the forward walk.
    image.PutPointers(0x100, 2, {0xFFF, s[0], s[1], s[1], s[1] + 2, s[2], s[3], 0});
    image.PutPointers(0x200, 2, {0xFFF, s[0], s[0] + 2, s[2], 0});
    Load(image);
    PointerTable table = Record(0x106, 2, 1);
    Trelvane_AdjustPointerTable(1, &table);
    EXPECT_EQ(Fields(&table), (std::vector<int>{0, 0, 0, 2, 1, 6, 0, 0x102}));
    EXPECT_EQ(Trelvane_GetPointer(1, &table, 3), s[1] + 2);
    // With two strings per pointer a shared tail ends the table.
    table = Record(0x202, 2, 2);
    Trelvane_AdjustPointerTable(1, &table);
    EXPECT_EQ(table.count, 2);
}

TEST_F(PointerTableTest, SplitPointersJoinTheirBytes) {
    GameImage image(0x100);
    image.Put(0x10, {0x34, 0x35, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0x12, 0x13});
    image.Put(0x30, {0x01, 0x02});
    Load(image);
    PointerTable table{0x10, 0, 0x30, 0, 1, 0, -0x10000, 0};
    EXPECT_EQ(Trelvane_GetPointer(1, &table, 1), 0x35 - 0x10000);  // the bank needs a high table
    table.high = 0x20;
    EXPECT_EQ(Trelvane_GetPointer(1, &table, 1), 0x021335 - 0x10000);
}

TEST_F(PointerTableTest, RecordsThatDescribeNothingReadNothing) {
    // In an image of zeros every entry repeats the one before it.
    Load(GameImage(0x100, true));
    struct Case {
        PointerTable table;
        int count;
    } cases[] = {
        {Record(0x10, 0, 1), 256},  // size 0 reads as 1
        {Record(0x10, 2, 0), 128},  // frequency 0 reads as 1
        {Record(0x100, 2, 1), 0},   // first entry outside the image
        {Record(-4, 7, -3), 0},
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
