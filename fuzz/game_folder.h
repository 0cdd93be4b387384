// The private folder the command-line harnesses run in: a few small games,
// tables, a script, a patch, a bitmap and a PNG sheet, restored before each
// run, and the input cut into arguments that cannot name anything outside it.
#pragma once

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <span>
#include <string>
#include <vector>

#include "core/last_error.h"
#include "scratch_files.h"
#include "script/pointer_writer.h"
#include "table/font_set.h"
#include "trelvane.h"

namespace game_folder {

namespace fs = std::filesystem;

constexpr size_t kMaxArguments = 10;

using Files = std::map<std::string, std::string>;

// A game of that size: strings "Line n" from 100h on, their 2-byte pointers at 10h.
inline std::string Game(size_t header, size_t size) {
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

inline std::string ThingyTable() {
    std::string text = "/FF\n*FE\n$05=1\n8140=X\n";
    for (int code = 0x20; code < 0x7F; ++code)
        if (code != '\\') text += std::string{"0123456789ABCDEF"[code / 16], "0123456789ABCDEF"[code % 16], '=', char(code), '\n'};
    return text;
}

// Two records: "hi" at 000100h, and four "z" from 000300h on.
constexpr char kPatch[] = "PATCH\0\x01\x00\0\x02hi\0\x03\x00\0\0\0\x04zEOF";

inline Files InitialFiles() {
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

inline const fs::path& PrivateFolder() {
    static const fs::path folder = ScratchName("-command-line");
    return folder;
}

// Makes a fresh private folder, removed when the fuzzer ends.
inline bool MakePrivateFolder() {
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
// created is removed, every input rewritten, the bitmap and the PNG sheet drawn again.
inline bool RestoreFolder(const Files& files) {
    std::error_code error;
    for (const fs::directory_entry& entry : fs::directory_iterator(".", error))
        if (!files.count(entry.path().filename().string())) fs::remove_all(entry.path(), error);
    for (const auto& [name, bytes] : files)
        if (!WriteInput(name, reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size())) return false;
    static unsigned char pixels[128 * 128];
    for (size_t i = 0; i < sizeof pixels; ++i) pixels[i] = static_cast<unsigned char>(i % 13);
    return Trelvane_WriteBMP("tiles.bmp", pixels, 128, 128) == -1 &&
           Trelvane_WritePNG("tiles.png", pixels, 128, 128, nullptr, 16) == -1;
}

// The arguments behind the program name: the input's lines (or zero-separated
// parts), a part that is one control character standing for one of words;
// false for a name that could reach outside the folder (or standard input).
inline bool SplitArguments(const uint8_t* data, size_t size, std::span<const char* const> words,
                           std::vector<std::string>& arguments) {
    arguments.assign(1, "trelvane");
    std::string current;
    for (size_t i = 0; i <= size; ++i) {
        if (i < size && data[i] != '\n' && data[i] != '\0') {
            current += static_cast<char>(data[i]);
            continue;
        }
        if (current.size() == 1 && static_cast<unsigned char>(current[0]) < 0x20)
            current = words[static_cast<unsigned char>(current[0]) % words.size()];
        if (current.find_first_of("/\\") != std::string::npos || current == "." || current == ".." || current == "-")
            return false;
        arguments.push_back(current);
        current.clear();
        if (arguments.size() > kMaxArguments) return false;
    }
    return true;
}

// The process-wide state a run leaves behind goes, as at program start.
inline void ResetEngine() {
    Trelvane_FreeROM(-1);
    ResetFontSet();
    SetPointerDestination(PointerDestination());
    SetError(TLERR_NONE, "", 0, 0);
}

// Runs one input in the folder through run (a whole command line as argc,
// argv), which must return one of the two statuses.
template <typename Run>
void RunInFolder(const uint8_t* data, size_t size, std::span<const char* const> words, Run run, int success,
                 int failure) {
    static const Files files = InitialFiles();
    static const bool ready = MakePrivateFolder();
    const InsideFolder inside(PrivateFolder());
    std::vector<std::string> arguments;
    if (!ready || !inside.entered() || !SplitArguments(data, size, words, arguments) || !RestoreFolder(files)) return;
    std::vector<char*> argv;
    for (std::string& argument : arguments) argv.push_back(argument.data());
    argv.push_back(nullptr);
    ResetEngine();
    const int status = run(static_cast<int>(arguments.size()), argv.data());
    if (status != success && status != failure) __builtin_trap();
}

}  // namespace game_folder
