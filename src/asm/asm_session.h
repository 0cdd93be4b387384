// The state of one run of the common-syntax assembler: the image being
// written, the program counter, the mapping, labels, defines, macros, the
// conditional blocks and what the run reports (errors, warnings, prints).
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "asm/condition_stack.h"
#include "asm/source_defines.h"
#include "asm/source_labels.h"
#include "asm/source_lines.h"
#include "asm/source_macros.h"
#include "core/snes_mapping.h"

// A place in a source file; lines and columns count from 1.
struct SourcePlace {
    std::string file;
    int line = 0;
    int column = 0;
};

struct AsmDiagnostic {
    SourcePlace place;
    std::string text;
};

// What the caller gives the assembler.
struct AsmOptions {
    std::optional<SnesMapping> mapping;               // from the command line or the image header
    std::vector<std::pair<std::string, std::string>> defines;  // -D NAME=VALUE, in order
};

struct AsmSession {
    // The image the run writes into (without a copier header), and its original size.
    std::vector<unsigned char> image;
    AsmOptions options;
    std::optional<SnesMapping> mapping;   // decided by options or the source's mapping line
    bool finalPass = false;               // errors, warnings and prints count only here

    uint32_t pc = 0x008000;
    bool pcSet = false;
    uint8_t fillByte = 0;
    uint8_t padByte = 0;
    long tableFont = 0;  // 0: strings and characters are ASCII

    // Kept from pass to pass: the files read (by path), the lines of the sources among them and
    // the tables loaded (path to font ID).
    std::unordered_map<std::string, std::vector<unsigned char>> files;
    std::unordered_map<std::string, std::vector<SourceLine>> sourceLines;
    std::unordered_map<std::string, long> tables;

    LabelBook labels;
    DefineTable defines;
    MacroBook macros;
    ConditionStack conditions;

    // The statement being assembled, for reports.
    SourcePlace place;
    int macroDepth = 0;
    int includeDepth = 0;
    long linesRun = 0;  // in this pass, macro body lines and included lines counted each time

    std::vector<AsmDiagnostic> errors;
    std::vector<AsmDiagnostic> warnings;
    std::vector<std::string> prints;

    // Records an error at the current statement (column offset added); returns false.
    bool Error(const std::string& text, int columnOffset = 0);
    // Whether the errors reached their limit; the pass then stops.
    bool TooManyErrors() const;
    void Warning(const std::string& text);
    SnesMapping Mapping() const { return mapping.value_or(SnesMapping::LoRom); }
};
