#include <gtest/gtest.h>

#include "script/game_image.h"

namespace {

using Search = long (*)(const char*, long);

// Every match of a fresh search: a call with another buffer first, since a
// new pattern may reuse the storage of the last one.
std::vector<long> All(Search search, const std::vector<char>& pattern, long length = -1) {
    static const char other = 0;
    search(&other, 0);
    std::vector<long> found;
    long size = length < 0 ? static_cast<long>(pattern.size()) : length;
    for (long at = search(pattern.data(), size); at != 0; at = search(pattern.data(), size)) found.push_back(at);
    return found;
}

// 64 bytes of zeros but for plain, wide and relative layouts and the same two
// bytes at the first and the last offset.
class StringSearchTest : public GameTest {
protected:
    void SetUp() override {
        GameImage image(64, true);
        image.Put(0, {0x99, 0x98, 0x55, 0, 0x41, 0x00, 0x42, 0x7F, 0x41, 0xEE, 0x42, 0, 0x10, 0x11, 0x13, 0, 0x80, 0x81,
                      0x83, 0, 0x10, 0x11, 0x12, 0, 0xFF, 0x00, 0x01, 0, 0x41, 0x41, 0x41, 0x41});
        image.Put(62, {0x99, 0x98});
        Load(image);
    }
};

TEST_F(StringSearchTest, EveryMatchOfEachLayoutStaysInsideTheImageAndCursorsFollowTheBuffer) {
    const struct {
        Search search;
        std::vector<char> pattern;
        long length;
        std::vector<long> found;
    } cases[] = {
        {Trelvane_LocateWide, {0x41, 0x42}, -1, {4, 8}},
        {Trelvane_LocateRelative, {0x01, 0x02, 0x04}, -1, {12, 16}},
        {Trelvane_LocateRelative, {0x00, 0x01, 0x02}, -1, {20}},  // a fall of 255 is not a rise of 1
        {Trelvane_LocateRelative, {char(0xFF), 0x00}, -1, {24}},
        // Each of these would match at 62 if the image went on.
        {Trelvane_Locate, {char(0x99), char(0x98), 0}, -1, {}},
        {Trelvane_LocateWide, {char(0x99), 0}, -1, {}},
        {Trelvane_LocateRelative, {0x10, 0x0F, 0x0E}, -1, {}},
        // Patterns with nothing to compare match nowhere.
        {Trelvane_Locate, {0, 0}, 0, {}},
        {Trelvane_LocateWide, {0, 0}, 1, {}},
        {Trelvane_LocateRelative, {0, 0}, 1, {}},
    };
    for (const auto& c : cases) EXPECT_EQ(All(c.search, c.pattern, c.length), c.found) << c.pattern.size();
    EXPECT_EQ(Trelvane_Locate(nullptr, 2), 0);

    // Cursors follow the pattern buffer; another buffer starts again, each
    // search has its own cursor, and a match at offset 0 reads as the end.
    const char pattern[] = {0x41, 0x41}, copy[] = {0x41, 0x41}, ends[] = {char(0x99), char(0x98)};
    for (long expected : {28, 29, 30, 0, 0}) EXPECT_EQ(Trelvane_Locate(pattern, 2), expected);
    EXPECT_EQ(Trelvane_Locate(copy, 2), 28);
    EXPECT_EQ(Trelvane_LocateWide(copy, 2), 28);
    EXPECT_EQ(Trelvane_Locate(copy, 2), 29);
    EXPECT_EQ(Trelvane_Locate(ends, 2), 0);
    EXPECT_EQ(Trelvane_Locate(ends, 2), 62);
    Trelvane_FreeROM(-1);
    EXPECT_EQ(All(Trelvane_Locate, {0x41, 0x41}), std::vector<long>{});
}

}  // namespace
