// Putting a script document back into the current image: strings fill the
// text regions in order, identical strings are stored once, and every pointer
// is written in its form. All or nothing: on any failure the image is left
// as it was.
#pragma once

#include <cstdint>

#include "script/script_document.h"

struct PlacementOptions {
    bool fixedLength = false;  // each string at its original place and length, padded
    bool optimal = false;      // the shortest encoding of each string, not the longest match
};

struct PlacementReport {
    int64_t strings = 0;       // strings inserted
    int64_t used = 0;          // bytes of text written
    int64_t space = 0;         // bytes the regions (or the original places) hold
    int64_t longestMatch = 0;  // bytes of all strings encoded by longest match
    int64_t optimal = 0;       // bytes of all strings encoded shortest (with optimal only)
};

// file names the script in messages. False after reporting: a string the
// table cannot encode, a string that does not fit (naming the entry and the
// bytes missing), a pointer that cannot address its string.
bool PlaceScript(long fontId, const ScriptDocument& document, const PlacementOptions& options, const char* file,
                 PlacementReport& report);
