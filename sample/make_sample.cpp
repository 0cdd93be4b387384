// Makes the sample game the demonstration run works on: a small NES image
// with an English script, its pointer table and a font, a translated copy of
// the image, and the game's character table as a thingy file.
//
// Image layout (image offsets, the file without its 16-byte header; the
// processor sees offset 0 at address 8000h):
//   0000h  a start-up loop            1000h  6 two-byte little-endian pointers
//   1010h  the strings                2000h  the font, 2bpp NES tiles, tile n = code n
//   7FFAh  the processor vectors
// A pointer holds a processor address: pointer - 8000h = image offset.
#include <cstdio>
#include <fstream>
#include <string>
#include <vector>

namespace {

constexpr size_t kHeaderSize = 16;
constexpr size_t kImageSize = 0x8000;
constexpr size_t kPointerTable = 0x1000;
constexpr size_t kStrings = 0x1010;
constexpr size_t kFont = 0x2000;
constexpr unsigned kAddressBase = 0x8000;
constexpr unsigned char kLineBreak = 0xFE;
constexpr unsigned char kEnd = 0xFF;

const char* const kEnglish[] = {
    "Welcome to Trelvane Island!",
    "The old lighthouse keeper\nwaits by the shore.",
    "Take this lamp. It will\nguide you home.",
    "The bridge is out.\nTry the cave to the north.",
    "You found 3 silver keys!",
    "Thank you for playing.",
};

const char* const kFrench[] = {
    "Bienvenue sur l'ile Trelvane!",
    "Le vieux gardien du phare\nattend sur la plage.",
    "Prends cette lampe. Elle\nte guidera.",
    "Le pont est coupe.\nEssaie la grotte au nord.",
    "Tu as trouve 3 cles d'argent!",
    "Merci d'avoir joue.",
};

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

bool PutScript(std::vector<unsigned char>& image, const char* const (&script)[6]) {
    size_t at = kStrings;
    for (size_t i = 0; i < 6; ++i) {
        PutWord(image, kPointerTable + 2 * i, static_cast<unsigned>(at) + kAddressBase);
        for (const char* c = script[i]; *c; ++c) {
            int code = *c == '\n' ? kLineBreak : CodeOf(*c);
            if (code < 0) return false;
            image[at++] = static_cast<unsigned char>(code);
        }
        image[at++] = kEnd;
    }
    return at <= kFont;
}

std::vector<unsigned char> MakeImage(const char* const (&script)[6]) {
    std::vector<unsigned char> image(kImageSize, 0);
    const unsigned char startup[] = {0x78, 0xD8, 0x4C, 0x02, 0x80};  // sei; cld; jmp $8002
    std::copy(std::begin(startup), std::end(startup), image.begin());
    for (size_t vector = 0x7FFA; vector < kImageSize; vector += 2) PutWord(image, vector, kAddressBase);
    for (int code = 0; code < kCodeCount; ++code) PutTile(image, kFont + 16 * static_cast<size_t>(code), GlyphOf(code));
    if (!PutScript(image, script)) image.clear();
    return image;
}

bool WriteNes(const std::string& path, const std::vector<unsigned char>& image) {
    // iNES header: two 16 KiB program banks, character RAM.
    unsigned char header[kHeaderSize] = {'N', 'E', 'S', 0x1A, 2, 0};
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
    std::vector<unsigned char> english = MakeImage(kEnglish), french = MakeImage(kFrench);
    if (english.empty() || french.empty() || !WriteNes(folder + "sample.nes", english) ||
        !WriteNes(folder + "sample_fr.nes", french) || !WriteThingyTable(folder + "sample.tbl")) {
        std::printf("could not write the sample into %s\n", argv[1]);
        return 1;
    }
    std::printf("sample.nes     NES image: 16-byte header + 32 KiB; 6 strings at 1010h, pointers at 1000h\n"
                "               (pointer - 8000h = image offset), font tiles (2bpp NES) at 2000h\n"
                "sample_fr.nes  the same game with its script translated\n"
                "sample.tbl     its character table, thingy format, FEh line break, FFh end\n");
    return 0;
}
