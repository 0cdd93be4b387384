#include "app/command_sequences.h"
#include "app/sequence_support.h"
#include "trelvane.h"

// The ROM file is written back only after the whole script went in.
int RunScriptInsert(const CommandLine& line) {
    if (!Trelvane_LoadROM(line.argv[1])) return FailWithLastError();
    if (!Trelvane_InsertFromFile(line.fontId, line.argv[3]) || !Trelvane_SaveROM(line.argv[1]))
        return FreeImageAndFail();
    PrintMessageLine(TLMSG_TEXT_INSERTED);
    Trelvane_FreeROM(-1);
    return 0;
}
