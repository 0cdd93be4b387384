#include <gtest/gtest.h>

#include "support/test_support.h"
#include "trelvane.h"

namespace {

class StringSearchTest : public ::testing::Test {
protected:
    void TearDown() override { Trelvane_FreeROM(-1); }

    // An image of size zero bytes with data at offset at.
    void Load(size_t size, size_t at, const Bytes& data) {
        Bytes file(size + 16, 0);
        std::copy(data.begin(), data.end(), file.begin() + 16 + at);
        WriteFile(dir / "game.nes", file);
        ASSERT_EQ(Trelvane_LoadROM((dir / "game.nes").c_str()), 1);
    }

    using Search = long (*)(const char*, long);
    // Every match of a fresh search: a call with another buffer first, since
    // a new pattern may reuse the storage of the last one.
    static std::vector<long> All(Search search, const std::vector<char>& pattern, long length = -1) {
        static const char other = 0;
        search(&other, 0);
        std::vector<long> found;
        long size = length < 0 ? static_cast<long>(pattern.size()) : length;
        for (long at = search(pattern.data(), size); at != 0; at = search(pattern.data(), size)) found.push_back(at);
        return found;
    }

    TempDir dir;
};

TEST_F(StringSearchTest, CursorsFollowThePatternBuffer) {
    Load(32, 5, {0x41, 0x41, 0x41, 0x41});
    const char pattern[] = {0x41, 0x41};
    EXPECT_EQ(Trelvane_Locate(pattern, 2), 5);
    EXPECT_EQ(Trelvane_Locate(pattern, 2), 6);  // overlapping matches
    EXPECT_EQ(Trelvane_Locate(pattern, 2), 7);
    EXPECT_EQ(Trelvane_Locate(pattern, 2), 0);
    EXPECT_EQ(Trelvane_Locate(pattern, 2), 0);
    // Another buffer starts again at 0; each search has its own cursor.
    const char copy[] = {0x41, 0x41};
    EXPECT_EQ(Trelvane_Locate(copy, 2), 5);
    EXPECT_EQ(Trelvane_LocateWide(copy, 2), 5);
    EXPECT_EQ(Trelvane_Locate(copy, 2), 6);
}

TEST_F(StringSearchTest, MatchAtOffsetZeroReadsAsTheEndAndMatchesStayInside) {
    Load(16, 0, {0x99, 0x98, 0x55, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0x99, 0x98});
    const char pattern[] = {char(0x99), char(0x98)};
    EXPECT_EQ(Trelvane_Locate(pattern, 2), 0);
    EXPECT_EQ(Trelvane_Locate(pattern, 2), 14);
    // Each of these would match at 14 if the image went on.
    EXPECT_EQ(All(Trelvane_Locate, {char(0x99), char(0x98), 0}), std::vector<long>{});
    EXPECT_EQ(All(Trelvane_LocateWide, {char(0x99), 0}), std::vector<long>{});
    EXPECT_EQ(All(Trelvane_LocateRelative, {0x10, 0x0F, 0x0E}), std::vector<long>{});
}

TEST_F(StringSearchTest, WideAndRelativeLayouts) {
    Load(64, 4, {0x41, 0x00, 0x42, 0x7F, 0x41, 0xEE, 0x42, 0, 0x10, 0x11, 0x13, 0, 0x80, 0x81, 0x83, 0,
                 0x10, 0x11, 0x12, 0, 0xFF, 0x00, 0x01});
    EXPECT_EQ(All(Trelvane_LocateWide, {0x41, 0x42}), (std::vector<long>{4, 8}));
    EXPECT_EQ(All(Trelvane_LocateRelative, {0x01, 0x02, 0x04}), (std::vector<long>{12, 16}));
    // A fall of 255 is not a rise of 1.
    EXPECT_EQ(All(Trelvane_LocateRelative, {0x00, 0x01, 0x02}), (std::vector<long>{20}));
    EXPECT_EQ(All(Trelvane_LocateRelative, {char(0xFF), 0x00}), (std::vector<long>{24}));
}

TEST_F(StringSearchTest, PatternsWithNothingToCompareMatchNowhere) {
    Load(16, 0, {});
    EXPECT_EQ(All(Trelvane_Locate, {0, 0}, 0), std::vector<long>{});
    EXPECT_EQ(All(Trelvane_LocateWide, {0, 0}, 1), std::vector<long>{});
    EXPECT_EQ(All(Trelvane_LocateRelative, {0, 0}, 1), std::vector<long>{});
    EXPECT_EQ(Trelvane_Locate(nullptr, 2), 0);
    Trelvane_FreeROM(-1);
    EXPECT_EQ(All(Trelvane_Locate, {0, 0}), std::vector<long>{});
}

}  // namespace
