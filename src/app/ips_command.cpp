#include <string>

#include "app/command_sequences.h"
#include "app/sequence_support.h"
#include "trelvane.h"

// i: argument 1 is the changed ROM, argument 3 the original, argument 4 the
// patch to write (derived from argument 1 when absent). A failure is
// reported but still ends the run normally.
int RunIpsCreate(const CommandLine& line) {
    std::string ipsName = line.argc == 4 ? IpsNameForRom(line.argv[1]) : line.argv[4];
    if (!Trelvane_CreateIPS(ipsName.c_str(), line.argv[3], line.argv[1])) FailWithLastError();
    return 0;
}
