// The finder on generated images: tables of 8 to 16 pointers at the bases of
// the NES, the Game Boy and the Super NES, in any order, with null, repeated
// and shared-tail entries; NES split tables; and no report for a table that
// misses the string.
#include <gtest/gtest.h>

#include <random>

#include "core/rom_slots.h"
#include "script/game_image.h"
#include "script/pointer_candidates.h"
#include "script/pointer_form.h"
#include "script/table_finder.h"
#include "table/font_set.h"

namespace {

class TableFinderTest : public GameTest {
protected:
    void SetUp() override {
        GameTest::SetUp();
        ResetFontSet();
        ASSERT_EQ(Trelvane_LoadFont((dir / "game.tbl").c_str()), 1);
    }

    std::vector<PointerForm> Tables(int64_t target, int romType) {
        const std::vector<PointerCandidate> candidates = PointerCandidates(target, romType, 0, false, 0, 0);
        std::vector<PointerForm> tables = FindTables(1, FindPointersTo(candidates), target);
        AddSplitTables(1, candidates, target, tables);
        return tables;
    }

    // count strings at `at`, their pointers in `form` at `table`, in an order
    // shuffled by seed; the string the finder is asked for is at `at`.
    void PutTable(GameImage& image, PointerForm form, int count, unsigned seed) {
        std::vector<int64_t> strings = image.PutStrings(0x8400, NumberedTexts(count));
        std::shuffle(strings.begin(), strings.end(), std::mt19937(seed));
        for (size_t i = 0; i < strings.size(); ++i) {
            const PointerPlace place = PlaceOfEntry(form, static_cast<int64_t>(i));
            const uint32_t value = *ValueForTarget(form, strings[i], 0);
            for (int b = 0; b < place.size; ++b) image.bytes.at(place.byteAt[b]) = static_cast<unsigned char>(value >> 8 * b);
        }
    }
};

PointerForm Table(int size, int64_t at, int64_t base, int map = POINTER_MAP_NONE, int stride = 0, bool big = false) {
    PointerForm form = PlainPointerForm(size, at);
    form.base = static_cast<int>(base);
    form.map = map;
    form.stride = stride;
    form.bigEndian = big;
    return form;
}

TEST_F(TableFinderTest, FindsTablesOfEightToSixteenPointersAtEachSystemsBases) {
    struct Case {
        int romType;
        PointerForm form;
    };
    // The strings lie at 8400h: in the NES bank 8000h-BFFFh seen at $8000
    // or $C000, in the Game Boy's bank 2 seen at $4000, in LoROM bank $81.
    const Case cases[] = {{ROM_NES, Table(2, 0x200, 0x8000 - 0x8000)},
                          {ROM_NES, Table(2, 0x200, 0x8000 - 0xC000)},
                          {ROM_NES, Table(2, 0x200, 0x8000 - 0x8000, POINTER_MAP_NONE, 4)},
                          {ROM_GB, Table(2, 0x200, 0x8000 - 0x4000)},
                          {ROM_GB, Table(2, 0x200, 0x8000 - 0x4000, POINTER_MAP_NONE, 0, true)},
                          {ROM_SNES, Table(3, 0x200, 0, POINTER_MAP_LOROM)},
                          {ROM_SNES, Table(3, 0x200, 0, POINTER_MAP_HIROM)},
                          {ROM_SNES, Table(2, 0x200, 0x8000 - 0x8000)}};
    for (const Case& c : cases) {
        for (int count = 8; count <= 16; count += 4) {
            SCOPED_TRACE(std::to_string(c.romType) + " size " + std::to_string(c.form.size) + " base " +
                         std::to_string(c.form.base) + " count " + std::to_string(count));
            GameImage image(0x20000);
            PutTable(image, c.form, count, static_cast<unsigned>(count));
            Load(image);
            std::vector<PointerForm> tables = Tables(0x8400, c.romType);
            ASSERT_FALSE(tables.empty());
            EXPECT_EQ(tables[0].table, 0x200);
            EXPECT_EQ(tables[0].count, count);
            EXPECT_EQ(tables[0].stride, c.form.stride);
            EXPECT_EQ(tables[0].bigEndian, c.form.bigEndian);
            for (int i = 0; i < count; ++i)
                EXPECT_EQ(EntryTarget(tables[0], i), EntryTarget(c.form, i)) << i;
        }
    }
}

TEST_F(TableFinderTest, TakesNullRepeatedAndSharedTailEntriesAndNeverATableMissingTheString) {
    // A table of 15 tips: out of order, one null, one repeat, one entry at
    // the shared tail of another string.
    GameImage image(0x20000);
    std::vector<int64_t> strings = image.PutStrings(0x8400, NumberedTexts(12));
    std::vector<int64_t> entries = {strings[3], strings[0], strings[7], strings[1], 0,          strings[2],
                                    strings[0], strings[4], strings[5] + 4,     strings[6], strings[5],
                                    strings[8], strings[9], strings[10], strings[11]};
    for (size_t i = 0; i < entries.size(); ++i) {
        const uint32_t value = entries[i] ? static_cast<uint32_t>(entries[i] - 0x8000 + 0x8000) : 0;
        image.Put(0x200 + 2 * i, {static_cast<unsigned char>(value), static_cast<unsigned char>(value >> 8)});
    }
    Load(image);
    std::vector<PointerForm> tables = Tables(strings[0], ROM_NES);
    ASSERT_FALSE(tables.empty());
    EXPECT_EQ(tables[0].table, 0x200);
    EXPECT_EQ(tables[0].count, 15);

    // The same table asked for a string it does not address: nothing.
    const int64_t elsewhere = image.PutStrings(0x9000, {"Nobody points here"})[0];
    Load(image);
    const std::vector<PointerForm> none = Tables(elsewhere, ROM_NES);
    EXPECT_TRUE(none.empty()) << none[0].table << " " << none[0].count << " " << none[0].size << " " << none[0].stride;
}

// Low bytes, then high bytes as many bytes further as there are entries.
PointerForm Split(int64_t low, int count, int64_t base) {
    PointerForm form = PlainPointerForm(0, -1);
    form.low = static_cast<int>(low);
    form.high = static_cast<int>(low + count);
    form.base = static_cast<int>(base);
    return form;
}

TEST_F(TableFinderTest, FindsNesSplitTablesThatHoldAPointerToTheString) {
    for (int64_t window : {0x8000, 0xC000}) {
        for (int count = 8; count <= 16; count += 4) {
            SCOPED_TRACE("window " + std::to_string(window) + " count " + std::to_string(count));
            const PointerForm form = Split(0x300, count, 0x8000 - window);
            GameImage image(0x20000);
            PutTable(image, form, count, static_cast<unsigned>(count));
            Load(image);
            std::vector<PointerForm> tables = Tables(0x8400, ROM_NES);
            ASSERT_EQ(tables.size(), 1u);
            EXPECT_EQ(tables[0].table, -1);
            EXPECT_EQ(tables[0].low, 0x300);
            EXPECT_EQ(tables[0].high, 0x300 + count);
            EXPECT_EQ(tables[0].bank, -1);
            EXPECT_EQ(tables[0].base, form.base);
            EXPECT_EQ(tables[0].count, count);
            for (int i = 0; i < count; ++i) EXPECT_EQ(EntryTarget(tables[0], i), EntryTarget(form, i)) << i;

            const int64_t elsewhere = image.PutStrings(0x9000, {"Nobody points here"})[0];
            Load(image);
            EXPECT_TRUE(Tables(elsewhere, ROM_NES).empty());
        }
    }
}

// Seven entries are no table, and low bytes running into the high bytes are none either.
TEST_F(TableFinderTest, SplitTablesHaveEightEntriesAndDoNotOverlap) {
    GameImage image(0x20000);
    PutTable(image, Split(0x300, 7, 0), 7, 7);
    Load(image);
    EXPECT_TRUE(Tables(0x8400, ROM_NES).empty());
}

}  // namespace
