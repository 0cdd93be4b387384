#include "app/command_sequences.h"
#include "app/sequence_support.h"

int RunIpsCreate(const CommandLine&) { return ReportUnavailableCommand("i"); }
