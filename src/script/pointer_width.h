// The bits a pointer of a given size holds, shared by the engine and the
// front end's dump (which links only the library's exported interface, so
// this stays inline).
#pragma once

#include <cstdint>

// 0, 0xFF, 0xFFFF, 0xFFFFFF for sizes 0 to 3, and all 32 bits for 4 and above.
inline int64_t PointerWidthMask(int32_t size) {
    if (size <= 0) return 0;
    if (size >= 4) return 0xFFFFFFFF;
    return (int64_t{1} << (8 * size)) - 1;
}
