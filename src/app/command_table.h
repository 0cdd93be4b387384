// The command table: each command's name, usage line, parameters and
// sequence, with the checks its parameters must pass before it runs.
#pragma once

#include <string>

#include "app/command_sequences.h"

enum ParamKind {
    PARAM_NONE = 0,
    PARAM_ADDRESS = 1,
    PARAM_FORMAT = 2,
    PARAM_BMPFILE = 3,
    PARAM_FONTFILE = 4,
    PARAM_DUMPFILE = 5,
    PARAM_TEXTFILE = 6,
    PARAM_IPSFILE = 7,
    PARAM_ORIGINALFILE = 8,
    PARAM_PATCHFILE = 9,
    PARAM_COUNT = 10,
    PARAM_STRING = 11,
    PARAM_SIZE = 12,
    PARAM_FREQUENCY = 13,
};

constexpr int MAX_COMMAND_PARAMETERS = 8;
constexpr int MAX_COMMAND_FILES = 4;

// What a command does with a file it names: reads it, writes it, or reads it
// and writes it back in place.
enum FileRole { FILE_NONE = 0, FILE_INPUT, FILE_OUTPUT, FILE_REWRITTEN };

struct CommandFile {
    int argument;  // argv index
    FileRole role;
    // The name used when the argument is absent (derived from argument 1),
    // or null when an absent argument names no file.
    std::string (*nameWhenAbsent)(const char* firstArgument) = nullptr;
};

struct CommandEntry {
    const char* name;  // the command letter, then "#" when it takes a font ID
    int usageMessage;  // catalogue text of its usage line
    ParamKind parameters[MAX_COMMAND_PARAMETERS];  // in command-line order, ended by PARAM_NONE
    int (*run)(const CommandLine& line);
    CommandFile files[MAX_COMMAND_FILES];  // ended by FILE_NONE
};

// Every command, in the order of the usage screen.
const CommandEntry* CommandsBegin();
const CommandEntry* CommandsEnd();

// The first command whose name starts with letter, or null.
const CommandEntry* FindCommand(char letter);

// The catalogue message naming a parameter kind in the usage screens and the
// frame it is printed in ("<%s> " for required, "[%s] " for optional ones).
int ParameterNameMessage(ParamKind kind);
const char* ParameterFrame(ParamKind kind);

// True when the arguments behind the command (argv[3] onward) satisfy the
// command's parameter kinds.
bool ParametersPass(const CommandEntry& command, int argc, char** argv);

// The font ID a command argument selects through its second character.
int FontIdOf(const char* commandArgument);

// The first argument given for a number parameter that is not a number, or
// null.
const char* RefusedNumberArgument(const CommandEntry& command, int argc, char** argv);

// The argument checks: a number is empty (read as 0) or a number as
// core/number_text.h reads them without a sign, so "2AE0" and "12AB" are
// refused where they used to read as 2 and 12; a file name holds only the characters allowed in
// one. A tile format is a name the tile codecs know (FindTileFormat).
bool IsNumberArgument(const char* text);
bool IsFileNameArgument(const char* text);
