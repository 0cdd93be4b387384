// The command sequences the front end dispatches to. Each takes the checked
// command line and returns the process exit status (0 or -1).
#pragma once

struct CommandLine {
    int argc;     // argument count, program name included
    char** argv;  // argv[1] the ROM, argv[2] the command, argv[3] the first parameter
    int fontId;   // from the command's second character
};

int RunTilesInsert(const CommandLine& line);   // f
int RunTilesDump(const CommandLine& line);     // b
int RunThingyConvert(const CommandLine& line); // c
int RunStringLocate(const CommandLine& line);  // l#
int RunScriptDump(const CommandLine& line);    // d#
int RunPointerDump(const CommandLine& line);   // x#
int RunScriptInsert(const CommandLine& line);  // t#
int RunIpsCreate(const CommandLine& line);     // i
int RunPatchApply(const CommandLine& line);    // p
