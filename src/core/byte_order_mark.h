// The UTF-8 byte-order mark some editors put in front of a text file: the
// readers of tables, scripts and patch scripts step over it.
#pragma once

#include <cstddef>

// 3 when bytes start with the mark EF BB BF, else 0.
inline size_t ByteOrderMarkLength(const unsigned char* bytes, size_t size) {
    return size >= 3 && bytes[0] == 0xEF && bytes[1] == 0xBB && bytes[2] == 0xBF ? 3 : 0;
}
