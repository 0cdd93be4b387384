// An open patch script: its reader, CPU description, pending code block,
// label table, macros and the message of the statement that failed last.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "asm/code_block.h"
#include "asm/cpu_description.h"
#include "asm/label_table.h"
#include "asm/macro_body.h"
#include "asm/patch_limits.h"
#include "text/source_reader.h"

struct PatchFile {
    // A patch file for an image of romType whose bytes (data, size) it writes into. The lexicon
    // follows the description: the 65816 lexicon for "65816", the generic lexicon otherwise.
    PatchFile(int32_t romType, unsigned char* data, int32_t size);

    // Opens the script that the reader starts with: a file, or text that outlives the reading.
    bool Open(const char* name);
    void OpenText(const char* name, const char* text);

    char message[PATCH_MESSAGE_SIZE] = {};
    CodeBlock block;
    std::vector<std::unique_ptr<MacroBody>> macros;
    LabelTable labels;
    std::unique_ptr<CpuDescription> cpu;
    SourceReader reader{READER_SKIP_SPACE};
    int32_t blockAddress = 0;
    uint16_t blockLimit = 0xFFFF;
    int32_t symbolCount = 0;

    // The macro under definition ("_" and its name), if any.
    bool definingMacro = false;
    std::string macroName;
    // The script files being read, outermost first (one per file frame of the reader).
    std::vector<std::string> openFiles;
};

// The statement reporters: each composes the message (position of the current token, then the
// complaint, cut safely at the message size) and returns 0, the result of a failed statement.
int ReportAt(PatchFile& patch, const char* file, int line, int column, const char* format, ...);
int Report(PatchFile& patch, const char* format, ...);  // at the current token
int ReportExpected(PatchFile& patch, const char* expected);
int ReportInvalidOperand(PatchFile& patch);
int ReportAlreadyDefined(PatchFile& patch, const char* kind, const char* name);
int ReportNotImplemented(PatchFile& patch, const char* first, const char* second);
int ReportTooMany(PatchFile& patch, const char* table, int limit);
// Sets the message to the position prefix alone; AppendMessage adds the complaint later.
void SetMessagePrefix(PatchFile& patch, const char* file, int line, int column);
int AppendMessage(PatchFile& patch, const char* format, ...);
