// Generated game images for the script tests: printable ASCII but "\" as
// itself, FE a line break, FF the end of a string; strings end to end and
// pointer tables, in a filler that never reads as a table.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "support/test_support.h"
#include "trelvane.h"

inline std::string GameTable() {
    std::string table;
    char line[16];
    for (int code = 0x20; code < 0x7F; ++code) {
        std::snprintf(line, sizeof line, "%02X=%c\n", code, code);
        if (code != '\\') table += line;
    }
    return table + "*FE\n/FF\n";
}

// The texts encoded end to end, each with its end code.
inline Bytes GameText(const std::vector<std::string>& texts) {
    Bytes bytes;
    for (const std::string& text : texts) {
        for (char c : text) bytes.push_back(c == '\n' ? 0xFE : static_cast<unsigned char>(c));
        bytes.push_back(0xFF);
    }
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
            Put(at, GameText({text}));
            at += text.size() + 1;
        }
        return offsets;
    }

    // Writes each value, less base, as size bytes little-endian from at; or,
    // with shift, only its byte number shift, one byte per value.
    void PutPointers(size_t at, int size, const std::vector<int64_t>& offsets, int64_t base = 0, int shift = 0) {
        for (int64_t offset : offsets)
            for (int i = 0; i < size; ++i)
                bytes.at(at++) = static_cast<unsigned char>((offset - base) >> 8 * (i + shift));
    }

    // The image as a .nes file: a 16-byte copier header in front.
    Bytes Nes() const {
        Bytes file(16 + bytes.size(), 0);
        std::copy(bytes.begin(), bytes.end(), file.begin() + 16);
        return file;
    }
    void WriteNes(const std::string& path) const { WriteFile(path, Nes()); }

    Bytes bytes;
};

// "Line 0 x", "Line 1 xx", ... with `extra` more x's each.
inline std::vector<std::string> NumberedTexts(int count, size_t extra = 0) {
    std::vector<std::string> texts;
    for (int i = 0; i < count; ++i)
        texts.push_back("Line " + std::to_string(i) + " " + std::string(extra + static_cast<size_t>(i % 7) + 1, 'x'));
    return texts;
}

// A folder holding the game's table, and the image last loaded from it.
class GameTest : public ::testing::Test {
protected:
    void SetUp() override { WriteFile(dir / "game.tbl", GameTable()); }
    void TearDown() override { Trelvane_FreeROM(-1); }

    void Load(const GameImage& image) {
        Trelvane_FreeROM(-1);
        image.WriteNes(dir / "game.nes");
        ASSERT_EQ(Trelvane_LoadROM((dir / "game.nes").c_str()), 1);
    }

    TempDir dir;
};
