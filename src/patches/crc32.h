// The CRC-32 that patch formats record (reflected polynomial 0xEDB88320,
// initial value and final XOR all ones), computed by zlib.
#pragma once

#include <cstddef>
#include <cstdint>

uint32_t Crc32(const unsigned char* bytes, size_t size);
