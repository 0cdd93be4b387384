#include "app/command_sequences.h"
#include "app/sequence_support.h"
#include "trelvane.h"

// c: loads the thingy table named where other commands name the ROM and
// saves it as font 1 in the toolkit's own table format.
int RunThingyConvert(const CommandLine& line) {
    if (!Trelvane_LoadFont(line.argv[1])) return FailWithLastError();
    if (!Trelvane_SaveFont(1, line.argv[3])) return FailWithLastError();
    return 0;
}
