// The header of a script file: the commands before its string section.
#pragma once

#include <cstdint>

class SourceReader;

constexpr int32_t HEADER_VALUE_UNSET = -1;

// Values that hold for one script file only; the pointer table's place and
// shape go to the program-wide pointer destination.
struct ScriptHeader {
    int32_t textAddress = HEADER_VALUE_UNSET;  // where the first string is written
    int32_t limit = HEADER_VALUE_UNSET;        // bytes the text may use
    int32_t firstPointer = 0;                  // pointer value of the first string, 0 when not given
};

enum class HeaderEnd {
    Failed,          // an error is reported
    EndOfFile,       // the file ended inside the header
    StringSection,   // the "[" that opens the string section was read
};

// Reads header commands up to the first "[" token, loading the character
// table that a load command names.
HeaderEnd ReadScriptHeader(SourceReader& reader, ScriptHeader& header);
