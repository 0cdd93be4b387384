#include <string>

#include "app/command_sequences.h"
#include "app/sequence_support.h"
#include "core/path_names.h"
#include "trelvane.h"

// i: argument 1 is the changed ROM, argument 3 the original, argument 4 the
// patch to write (derived from argument 1 when absent); a name ending in
// ".bps" makes a BPS patch, any other an IPS patch. A failure is reported but
// still ends the run normally.
int RunIpsCreate(const CommandLine& line) {
    std::string patchName = line.argc == 4 ? IpsNameForRom(line.argv[1]) : line.argv[4];
    auto create = HasExtension(patchName.c_str(), "bps") ? Trelvane_CreateBPS : Trelvane_CreateIPS;
    if (!create(patchName.c_str(), line.argv[3], line.argv[1])) FailWithLastError();
    return 0;
}
