// Shared set-up of the table and codec tests: an empty font set, a fresh
// error state, and fonts built entry by entry or from table files.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "core/last_error.h"
#include "support/test_support.h"
#include "table/font_set.h"
#include "table/text_decoder.h"
#include "trelvane.h"

class FontTest : public ::testing::Test {
protected:
    void SetUp() override {
        ResetFontSet();
        SetError(TLERR_NONE, "", 0, 0);
    }

    // Writes the table text to a file of that name and loads it.
    long LoadTable(const std::string& name, const std::string& text) {
        WriteFile(dir / name, text);
        return Trelvane_LoadFont((dir / name).c_str());
    }

    TempDir dir;
};

// Builds a font in the next free slot without a table file.
class FontBuilder {
public:
    FontBuilder& Entry(int entry, const char* text, uint8_t flags = 0) {
        if (text) SetEntryText(font_, entry, text);
        font_.flags[entry] |= flags;
        return *this;
    }
    FontBuilder& TwoByte(uint16_t code, const char* text, uint8_t flags = 0) {
        return Entry(DefineTwoByteCode(font_, code), text, flags);
    }
    FontBuilder& Rule(uint8_t rule) {
        font_.rule = rule;
        return *this;
    }
    long Load() { return CompleteLoad("built", 1); }

private:
    Font& font_ = *NextFreeSlot("built");
};

// 0x41 A, 0x42 B, 0x80 AB, 0xFE a line break, 0xFF the terminal.
inline FontBuilder Letters() {
    FontBuilder font;
    font.Entry(0x41, "A").Entry(0x42, "B").Entry(0x80, "AB").Entry(0xFE, "", ENTRY_NEWLINE);
    font.Entry(0xFF, "", ENTRY_TERMINAL);
    return font;
}

// The bytes decoded through font id and the count consumed; "<null>" and 0
// when decoding fails.
inline std::pair<std::string, int32_t> DecodeCounted(const Bytes& bytes, long id = 1) {
    const DecodedText decoded = DecodeText(id, bytes.data(), bytes.data() + bytes.size());
    return {decoded.text ? decoded.text : "<null>", decoded.consumed};
}

// The bytes decoded through font id, or "<null>" when decoding fails.
inline std::string Decode(const Bytes& bytes, long id = 1) { return DecodeCounted(bytes, id).first; }

inline std::string LastErrorSummary() {
    const LastErrorState& e = LastError();
    return std::to_string(e.code) + "|" + e.file + "|" + std::to_string(e.line) + "," + std::to_string(e.column) +
           "|" + e.data[0] + "|" + e.data[1];
}
