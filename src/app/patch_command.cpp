#include <cstdio>
#include <vector>

#include "app/command_sequences.h"
#include "app/sequence_support.h"
#include "asm/current_patch_file.h"
#include "asm/patch_limits.h"
#include "core/path_names.h"
#include "trelvane.h"

namespace {

using PatchApplier = long (*)(const char* patch, const char* rom);

// The engine function that applies a patch file of this name, or null for
// a patch script.
PatchApplier ApplierFor(const char* path) {
    if (HasExtension(path, "ips")) return Trelvane_ApplyIPS;
    if (HasExtension(path, "bps")) return Trelvane_ApplyBPS;
    if (HasExtension(path, "ups")) return Trelvane_ApplyUPS;
    return nullptr;
}

// Prints a failed statement: the bytes of a block refused for its size, then the error.
void PrintStatementError() {
    const std::vector<unsigned char>& refused = RefusedBlockOfCurrentPatch();
    if (!refused.empty()) {
        for (unsigned char byte : refused) std::printf("%02X ", byte);
        std::printf("\n\n");
    }
    std::printf("%s\n", Trelvane_GetLastError());
}

// Runs a patch script on the ROM: failed statements are printed and the script goes on; the
// image is saved unless MAX_PATCH_ERRORS statements fail.
int RunPatchScript(const char* rom, const char* script) {
    if (!Trelvane_LoadROM(rom)) return FailWithLastError();
    if (!Trelvane_PatchFile_Open(script)) return FreeImageAndFail();
    int errors = 0;
    while (!Trelvane_PatchFile_Process()) {
        PrintStatementError();
        if (++errors == MAX_PATCH_ERRORS) {
            std::fputs("Too many errors - aborting\n", stdout);
            Trelvane_FreeROM(-1);
            return -1;
        }
    }
    Trelvane_PatchFile_Close();
    if (!Trelvane_SaveROM(rom)) return FreeImageAndFail();
    Trelvane_FreeROM(-1);
    if (errors > 0) return 0;
    Trelvane_SetStringFile(script);
    PrintMessageLine(TLMSG_PATCH_SUCCESS);
    return 0;
}

}  // namespace

// p: argument 3 is the patch, applied to the ROM file (argument 1) on disk.
int RunPatchApply(const CommandLine& line) {
    const char* patch = line.argv[3];
    PatchApplier apply = ApplierFor(patch);
    if (!apply) return RunPatchScript(line.argv[1], patch);
    if (!apply(patch, line.argv[1])) return FailWithLastError();
    Trelvane_SetStringFile(patch);
    PrintMessageLine(TLMSG_PATCH_SUCCESS);
    return 0;
}
