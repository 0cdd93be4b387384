// The whole command line, parsed and run in process from arbitrary argument
// vectors: the input's lines (or zero-separated parts) are the arguments
// behind the program name, and a part that is one control character stands
// for a word the commands know (a file of the folder, a command, a number),
// so that short inputs reach deep into the commands. Every run happens in a
// private folder (game_folder.h) restored before each run; names with a
// directory part are not run, so nothing outside that folder is touched.
// Standard output goes nowhere.
#include <cstdint>

#include "app/dispatch.h"
#include "game_folder.h"

namespace {

constexpr const char* kWords[] = {"game.nes", "game.smc", "game.gb", "game.tbl", "game.txt", "script.txt",
                                  "patch.ips", "tiles.bmp", "out.txt", "out.ips", "out.nes", "100h", "10h",
                                  "2",        "1",         "NES",     "SNES",     "GB",       "d",
                                  "x2",       "t",         "i",       "p",        "b",        "f",
                                  "c",        "l",         "Hello",   "3"};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    game_folder::RunInFolder(data, size, kWords, RunCommandLine, 0, -1);
    return 0;
}
