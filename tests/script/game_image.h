// Generated game images for the script tests: printable ASCII but "\" as
// itself, FE a line break, FF the end of a string; strings end to end and
// pointer tables, in a filler that never reads as a table.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

#include "support/test_support.h"

inline std::string GameTable() {
    std::string table;
    char line[16];
    for (int code = 0x20; code < 0x7F; ++code) {
        std::snprintf(line, sizeof line, "%02X=%c\n", code, code);
        if (code != '\\') table += line;
    }
    return table + "*FE\n/FF\n";
}

inline Bytes GameText(const std::string& text) {
    Bytes bytes;
    for (char c : text) bytes.push_back(c == '\n' ? 0xFE : static_cast<unsigned char>(c));
    bytes.push_back(0xFF);
    return bytes;
}

class GameImage {
public:
    explicit GameImage(size_t size, bool zeros = false) : bytes(size) {
        uint32_t state = 12345;
        for (unsigned char& byte : bytes) {
            state = state * 1103515245 + 12345;
            byte = zeros ? 0 : static_cast<unsigned char>(state >> 16);
        }
    }

    void Put(size_t at, const Bytes& data) {
        for (unsigned char byte : data) bytes.at(at++) = byte;
    }

    // Places the texts end to end from at; returns their offsets.
    std::vector<int64_t> PutStrings(size_t at, const std::vector<std::string>& texts) {
        std::vector<int64_t> offsets;
        for (const std::string& text : texts) {
            offsets.push_back(static_cast<int64_t>(at));
            Put(at, GameText(text));
            at += text.size() + 1;
        }
        return offsets;
    }

    // Writes each value, less base, as size bytes little-endian from at; or,
    // with shift, only its byte number shift, one byte per value.
    void PutPointers(size_t at, int size, const std::vector<int64_t>& offsets, int64_t base = 0, int shift = 0) {
        for (int64_t offset : offsets)
            for (int i = 0; i < size; ++i) bytes.at(at++) = static_cast<unsigned char>((offset - base) >> 8 * (i + shift));
    }

    // The image as a .nes file: a 16-byte copier header in front.
    void WriteNes(const std::string& path) const {
        Bytes file(16 + bytes.size(), 0);
        std::copy(bytes.begin(), bytes.end(), file.begin() + 16);
        WriteFile(path, file);
    }

    Bytes bytes;
};

// "Line 0 x", "Line 1 xx", ... with `extra` more x's each; or, short, "s0",
// "s3", "s6", ... that fit many to a 256-byte page.
inline std::vector<std::string> NumberedTexts(int count, size_t extra = 0, bool shortTexts = false) {
    std::vector<std::string> texts;
    for (int i = 0; i < count; ++i) {
        std::string text = shortTexts ? "s" : "Line ";
        text += std::to_string(shortTexts ? i * 3 : i);
        if (!shortTexts) text.append(" ").append(extra + static_cast<size_t>(i % 7) + 1, 'x');
        texts.push_back(text);
    }
    return texts;
}

// Split pointer tables: 20 strings at 10010h whose pointers (base 10000h)
// have their low bytes at 3000h and their high bytes at 3400h; and 20 short
// strings in the page 37A00h behind a low-byte table at 1000h.
inline GameImage SplitTableGame(std::vector<int64_t>& strings) {
    GameImage image(0x40000);
    strings = image.PutStrings(0x10010, NumberedTexts(20, 30));
    image.PutPointers(0x3000, 1, strings, 0x10000);
    image.PutPointers(0x3400, 1, strings, 0x10000, 1);
    image.PutPointers(0x1000, 1, image.PutStrings(0x37A10, NumberedTexts(20, 0, true)), 0x37A00);
    return image;
}
