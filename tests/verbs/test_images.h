// Images with known cartridge headers, built byte by byte for the tests of
// the image inspection and of the verbs.
#pragma once

#include <algorithm>
#include <cstdint>
#include <string>

#include "support/test_support.h"

// A Super NES image of size bytes (filler bytes that vary) whose internal
// header, at the place of mapping ("lorom" 0x7FC0, "hirom" 0xFFC0, "exhirom"
// 0x40FFC0), holds title, map mode, a reset vector into ROM, and a checksum
// and complement that hold.
inline Bytes SnesImage(size_t size, const std::string& mapping, const std::string& title) {
    Bytes image(size);
    for (size_t i = 0; i < size; ++i) image[i] = static_cast<unsigned char>(i * 7 + (i >> 9));
    const size_t at = mapping == "lorom" ? 0x7FC0 : mapping == "hirom" ? 0xFFC0 : 0x40FFC0;
    const unsigned char mapMode = mapping == "lorom" ? 0x20 : mapping == "hirom" ? 0x21 : 0x25;
    for (size_t i = 0; i < 21; ++i) image[at + i] = i < title.size() ? static_cast<unsigned char>(title[i]) : ' ';
    image[at + 0x15] = mapMode;
    image[at + 0x17] = 0x0A;
    image[at + 0x3C] = 0x00;
    image[at + 0x3D] = 0x80;
    image[at + 0x1C] = 0xFF, image[at + 0x1D] = 0xFF, image[at + 0x1E] = 0x00, image[at + 0x1F] = 0x00;
    uint32_t sum = 0;
    for (unsigned char byte : image) sum += byte;
    const uint16_t checksum = static_cast<uint16_t>(sum);
    image[at + 0x1C] = static_cast<unsigned char>(~checksum), image[at + 0x1D] = static_cast<unsigned char>(~checksum >> 8);
    image[at + 0x1E] = static_cast<unsigned char>(checksum), image[at + 0x1F] = static_cast<unsigned char>(checksum >> 8);
    return image;
}

// bytes with a copier header of 512 bytes (of value 0x33) in front.
inline Bytes WithCopierHeader(const Bytes& image) {
    Bytes file(512 + image.size(), 0x33);
    std::copy(image.begin(), image.end(), file.begin() + 512);
    return file;
}

// An iNES file: the 16-byte header (flags 6 and 7 as given, NES 2.0 when
// flag 7 says so), a trainer of 512 bytes 0x77 when flag 6 asks for one,
// then prgUnits x 16 KiB and chrUnits x 8 KiB of varying bytes.
inline Bytes NesFile(unsigned char prgUnits, unsigned char chrUnits, unsigned char flags6, unsigned char flags7,
                     unsigned char byte8 = 0) {
    const size_t trainer = flags6 & 0x04 ? 512 : 0;
    const size_t body = prgUnits * 16384u + chrUnits * 8192u;
    Bytes file(16 + trainer + body, 0x77);
    const unsigned char header[16] = {'N', 'E', 'S', 0x1A, prgUnits, chrUnits, flags6, flags7, byte8};
    std::copy(header, header + 16, file.begin());
    for (size_t i = 0; i < body; ++i) file[16 + trainer + i] = static_cast<unsigned char>(i * 13 + 1);
    return file;
}

// A Game Boy image of size bytes with title, cartridge type, size code and
// both checksums right.
inline Bytes GameBoyImage(size_t size, const std::string& title, unsigned char type, unsigned char sizeCode) {
    Bytes image(size);
    for (size_t i = 0; i < size; ++i) image[i] = static_cast<unsigned char>(i * 3 + 5);
    for (size_t i = 0; i < 16; ++i) image[0x134 + i] = i < title.size() ? static_cast<unsigned char>(title[i]) : 0;
    image[0x147] = type;
    image[0x148] = sizeCode;
    unsigned char header = 0;
    for (size_t i = 0x134; i < 0x14D; ++i) header = static_cast<unsigned char>(header - image[i] - 1);
    image[0x14D] = header;
    uint32_t sum = 0;
    for (size_t i = 0; i < size; ++i)
        if (i != 0x14E && i != 0x14F) sum += image[i];
    image[0x14E] = static_cast<unsigned char>(sum >> 8);
    image[0x14F] = static_cast<unsigned char>(sum);
    return image;
}
