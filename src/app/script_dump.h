// Writing a game's script to the text file a translator edits and the insert
// command reads back.
#pragma once

#include <string>

#include "trelvane.h"

struct DumpRequest {
    long fontId;                // table the strings are decoded with
    const PointerTable* table;  // null: strings lie end to end from textAddress
    long count;                 // strings to write
    long textAddress;           // first string when there is no table
    const char* tableFile;      // as the command line names it
    const char* dumpFile;
};

// The text of the dump file: the header lines, then one entry per string.
std::string FormatScriptDump(const DumpRequest& request);

// Writes the dump file, frees the image and returns the exit status: 0, or -1
// after printing why the file could not be created.
int DumpScript(const DumpRequest& request);
