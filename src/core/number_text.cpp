#include "core/number_text.h"

#include <cstring>

#include "core/hex_digit.h"
#include "core/last_error.h"
#include "trelvane.h"

namespace {

// Accumulates the digits of [first, last) in radix; false for any other
// character, for no digit at all and for a value beyond 63 bits.
bool ReadDigits(const char* first, const char* last, int radix, int64_t& value) {
    if (first == last) return false;
    uint64_t total = 0;
    for (const char* c = first; c != last; ++c) {
        const int digit = radix == 16 ? HexDigitValue(*c) : (*c >= '0' && *c <= '9' ? *c - '0' : -1);
        if (digit < 0) return false;
        total = total * static_cast<uint64_t>(radix) + static_cast<uint64_t>(digit);
        if (total > static_cast<uint64_t>(INT64_MAX)) return false;
    }
    value = static_cast<int64_t>(total);
    return true;
}

bool ReadUnsigned(const char* text, int64_t& value) {
    const char* end = text + std::strlen(text);
    if (text[0] == '$') return ReadDigits(text + 1, end, 16, value);
    if (text[0] == '0' && (text[1] == 'x' || text[1] == 'X')) return ReadDigits(text + 2, end, 16, value);
    if (end != text && (end[-1] == 'h' || end[-1] == 'H')) return ReadDigits(text, end - 1, 16, value);
    return ReadDigits(text, end, 10, value);
}

}  // namespace

bool ReadNumberText(const char* text, int64_t& value) {
    if (!text) return false;
    const bool negative = text[0] == '-';
    if (!ReadUnsigned(negative ? text + 1 : text, value)) return false;
    if (negative) value = -value;
    return true;
}

extern "C" long Trelvane_ParseNumber(const char* text, long long* value) {
    int64_t number = 0;
    if (!text) return RefuseNullArgument("Trelvane_ParseNumber", "text");
    if (!ReadNumberText(text, number)) return SetError(TLERR_NUMBER_BAD, "", 0, 0, text);
    if (value) *value = number;
    return 1;
}
