#include "core/number_text.h"

#include <gtest/gtest.h>

#include "core/last_error.h"
#include "trelvane.h"

namespace {

TEST(NumberText, EveryFormInEitherCase) {
    const struct {
        const char* text;
        int64_t value;
    } cases[] = {
        {"10976", 10976}, {"0", 0},           {"007", 7},         {"0x2AE0", 0x2AE0}, {"0X2ae0", 0x2AE0},
        {"$2AE0", 0x2AE0}, {"$2ae0", 0x2AE0}, {"2AE0h", 0x2AE0},  {"2ae0H", 0x2AE0},  {"C000h", 0xC000},
        {"-12", -12},     {"-$10", -16},      {"-10h", -16},      {"0h", 0},
        {"9223372036854775807", INT64_MAX},   {"$7FFFFFFFFFFFFFFF", INT64_MAX},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        int64_t value = -1;
        EXPECT_TRUE(ReadNumberText(c.text, value));
        EXPECT_EQ(value, c.value);
    }
}

TEST(NumberText, RefusesAnythingElseAndLeavesTheValue) {
    const char* refused[] = {"2AE0", "12AB", "12q",  "",    "-",   "0x",    "$",  "h",   "x10", "1 0", " 10",
                             "10 ",  "0x2AE0h", "$-1", "--1", "1.5", "+1", "9223372036854775808", "$8000000000000000",
                             "0x1G", "2AE0hh"};
    for (const char* text : refused) {
        SCOPED_TRACE(text);
        int64_t value = 42;
        EXPECT_FALSE(ReadNumberText(text, value));
        EXPECT_EQ(value, 42);
    }
    int64_t value = 42;
    EXPECT_FALSE(ReadNumberText(nullptr, value));
}

TEST(NumberText, CInterfaceReportsTheTextItRefuses) {
    long long value = 0;
    EXPECT_EQ(Trelvane_ParseNumber("0x10", &value), 1);
    EXPECT_EQ(value, 16);
    EXPECT_EQ(Trelvane_ParseNumber("10", nullptr), 1);
    EXPECT_EQ(Trelvane_ParseNumber("2AE0", &value), 0);
    EXPECT_EQ(value, 16);
    EXPECT_STREQ(Trelvane_GetLastError(), "'2AE0' is not a number: write 10976, 0x2AE0, $2AE0 or 2AE0h.");
    EXPECT_EQ(Trelvane_ParseNumber(nullptr, &value), 0);
    EXPECT_EQ(LastError().code, TLERR_NULL_ARGUMENT);
}

}  // namespace
