#include "app/command_sequences.h"
#include "app/sequence_support.h"

int RunPatchApply(const CommandLine&) { return ReportUnavailableCommand("p"); }
