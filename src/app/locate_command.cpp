#include "app/command_sequences.h"
#include "app/sequence_support.h"

int RunStringLocate(const CommandLine&) { return ReportUnavailableCommand("l"); }
