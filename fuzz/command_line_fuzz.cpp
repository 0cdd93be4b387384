// The whole command line, parsed and run in process from arbitrary argument
// vectors: the input's lines (or zero-separated parts) are the arguments
// behind the program name, and a part that is one control character stands
// for a word the commands know (a file of the folder, a command, a number),
// so that short inputs reach deep into the commands. Every run happens in a private folder that holds a
// few small games, tables, a script, a patch and a bitmap, restored before
// each run; names with a directory part are not run, so nothing outside that
// folder is touched. Standard output goes nowhere.
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "app/dispatch.h"
#include "core/last_error.h"
#include "scratch_files.h"
#include "script/pointer_writer.h"
#include "table/font_set.h"
#include "trelvane.h"

namespace {

namespace fs = std::filesystem;

constexpr size_t kMaxArguments = 10;

constexpr const char* kWords[] = {"game.nes", "game.smc", "game.gb", "game.tbl", "game.txt", "script.txt",
                                  "patch.ips", "tiles.bmp", "out.txt", "out.ips", "out.nes", "100h", "10h",
                                  "2",        "1",         "NES",     "SNES",     "GB",       "d",
                                  "x2",       "t",         "i",       "p",        "b",        "f",
                                  "c",        "l",         "Hello",   "3"};
constexpr size_t kWordCount = sizeof kWords / sizeof kWords[0];

using Files = std::map<std::string, std::string>;

// A game of that size: strings "Line n" from 100h on, their 2-byte pointers at 10h.
std::string Game(size_t header, size_t size) {
    std::string bytes(header + size, '\0');
    size_t at = 0x100;
    for (int n = 0; n < 8 && at + 16 < size; ++n) {
        const std::string text = "Line " + std::to_string(n) + '\xFF';
        bytes.replace(header + at, text.size(), text);
        bytes[header + 0x10 + 2 * n] = static_cast<char>(at);
        bytes[header + 0x11 + 2 * n] = static_cast<char>(at >> 8);
        at += text.size();
    }
    return bytes;
}

std::string ThingyTable() {
    std::string text = "/FF\n*FE\n$05=1\n8140=X\n";
    for (int code = 0x20; code < 0x7F; ++code)
        if (code != '\\') text += std::string{"0123456789ABCDEF"[code / 16], "0123456789ABCDEF"[code % 16], '=', char(code), '\n'};
    return text;
}

// Two records: "hi" at 000100h, and four "z" from 000300h on.
constexpr char kPatch[] = "PATCH\0\x01\x00\0\x02hi\0\x03\x00\0\0\0\x04zEOF";

Files InitialFiles() {
    return {
        {"game.nes", Game(16, 0x2000)},
        {"game.smc", Game(512, 0x800)},
        {"game.gb", Game(0, 0x200)},
        {"game.tbl", ThingyTable()},
        {"game.txt", "; Trelvane table\r\n\r\n[20]   \" \"\r\n[41]   \"A\"\r\n[FE]   newline\r\n[FF]   terminal\r\n"},
        {"script.txt", "load \"game.tbl\"\ntextaddress 100h (80)\npointertable 10h\npointersize 2\n"
                       "[0000]\nHello\n[0001]\nWorld\n"},
        {"patch.ips", std::string(kPatch, sizeof kPatch - 1)},
    };
}

const fs::path& PrivateFolder() {
    static const fs::path folder = ScratchName("-command-line");
    return folder;
}

// Makes a fresh private folder, removed when the fuzzer ends.
bool MakePrivateFolder() {
    std::error_code error;
    fs::remove_all(PrivateFolder(), error);
    if (!fs::create_directory(PrivateFolder(), error)) return false;
    std::atexit([] {
        std::error_code ignored;
        fs::remove_all(PrivateFolder(), ignored);
    });
    return std::freopen("/dev/null", "w", stdout) != nullptr;
}

// Puts the folder back as it was before the first run: every file a command
// created is removed, every input rewritten, the bitmap drawn again.
bool RestoreFolder(const Files& files) {
    std::error_code error;
    for (const fs::directory_entry& entry : fs::directory_iterator(".", error))
        if (!files.count(entry.path().filename().string())) fs::remove_all(entry.path(), error);
    for (const auto& [name, bytes] : files)
        if (!WriteInput(name, reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size())) return false;
    static unsigned char pixels[128 * 128];
    for (size_t i = 0; i < sizeof pixels; ++i) pixels[i] = static_cast<unsigned char>(i % 13);
    return Trelvane_WriteBMP("tiles.bmp", pixels, 128, 128) == -1;
}

// The arguments behind the program name; false for a name that could reach
// outside the folder.
bool SplitArguments(const uint8_t* data, size_t size, std::vector<std::string>& arguments) {
    arguments.assign(1, "trelvane");
    std::string current;
    for (size_t i = 0; i <= size; ++i) {
        if (i < size && data[i] != '\n' && data[i] != '\0') {
            current += static_cast<char>(data[i]);
            continue;
        }
        if (current.size() == 1 && static_cast<unsigned char>(current[0]) < 0x20)
            current = kWords[static_cast<unsigned char>(current[0]) % kWordCount];
        if (current.find_first_of("/\\") != std::string::npos || current == "." || current == "..") return false;
        arguments.push_back(current);
        current.clear();
        if (arguments.size() > kMaxArguments) return false;
    }
    return true;
}

// The process-wide state a run leaves behind goes, as at program start.
void ResetEngine() {
    Trelvane_FreeROM(-1);
    ResetFontSet();
    SetPointerDestination(PointerDestination());
    SetError(TLERR_NONE, "", 0, 0);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static const Files files = InitialFiles();
    static const bool ready = MakePrivateFolder();
    const InsideFolder inside(PrivateFolder());
    std::vector<std::string> arguments;
    if (!ready || !inside.entered() || !SplitArguments(data, size, arguments) || !RestoreFolder(files)) return 0;
    std::vector<char*> argv;
    for (std::string& argument : arguments) argv.push_back(argument.data());
    argv.push_back(nullptr);
    ResetEngine();
    const int status = RunCommandLine(static_cast<int>(arguments.size()), argv.data());
    if (status != 0 && status != -1) __builtin_trap();
    return 0;
}
