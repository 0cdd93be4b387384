#include <gtest/gtest.h>

#include "support/test_support.h"
#include "trelvane.h"

namespace {

class StringSearchTest : public ::testing::Test {
protected:
    void TearDown() override { Trelvane_FreeROM(-1); }

    // Loads an image of size bytes of 0x00 with data placed at offset at.
    void LoadImage(size_t size, size_t at, const Bytes& data) {
        Bytes image(size + 16, 0);
        std::copy(data.begin(), data.end(), image.begin() + 16 + at);
        WriteFile(dir / "game.nes", image);
        ASSERT_EQ(Trelvane_LoadROM((dir / "game.nes").c_str()), 1);
    }

    template <typename Search>
    std::vector<long> AllMatches(Search search, const char* pattern, long length) {
        std::vector<long> found;
        for (long at = search(pattern, length); at != 0; at = search(pattern, length)) found.push_back(at);
        return found;
    }

    TempDir dir;
};

TEST_F(StringSearchTest, PlainSearchFindsOverlappingMatchesThenStaysAtTheEnd) {
    LoadImage(32, 5, {0x41, 0x41, 0x41, 0x41});
    const char pattern[] = {0x41, 0x41};
    EXPECT_EQ(Trelvane_Locate(pattern, 2), 5);
    EXPECT_EQ(Trelvane_Locate(pattern, 2), 6);
    EXPECT_EQ(Trelvane_Locate(pattern, 2), 7);
    EXPECT_EQ(Trelvane_Locate(pattern, 2), 0);
    EXPECT_EQ(Trelvane_Locate(pattern, 2), 0);
    // Another buffer with the same bytes starts again from offset 0.
    const char copy[] = {0x41, 0x41};
    EXPECT_EQ(Trelvane_Locate(copy, 2), 5);
    // Each search keeps its own cursor: the wide search on the same buffer
    // starts afresh, and the plain one goes on where it was.
    EXPECT_EQ(AllMatches(Trelvane_LocateWide, copy, 2), (std::vector<long>{5, 6}));
    EXPECT_EQ(Trelvane_Locate(copy, 2), 6);
}

TEST_F(StringSearchTest, MatchAtOffsetZeroReadsAsTheEndButTheCursorMovesOn) {
    LoadImage(16, 0, {0x99, 0x98, 0, 0, 0, 0, 0, 0, 0, 0, 0x99, 0x98});
    const char pattern[] = {char(0x99), char(0x98)};
    EXPECT_EQ(Trelvane_Locate(pattern, 2), 0);
    EXPECT_EQ(Trelvane_Locate(pattern, 2), 10);
}

TEST_F(StringSearchTest, MatchesMustLieWhollyInsideTheImage) {
    LoadImage(16, 14, {0xC1, 0xC2});
    const char plain[] = {char(0xC1), char(0xC2), 0};
    EXPECT_EQ(AllMatches(Trelvane_Locate, plain, 3), std::vector<long>{});
    const char shorter[] = {char(0xC1), char(0xC2)};
    EXPECT_EQ(AllMatches(Trelvane_Locate, shorter, 2), std::vector<long>{14});
    const char wide[] = {char(0xC1), 0};
    EXPECT_EQ(AllMatches(Trelvane_LocateWide, wide, 2), std::vector<long>{});
    const char rising[] = {1, 2, 3};
    EXPECT_EQ(AllMatches(Trelvane_LocateRelative, rising, 3), std::vector<long>{});
    const char rise[] = {1, 2};
    EXPECT_EQ(AllMatches(Trelvane_LocateRelative, rise, 2), std::vector<long>{14});
}

TEST_F(StringSearchTest, WideSearchSkipsTheSecondByteOfEachUnit) {
    LoadImage(32, 4, {0x41, 0x00, 0x42, 0x7F, 0x41, 0xEE, 0x42});
    const char pattern[] = {0x41, 0x42};
    EXPECT_EQ(AllMatches(Trelvane_LocateWide, pattern, 2), (std::vector<long>{4, 8}));
    const char single[] = {0x41};
    EXPECT_EQ(AllMatches(Trelvane_LocateWide, single, 1), std::vector<long>{});
}

TEST_F(StringSearchTest, RelativeSearchComparesRisesAndFalls) {
    LoadImage(64, 4, {0x10, 0x11, 0x13, 0, 0x80, 0x81, 0x83, 0, 0x10, 0x11, 0x12, 0, 0xFF, 0x00, 0x01});
    const char pattern[] = {0x01, 0x02, 0x04};
    EXPECT_EQ(AllMatches(Trelvane_LocateRelative, pattern, 3), (std::vector<long>{4, 8}));
    // A fall of 255 is not a rise of 1.
    const char wrapping[] = {0x00, 0x01, 0x02};
    EXPECT_EQ(AllMatches(Trelvane_LocateRelative, wrapping, 3), (std::vector<long>{12}));
    const char falling[] = {char(0xFF), 0x00};
    EXPECT_EQ(AllMatches(Trelvane_LocateRelative, falling, 2), (std::vector<long>{16}));
}

TEST_F(StringSearchTest, PatternsWithoutAnythingToCompareMatchNowhere) {
    LoadImage(16, 0, {});
    const char zero[] = {0, 0};
    EXPECT_EQ(Trelvane_Locate(zero, 0), 0);
    EXPECT_EQ(Trelvane_LocateRelative(zero, 1), 0);
    EXPECT_EQ(Trelvane_LocateRelative(zero, 0), 0);
    EXPECT_EQ(Trelvane_LocateWide(zero, 1), 0);
    EXPECT_EQ(Trelvane_Locate(nullptr, 2), 0);
    Trelvane_FreeROM(-1);
    const char other[] = {0, 0};
    EXPECT_EQ(Trelvane_Locate(other, 2), 0);
}

}  // namespace
