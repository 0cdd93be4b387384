// Taking a game's strings out of the image into a script document: through a
// pointer table, pointer lists, or end to end from an offset.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "script/script_document.h"

struct ScriptSource {
    long fontId = 0;
    std::string tableFile;                           // as the script's load line names it
    ScriptPointers pointers = ScriptPointers::None;
    PointerForm form{};                              // Table: count pointers; List: size, order, base, map
    std::vector<std::vector<int64_t>> pointerLists;  // List: per string, its pointers' offsets
    int64_t textAddress = 0;                         // None: the first string
    int64_t count = 0;                               // None: strings end to end
};

// The strings with their original offsets and lengths, the text regions they
// occupy (runs of adjacent or overlapping strings) and the table's terminal
// code as the pad byte. False after reporting a pointer or string outside the
// image.
bool ExtractScript(const ScriptSource& source, ScriptDocument& document);
