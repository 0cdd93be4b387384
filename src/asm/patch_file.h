// An open patch script: its reader, CPU description, pending code block,
// label table, macros and the error of the statement that failed last.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "asm/block_compiler.h"
#include "asm/code_block.h"
#include "asm/included_files.h"
#include "asm/cpu_description.h"
#include "asm/label_table.h"
#include "asm/macro_body.h"
#include "asm/statement_error.h"
#include "text/source_reader.h"

struct PatchFile {
    // A patch file for an image of romType whose bytes (data, size) it writes into. The lexicon
    // follows the description: the 65816 lexicon for "65816", the generic lexicon otherwise.
    PatchFile(int32_t romType, unsigned char* data, int32_t size);

    // Opens the script that the reader starts with: a file, or text that outlives the reading.
    bool Open(const char* name);
    void OpenText(const char* name, const char* text);

    SourceReader reader{READER_SKIP_SPACE};
    StatementError error{reader};
    CodeBlock block;
    std::vector<std::unique_ptr<MacroBody>> macros;
    LabelTable labels;
    std::unique_ptr<CpuDescription> cpu;
    BlockPlace place;           // the address and limit of the last .ADDRESS
    bool addressGiven = false;  // code has no place before the first .ADDRESS

    // The macro under definition ("_" and its name), if any. Its body collects in the block and
    // labels above while the code around the definition waits in the outer ones.
    bool definingMacro = false;
    std::string macroName;
    CodeBlock outerBlock;
    LabelTable outerLabels;
    IncludedFiles files;
};

// Compiles the pending block at the block's place (see CompileBlock).
bool CompilePendingBlock(PatchFile& patch);
