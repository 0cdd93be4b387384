#include "app/command_sequences.h"
#include "app/sequence_support.h"

int RunScriptDump(const CommandLine&) { return ReportUnavailableCommand("d"); }
int RunPointerDump(const CommandLine&) { return ReportUnavailableCommand("x"); }
