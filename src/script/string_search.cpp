#include "script/string_search.h"

#include <cstring>

#include "core/last_error.h"
#include "core/rom_slots.h"
#include "trelvane.h"

namespace {

// Each search remembers the pattern buffer of its previous call (by address)
// and where its next call goes on; another buffer starts it again at 0.
struct SearchCursor {
    const char* pattern = nullptr;
    int32_t next = 0;
};

SearchCursor plainCursor, wideCursor, relativeCursor;

using MatchFinder = int32_t (*)(const unsigned char* pattern, int32_t length, int32_t from);

// The iterator frame shared by the three searches (function names the one
// called). A match at offset 0 comes back as 0, which callers take for the
// end; the cursor still moves past it.
long NextMatch(const char* function, SearchCursor& cursor, const char* pattern, long length, MatchFinder find) {
    if (!pattern) return RefuseNullArgument(function, "pattern");
    if (pattern != cursor.pattern) {
        cursor.pattern = pattern;
        cursor.next = 0;
    }
    if (length <= 0 || length > INT32_MAX || cursor.next >= CurrentRom().size) return 0;
    int32_t found = find(reinterpret_cast<const unsigned char*>(pattern), static_cast<int32_t>(length), cursor.next);
    if (found < 0) {
        cursor.next = CurrentRom().size;
        return 0;
    }
    cursor.next = found + 1;
    return found;
}

}  // namespace

int32_t FindWideMatch(const unsigned char* pattern, int32_t length, int32_t from) {
    if (length < 2) return -1;
    const unsigned char* image = CurrentRom().data;
    int64_t last = int64_t{CurrentRom().size} - 2 * (int64_t{length} - 1);  // first start that does not fit
    for (int64_t p = from; p < last; ++p) {
        if (image[p] != pattern[0]) continue;
        int32_t i = 1;
        while (i < length && image[p + 2 * i] == pattern[i]) ++i;
        if (i == length) return static_cast<int32_t>(p);
    }
    return -1;
}

int32_t FindRelativeMatch(const unsigned char* pattern, int32_t length, int32_t from) {
    if (length < 2) return -1;
    const unsigned char* image = CurrentRom().data;
    int64_t last = int64_t{CurrentRom().size} - (length - 1);
    int rise = pattern[1] - pattern[0];
    for (int64_t p = from; p < last; ++p) {
        if (image[p + 1] - image[p] != rise) continue;
        int32_t i = 2;
        while (i < length && image[p + i] - image[p + i - 1] == pattern[i] - pattern[i - 1]) ++i;
        if (i == length) return static_cast<int32_t>(p);
    }
    return -1;
}

int32_t FindPlainMatch(const unsigned char* pattern, int32_t length, int32_t from) {
    if (length <= 0 || from < 0 || length > CurrentRom().size) return -1;
    const unsigned char* image = CurrentRom().data;
    const unsigned char* last = image + (CurrentRom().size - length);  // last start that fits
    for (const unsigned char* p = image + from; p <= last; ++p) {
        p = static_cast<const unsigned char*>(std::memchr(p, pattern[0], static_cast<size_t>(last - p) + 1));
        if (!p) return -1;
        if (std::memcmp(p + 1, pattern + 1, static_cast<size_t>(length) - 1) == 0)
            return static_cast<int32_t>(p - image);
    }
    return -1;
}

extern "C" {

long Trelvane_Locate(const char* pattern, long length) {
    return NextMatch("Trelvane_Locate", plainCursor, pattern, length, FindPlainMatch);
}

long Trelvane_LocateWide(const char* pattern, long length) {
    return NextMatch("Trelvane_LocateWide", wideCursor, pattern, length, FindWideMatch);
}

long Trelvane_LocateRelative(const char* pattern, long length) {
    return NextMatch("Trelvane_LocateRelative", relativeCursor, pattern, length, FindRelativeMatch);
}
}
