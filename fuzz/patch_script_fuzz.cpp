// Arbitrary patch-script text run on a Super NES image and on a Game Boy image.
// The text is on disk twice, as script.txt and as self.txt, so that it may
// .INCLUDE itself; library.txt holds a variable, a constant and a macro that
// it may include too. Each image is loaded afresh for every input (the slot
// table holds one), and the fuzz build's vector annotations report a write
// past an image's end even where it would land in spare capacity.
#include <unistd.h>

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "scratch_files.h"
#include "trelvane.h"

namespace {

constexpr int kMostFailures = 20;  // as many failed statements as the p command takes

const char kLibrary[] =
    "$counter 7E0010h\nlimit .EQL 808123h (2)\n"
    "store .MACRO\nsta ?0\nlda ?1\n.ENDM\n"
    "@put .MACRO\n.BYTE 1, 2\n.ENDM\n";

bool WriteImage(const char* name, size_t headerLength, size_t size) {
    std::vector<uint8_t> bytes(headerLength + size);
    for (size_t i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<uint8_t>(i * 13 + (i >> 8));
    return WriteInput(name, bytes.data(), bytes.size());
}

// Runs script.txt on the image as the p command would, closing it in every case.
void RunScript(const char* image) {
    const long handle = Trelvane_LoadROM(image);
    if (!handle) return;
    if (Trelvane_PatchFile_Open("script.txt"))
        for (int failures = 0; !Trelvane_PatchFile_Process() && ++failures < kMostFailures;) {
        }
    Trelvane_PatchFile_Close();
    Trelvane_FreeROM(handle);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static const std::filesystem::path folder = ScratchName("-patch");
    static bool ready = [] {
        std::error_code error;
        std::filesystem::create_directories(folder, error);
        const InsideFolder inside(folder);
        return !error && inside.entered() &&
               WriteInput("library.txt", reinterpret_cast<const uint8_t*>(kLibrary), sizeof kLibrary - 1) &&
               WriteImage("game.smc", 512, 0x10000) && WriteImage("game.gb", 0, 0x8000);
    }();
    const InsideFolder inside(folder);
    if (!ready || !inside.entered() || !WriteInput("script.txt", data, size) || !WriteInput("self.txt", data, size))
        return 0;
    RunScript("game.smc");
    RunScript("game.gb");
    return 0;
}
