#include "core/hex_digit.h"

#include <gtest/gtest.h>

namespace {

TEST(HexDigitTest, DigitsOfBothCasesHaveTheirValueAndTheirNeighboursNone) {
    const struct {
        int c, value;
    } cases[] = {
        {'0', 0},   {'9', 9},   {'a', 10},  {'f', 15}, {'A', 10}, {'F', 15}, {'c', 12}, {'C', 12},
        {'/', -1},  {':', -1},  {'@', -1},  {'G', -1}, {'`', -1}, {'g', -1}, {'h', -1}, {'H', -1},
        {'\0', -1}, {' ', -1},  {-48, -1},  {0xC1, -1},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.c);
        EXPECT_EQ(HexDigitValue(c.c), c.value);
        EXPECT_EQ(IsHexDigit(c.c), c.value >= 0);
    }
}

}  // namespace
