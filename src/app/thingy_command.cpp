#include "app/command_sequences.h"
#include "app/sequence_support.h"

int RunThingyConvert(const CommandLine&) { return ReportUnavailableCommand("c"); }
