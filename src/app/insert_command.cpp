#include "app/command_sequences.h"
#include "app/sequence_support.h"

int RunScriptInsert(const CommandLine&) { return ReportUnavailableCommand("t"); }
