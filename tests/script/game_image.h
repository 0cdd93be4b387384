// Generated game images for the script tests: text encoded through a small
// character table (printable ASCII as itself but "\", FE a line break, FF the
// end of a string), strings placed end to end and pointer tables in front.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

#include "support/test_support.h"

// The thingy table of generated games.
inline std::string GameTable() {
    std::string table;
    char line[16];
    for (int code = 0x20; code < 0x7F; ++code) {
        if (code == '\\') continue;
        std::snprintf(line, sizeof line, "%02X=%c\n", code, code);
        table += line;
    }
    return table + "*FE\n/FF\n";
}

// The bytes of text in a generated game, end code included.
inline Bytes GameText(const std::string& text) {
    Bytes bytes;
    for (char c : text) bytes.push_back(c == '\n' ? 0xFE : static_cast<unsigned char>(c));
    bytes.push_back(0xFF);
    return bytes;
}

class GameImage {
public:
    // size bytes of filler that never reads as a pointer table.
    explicit GameImage(size_t size) : bytes(size) {
        uint32_t state = 12345;
        for (unsigned char& byte : bytes) {
            state = state * 1103515245 + 12345;
            byte = static_cast<unsigned char>(state >> 16);
        }
    }

    void Put(size_t at, const Bytes& data) { std::copy(data.begin(), data.end(), bytes.begin() + at); }

    // Places the texts end to end from at; returns their offsets.
    std::vector<int64_t> PutStrings(size_t at, const std::vector<std::string>& texts) {
        std::vector<int64_t> offsets;
        for (const std::string& text : texts) {
            offsets.push_back(static_cast<int64_t>(at));
            Bytes encoded = GameText(text);
            Put(at, encoded);
            at += encoded.size();
        }
        return offsets;
    }

    // Writes values little-endian, size bytes each, from at.
    void PutPointers(size_t at, int size, const std::vector<int64_t>& values) {
        for (int64_t value : values)
            for (int i = 0; i < size; ++i) bytes.at(at++) = static_cast<unsigned char>(value >> 8 * i);
    }

    // Writes byte `shift` of every value, one byte per value, from at.
    void PutPointerBytes(size_t at, int shift, const std::vector<int64_t>& values) {
        for (int64_t value : values) bytes.at(at++) = static_cast<unsigned char>(value >> 8 * shift);
    }

    // The image as a .nes file: a 16-byte copier header in front.
    void WriteNes(const std::string& path) const {
        Bytes file(16 + bytes.size(), 0);
        std::copy(bytes.begin(), bytes.end(), file.begin() + 16);
        WriteFile(path, file);
    }

    Bytes bytes;
};

// Values that address offsets through base.
inline std::vector<int64_t> PointerValues(const std::vector<int64_t>& offsets, int64_t base) {
    std::vector<int64_t> values;
    for (int64_t offset : offsets) values.push_back(offset - base);
    return values;
}

// Texts of differing lengths: "Line 0 x", "Line 1 xx", ... with `extra` more
// x's each.
inline std::vector<std::string> NumberedTexts(int count, size_t extra = 0) {
    std::vector<std::string> texts;
    for (int i = 0; i < count; ++i) {
        std::string text = "Line ";
        text += std::to_string(i);
        text += ' ';
        text.append(extra + static_cast<size_t>(i % 7) + 1, 'x');
        texts.push_back(text);
    }
    return texts;
}

// Short texts "s0", "s3", "s6", ... that fit many to a 256-byte page.
inline std::vector<std::string> ShortTexts(int count) {
    std::vector<std::string> texts;
    for (int i = 0; i < count; ++i) {
        std::string text = "s";
        text += std::to_string(i * 3);
        texts.push_back(text);
    }
    return texts;
}
