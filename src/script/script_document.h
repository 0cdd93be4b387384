// A script as the dump verb writes it and the insert verb reads it: the
// table, where the strings' pointers lie and in which form, the text regions
// the strings may fill, and the strings themselves.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "trelvane.h"

// Bytes of the image the strings may fill, in the order they are filled.
struct TextRegion {
    int64_t start = 0;
    int64_t size = 0;
};

struct ScriptEntry {
    std::string text;      // the string as the encoder takes it, lines joined by line feeds
    int64_t offset = -1;   // where the dump found the string, -1 when unknown
    int64_t length = -1;   // the bytes it had there, -1 when unknown
    std::string number;    // the entry line's number, for messages
    bool null = false;     // a null pointer (value 0) in a table: no string, the pointer stays
};

enum class ScriptPointers {
    None,   // strings end to end, no pointer written
    Table,  // one pointer per string (or per frequency strings) in a table
    List,   // each string's pointers at places of their own
};

struct ScriptDocument {
    std::string tableFile;
    bool literalLines = false;  // the literal line rules and encoding of dump scripts
    ScriptPointers pointers = ScriptPointers::None;
    PointerForm form{};         // the table, or the size, order, base and mapping of a list
    int32_t frequency = 1;      // strings per table pointer
    std::vector<std::vector<int64_t>> pointerLists;  // per string, the offsets of its pointers
    std::vector<TextRegion> regions;
    int32_t padByte = -1;       // what fixed-length insertion pads with, -1 when none is declared
    std::vector<ScriptEntry> entries;
};
