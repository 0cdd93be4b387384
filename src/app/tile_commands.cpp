#include "app/command_sequences.h"
#include "app/sequence_support.h"

int RunTilesInsert(const CommandLine&) { return ReportUnavailableCommand("f"); }
int RunTilesDump(const CommandLine&) { return ReportUnavailableCommand("b"); }
