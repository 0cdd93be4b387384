// Little-endian numbers of 1 to 4 bytes in byte buffers (image pointers,
// bitmap headers).
#pragma once

#include <cstdint>

inline uint32_t ReadLittleEndian(const unsigned char* at, int size) {
    uint32_t value = 0;
    for (int i = size - 1; i >= 0; --i) value = value << 8 | at[i];
    return value;
}

inline void WriteLittleEndian(unsigned char* at, uint32_t value, int size) {
    for (int i = 0; i < size; ++i) at[i] = static_cast<unsigned char>(value >> (8 * i));
}
