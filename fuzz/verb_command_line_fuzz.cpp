// The verb interface, parsed and run in process from arbitrary argument
// vectors: the input's lines (or zero-separated parts) are the arguments
// behind the program name, and a part that is one control character stands
// for a word the verbs know (a verb, an option, a file of the folder, a
// number), so that short inputs reach past the parser into the verbs. Every
// run happens in the private folder of game_folder.h; names with a directory
// part are not run. A verb must end with 0 or 1.
#include <cstdint>

#include "game_folder.h"
#include "verbs/verb_command_line.h"

namespace {

constexpr const char* kWords[] = {
    "info",      "find",       "table",      "tiles",     "diff",        "apply",       "dump",
    "insert",    "asm",        "game.nes",   "game.smc",  "game.gb",     "game.tbl",    "game.txt",
    "script.txt", "patch.ips", "tiles.bmp",  "tiles.png", "out.txt",     "out.ips",     "out.png",
    "--table",   "--at",       "--count",    "--format",  "--pointers",  "--size",      "--image",
    "100h",      "10h",        "2",          "SNES2",     "--json",      "--ips",       "--bps",
    "Line",      "--stride",   "--split",    "--palette", "--map",       "--relative",  "--wide"};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    game_folder::RunInFolder(data, size, kWords, RunVerbCommandLine, 0, 1);
    return 0;
}
