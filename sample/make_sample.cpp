// Makes the sample game the demonstration run works on: a small NES image
// with an English script, its pointer table and a font, a copy of the image
// whose menus are translated into French, and the game's character table as
// a thingy file; and a small Super NES image for the patch-script step
// (snes_sample.cpp).
//
// The program is eight banks of 16 KiB. The game switches one of banks 0-6 in
// at processor address 8000h and keeps bank 7 (image offset 1C000h) at C000h,
// so there an image offset is the processor address plus 10000h. Image
// layout (image offsets, the file without its 16-byte header):
//   02000h  the font, 2bpp NES tiles, tile n = code n (copied to character RAM)
//   1C000h  a start-up loop
//   1D000h  20 two-byte little-endian pointers, one per string, holding
//           processor addresses (pointer + 10000h = image offset)
//   1D040h  the strings, one after the other
//   1FFFAh  the processor vectors
#include <algorithm>
#include <array>
#include <cstdio>
#include <fstream>
#include <string>
#include <vector>

#include "snes_sample.h"

namespace {

constexpr size_t kHeaderSize = 16;
constexpr size_t kBankSize = 0x4000;
constexpr size_t kBankCount = 8;
constexpr size_t kImageSize = kBankSize * kBankCount;
constexpr size_t kFont = 0x2000;
constexpr size_t kFixedBank = kImageSize - kBankSize;
constexpr size_t kPointerTable = 0x1D000;
constexpr size_t kStrings = 0x1D040;
constexpr size_t kVectors = kImageSize - 6;
constexpr unsigned kFixedBankAddress = 0xC000;
constexpr unsigned char kLineBreak = 0xFE;
constexpr unsigned char kEnd = 0xFF;

constexpr size_t kStringCount = 20;
using Script = std::array<const char*, kStringCount>;

const Script kEnglish = {
    "Welcome to Trelvane Island!",
    "The old lighthouse keeper\nwaits by the shore.",
    "Take this lamp. It will\nguide you home.",
    "The bridge is out.\nTry the cave to the north.",
    "You found 3 silver keys!",
    "The door is locked.",
    "A cold wind blows\nfrom the sea.",
    "Your wounds are healed.",
    "The boat leaves at dawn.",
    "Nothing here.",
    "The keeper smiles.\nYou made it home!",
    "Thank you for playing.",
    "New game",
    "Continue",
    "Buy",
    "Sell",
    "Not enough gold.",
    "Save the game?",
    "Yes",
    "No",
};

// The French translation is under way and has done the menus, the last
// strings of the script, so the strings before them stay where they are.
constexpr size_t kFirstMenu = 12;
const char* const kFrenchMenus[] = {
    "Nouvelle partie", "Continuer", "Acheter", "Vendre", "Pas assez d'or.", "Sauvegarder?", "Oui", "Non",
};
static_assert(kFirstMenu + std::size(kFrenchMenus) == kStringCount);

Script FrenchScript() {
    Script script = kEnglish;
    std::copy(std::begin(kFrenchMenus), std::end(kFrenchMenus), script.begin() + kFirstMenu);
    return script;
}

// The game's encoding: digits from 00h, capitals from 0Ah, small letters
// from 24h, then space and punctuation.
const std::string kPunctuation = " .,!?'";

int CodeOf(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'A' && c <= 'Z') return 0x0A + (c - 'A');
    if (c >= 'a' && c <= 'z') return 0x24 + (c - 'a');
    size_t mark = kPunctuation.find(c);
    return mark == std::string::npos ? -1 : 0x3E + static_cast<int>(mark);
}

char CharacterOf(int code) {
    if (code < 0x0A) return static_cast<char>('0' + code);
    if (code < 0x24) return static_cast<char>('A' + code - 0x0A);
    if (code < 0x3E) return static_cast<char>('a' + code - 0x24);
    return kPunctuation[static_cast<size_t>(code - 0x3E)];
}

constexpr int kCodeCount = 0x3E + 6;

// 3x5 glyphs, rows top to bottom, for digits, capitals and punctuation.
const char* const kDigitGlyphs[] = {
    "111101101101111", "010110010010111", "111001111100111", "111001111001111", "101101111001001",
    "111100111001111", "111100111101111", "111001001010010", "111101111101111", "111101111001111",
};
const char* const kLetterGlyphs[] = {
    "010101111101101", "110101110101110", "011100100100011", "110101101101110", "111100110100111",
    "111100110100100", "011100101101011", "101101111101101", "111010010010111", "001001001101010",
    "101101110101101", "100100100100111", "101111111101101", "110101101101101", "010101101101010",
    "110101110100100", "010101101110011", "110101110101101", "011100010001110", "111010010010010",
    "101101101101111", "101101101101010", "101101111111101", "101101010101101", "101101010010010",
    "111001010100111",
};
const char* const kPunctuationGlyphs[] = {
    "000000000000000", "000000000000010", "000000000010100", "010010010000010", "110001010000010", "010010000000000",
};

const char* GlyphOf(int code) {
    char c = CharacterOf(code);
    if (c >= '0' && c <= '9') return kDigitGlyphs[c - '0'];
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
    if (c >= 'A' && c <= 'Z') return kLetterGlyphs[c - 'A'];
    return kPunctuationGlyphs[kPunctuation.find(c)];
}

// One 8x8 tile: plane 0 then plane 1, both set, so glyphs use colour 3.
void PutTile(std::vector<unsigned char>& image, size_t at, const char* glyph) {
    for (int row = 0; row < 5; ++row) {
        unsigned char bits = 0;
        for (int column = 0; column < 3; ++column)
            if (glyph[row * 3 + column] == '1') bits |= static_cast<unsigned char>(0x20 >> column);
        image[at + 1 + row] = bits;
        image[at + 8 + 1 + row] = bits;
    }
}

void PutWord(std::vector<unsigned char>& image, size_t at, unsigned value) {
    image[at] = static_cast<unsigned char>(value);
    image[at + 1] = static_cast<unsigned char>(value >> 8);
}

// A processor address in the fixed bank for an image offset inside it.
unsigned AddressOf(size_t offset) {
    return static_cast<unsigned>(offset - kFixedBank) + kFixedBankAddress;
}

bool PutScript(std::vector<unsigned char>& image, const Script& script) {
    size_t at = kStrings;
    for (size_t i = 0; i < kStringCount; ++i) {
        PutWord(image, kPointerTable + 2 * i, AddressOf(at));
        for (const char* c = script[i]; *c; ++c) {
            int code = *c == '\n' ? kLineBreak : CodeOf(*c);
            if (code < 0 || at >= kVectors) return false;
            image[at++] = static_cast<unsigned char>(code);
        }
        if (at >= kVectors) return false;
        image[at++] = kEnd;
    }
    return true;
}

std::vector<unsigned char> MakeImage(const Script& script) {
    std::vector<unsigned char> image(kImageSize, 0);
    const unsigned char startup[] = {0x78, 0xD8, 0x4C, 0x02, 0xC0};  // sei; cld; jmp $C002
    std::copy(std::begin(startup), std::end(startup), image.begin() + kFixedBank);
    for (size_t vector = kVectors; vector < kImageSize; vector += 2) PutWord(image, vector, kFixedBankAddress);
    for (int code = 0; code < kCodeCount; ++code) PutTile(image, kFont + 16 * static_cast<size_t>(code), GlyphOf(code));
    if (!PutScript(image, script)) image.clear();
    return image;
}

bool WriteNes(const std::string& path, const std::vector<unsigned char>& image) {
    // iNES header: eight 16 KiB program banks, character RAM, mapper 2 (a
    // switchable bank at 8000h and the last bank fixed at C000h).
    unsigned char header[kHeaderSize] = {'N', 'E', 'S', 0x1A, kBankCount, 0, 0x20};
    std::ofstream out(path, std::ios::binary);
    out.write(reinterpret_cast<const char*>(header), kHeaderSize);
    out.write(reinterpret_cast<const char*>(image.data()), static_cast<std::streamsize>(image.size()));
    return static_cast<bool>(out);
}

bool WriteThingyTable(const std::string& path) {
    std::ofstream out(path, std::ios::binary);
    out << "# Trelvane Island sample: one byte per character\n";
    char line[16];
    for (int code = 0; code < kCodeCount; ++code) {
        std::snprintf(line, sizeof line, "%02X=%c\n", code, CharacterOf(code));
        out << line;
    }
    out << "*FE\n/FF\n";
    return static_cast<bool>(out);
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::printf("usage: trelvane_make_sample <folder>\n");
        return 2;
    }
    std::string folder = std::string(argv[1]) + "/";
    std::vector<unsigned char> english = MakeImage(kEnglish), french = MakeImage(FrenchScript());
    if (english.empty() || french.empty() || !WriteNes(folder + "sample.nes", english) ||
        !WriteNes(folder + "sample_fr.nes", french) || !WriteThingyTable(folder + "sample.tbl") ||
        !WriteSmc(folder + "sample.smc", MakeSnesImage())) {
        std::printf("could not write the sample into %s\n", argv[1]);
        return 1;
    }
    std::printf("sample.nes     NES image: 16-byte header + 128 KiB; 20 strings at 1D040h, 2-byte pointers at\n"
                "               1D000h (pointer + 10000h = image offset), font tiles (2bpp NES) at 2000h\n"
                "sample_fr.nes  the same game with its menus (the last 8 strings) translated into French\n"
                "sample.tbl     its character table, thingy format, FEh line break, FFh end\n"
                "sample.smc     Super NES image: 512-byte header + 128 KiB; main loop at 808010h, free space\n"
                "               from 818000h (image offset = address & 3FFFFFh)\n");
    return 0;
}
