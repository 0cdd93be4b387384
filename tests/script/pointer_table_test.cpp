#include <gtest/gtest.h>

#include <cstdlib>

#include "script/game_image.h"
#include "table/font_set.h"
#include "trelvane.h"

namespace {

// low, high, bank, size, frequency, count, base, table.
std::vector<int> Fields(const PointerTable& t) {
    return {t.low, t.high, t.bank, t.size, t.frequency, t.count, t.base, t.table};
}

class PointerTableTest : public GameTest {
protected:
    void SetUp() override {
        GameTest::SetUp();
        ResetFontSet();
        ASSERT_EQ(Trelvane_LoadFont((dir / "game.tbl").c_str()), 1);
    }

    // The table found for the string at address; all zeros without one.
    static PointerTable Find(long address) {
        PointerTable* found = Trelvane_FindPointerTable(1, address);
        PointerTable table = found ? *found : PointerTable{};
        std::free(found);
        return table;
    }
};

TEST_F(PointerTableTest, FinderMatchesFromTheSecondStringAndStepsBack) {
    GameImage image(0x20000);
    std::vector<int64_t> strings = image.PutStrings(0x10010, NumberedTexts(20));
    image.PutPointers(0x4000, 2, strings, 0x8010);
    Load(image);
    PointerTable found = Find(0x10010);
    EXPECT_EQ(Fields(found), (std::vector<int>{0, 0, 0, 2, 1, 20, 0x8010, 0x4000}));
    for (long i = 0; i < 20; ++i) EXPECT_EQ(Trelvane_GetPointer(1, &found, i), strings[i]);
    EXPECT_EQ(Fields(Find(0x8000)), Fields(PointerTable{}));
    EXPECT_EQ(Fields(Find(0x20000)), Fields(PointerTable{}));

    // Strings of one length repeat their differences: the table is taken one
    // entry early, each entry addressing the string after its own.
    image.PutPointers(0x4000, 2, image.PutStrings(0x10010, std::vector<std::string>(20, "Same")), 0x8010);
    Load(image);
    EXPECT_EQ(Fields(Find(0x10010)), (std::vector<int>{0, 0, 0, 2, 1, 20, 0x8010 + 5, 0x4000}));

    // Two strings per pointer.
    image = GameImage(0x20000);
    strings = image.PutStrings(0x10010, NumberedTexts(40));
    std::vector<int64_t> firsts;
    for (size_t i = 0; i < strings.size(); i += 2) firsts.push_back(strings[i]);
    image.PutPointers(0x6000, 2, firsts, 0x8010);
    Load(image);
    found = Find(0x10010);
    EXPECT_EQ(Fields(found), (std::vector<int>{0, 0, 0, 2, 2, 40, 0x8010, 0x6000}));
    EXPECT_EQ(Trelvane_GetPointer(1, &found, 5), strings[5]);  // pointer 2, one string on
}

TEST_F(PointerTableTest, NothingOutsideTheImageIsReadAtEitherEnd) {
    std::vector<std::string> texts = NumberedTexts(20);
    GameImage image(0x1000 + 247);  // the strings run up to the last byte
    image.PutPointers(0, 2, image.PutStrings(0x1000, texts));
    Load(image);
    EXPECT_EQ(Fields(Find(0x1000)), (std::vector<int>{0, 0, 0, 2, 1, 20, 0, 0}));

    GameImage tail(0x2000);
    tail.PutPointers(0x2000 - 40, 2, tail.PutStrings(0x100, texts));
    Load(tail);
    PointerTable atEnd = Find(0x100);
    EXPECT_EQ(Fields(atEnd), (std::vector<int>{0, 0, 0, 2, 1, 20, 0, 0x2000 - 40}));
    EXPECT_EQ(Trelvane_GetPointer(1, &atEnd, 20), -1);
}

TEST_F(PointerTableTest, AdjustKeepsDuplicatesAndSharedTails) {
    GameImage image(0x1000);
    std::vector<int64_t> s = image.PutStrings(0x800, {"Hello", "World", "Again", "Last"});
    // A higher target before a table ends the backward walk, a lower one
    // after it the forward walk.
    image.PutPointers(0x100, 2, {0xFFF, s[0], s[1], s[1], s[1] + 2, s[2], s[3], 0});
    image.PutPointers(0x200, 2, {0xFFF, s[0], s[0] + 2, s[2], 0});
    Load(image);
    PointerTable table{0, 0, 0, 2, 1, 0, 0, 0x106};
    Trelvane_AdjustPointerTable(1, &table);
    EXPECT_EQ(Fields(table), (std::vector<int>{0, 0, 0, 2, 1, 6, 0, 0x102}));
    EXPECT_EQ(Trelvane_GetPointer(1, &table, 3), s[1] + 2);
    // With two strings per pointer a shared tail ends the table.
    table = PointerTable{0, 0, 0, 2, 2, 0, 0, 0x202};
    Trelvane_AdjustPointerTable(1, &table);
    EXPECT_EQ(table.count, 2);
}

TEST_F(PointerTableTest, RecordsThatDescribeNothingReadNothingAndSplitPointersJoin) {
    // In an image of zeros every entry repeats the one before it.
    Load(GameImage(0x100, true));
    struct Case {
        PointerTable table;
        int count;
    } cases[] = {
        {{0, 0, 0, 0, 1, 0, 0, 0x10}, 256},  // size 0 reads as 1
        {{0, 0, 0, 2, 0, 0, 0, 0x10}, 128},  // frequency 0 reads as 1
        {{0, 0, 0, 2, 1, 0, 0, 0x100}, 0},   // first entry outside the image
        {{0, 0, 0, 7, -3, 0, 0, -4}, 0},
    };
    for (Case& c : cases) {
        Trelvane_AdjustPointerTable(1, &c.table);
        EXPECT_EQ(c.table.count, c.count);
        EXPECT_EQ(Trelvane_GetPointer(1, &c.table, -1), -1);
    }
    EXPECT_EQ(Trelvane_GetPointer(1, &cases[2].table, 0), -1);
    EXPECT_EQ(Trelvane_GetPointer(1, nullptr, 0), -1);

    // Split pointers join their bytes.
    GameImage image(0x100, true);
    image.Put(0x10, {0x34, 0x35});
    image.Put(0x20, {0x12, 0x13});
    image.Put(0x30, {0x01, 0x02});
    Load(image);
    PointerTable table{0x10, 0, 0x30, 0, 1, 0, -0x10000, 0};
    EXPECT_EQ(Trelvane_GetPointer(1, &table, 1), 0x35 - 0x10000);  // the bank needs a high table
    table.high = 0x20;
    EXPECT_EQ(Trelvane_GetPointer(1, &table, 1), 0x021335 - 0x10000);
}

}  // namespace
