// A small Super NES game for the patch-script step of the sample run. Patch
// scripts reach an image byte through the low 22 bits of a processor address,
// so here processor address 80xxxxh is image offset xxxxh and 81xxxxh is
// 1xxxxh. Image layout (the file without its 512-byte copier header):
//   08000h  start-up: interrupts off, native mode, 16-bit registers, lives
//           (7E0010h) and coins (7E0012h) cleared
//   08010h  the main loop: counts frames at 7E0014h and jumps back
//   08100h  the game's pointer to its bonus message (3 bytes, 808200h)
//   08200h  the bonus message, "OK" and a zero
//   09000h  the sound routine, an rtl for now
//   0FFC0h  the cartridge title; 0FFFCh the reset vector (8000h)
//   18000h  free space (zeros) up to the end at 20000h
#include "snes_sample.h"

#include <algorithm>
#include <fstream>

namespace {

constexpr size_t kImageSize = 0x20000;
constexpr size_t kCopierHeader = 512;

void Put(std::vector<unsigned char>& image, size_t at, std::initializer_list<unsigned char> bytes) {
    std::copy(bytes.begin(), bytes.end(), image.begin() + static_cast<std::ptrdiff_t>(at));
}

}  // namespace

std::vector<unsigned char> MakeSnesImage() {
    std::vector<unsigned char> image(kImageSize, 0);
    Put(image, 0x8000, {0x78, 0x18, 0xFB, 0xC2, 0x30,  // sei; clc; xce; rep #$30
                        0xA9, 0x00, 0x00,              // lda #0
                        0x8D, 0x10, 0x00,              // sta $0010 (lives)
                        0x8D, 0x12, 0x00,              // sta $0012 (coins)
                        0xEA, 0xEA});                  // nop; nop
    Put(image, 0x8010, {0xEE, 0x14, 0x00, 0xEA,        // inc $0014 (frames); nop
                        0x4C, 0x10, 0x80});            // jmp $8010
    Put(image, 0x8100, {0x00, 0x82, 0x80});            // the message at 808200h
    Put(image, 0x8200, {'O', 'K', 0});
    Put(image, 0x9000, {0x6B});                        // rtl
    const std::string title = "TRELVANE SAMPLE      ";
    std::copy(title.begin(), title.end(), image.begin() + 0xFFC0);
    Put(image, 0xFFFC, {0x00, 0x80});
    return image;
}

bool WriteSmc(const std::string& path, const std::vector<unsigned char>& image) {
    std::ofstream out(path, std::ios::binary);
    const std::vector<char> header(kCopierHeader, 0);
    out.write(header.data(), static_cast<std::streamsize>(header.size()));
    out.write(reinterpret_cast<const char*>(image.data()), static_cast<std::streamsize>(image.size()));
    return static_cast<bool>(out);
}
