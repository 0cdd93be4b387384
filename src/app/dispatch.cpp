#include "app/dispatch.h"

#include "app/command_sequences.h"

// Minimal dispatch by command letter; the full command table with its checks
// and usage screens replaces it.
int RunCommandLine(int argc, char** argv) {
    if (argc < 3) return -1;
    char letter = argv[2][0];
    if (letter >= 'A' && letter <= 'Z') letter = static_cast<char>(letter - 'A' + 'a');
    char digit = argv[2][0] ? argv[2][1] : 0;
    int fontId = 1;
    if (digit >= '2' && digit <= '9') fontId = digit - '0';
    if (digit == 'j' || digit == 'J') fontId = 2;
    CommandLine line{argc, argv, fontId};
    switch (letter) {
        case 'f': return RunTilesInsert(line);
        case 'b': return RunTilesDump(line);
        case 'c': return RunThingyConvert(line);
        case 'l': return RunStringLocate(line);
        case 'd': return RunScriptDump(line);
        case 'x': return RunPointerDump(line);
        case 't': return RunScriptInsert(line);
        case 'i': return RunIpsCreate(line);
        case 'p': return RunPatchApply(line);
        default: return -1;
    }
}
