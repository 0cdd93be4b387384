#include "app/command_sequences.h"
#include "app/sequence_support.h"
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

// Patch scripts have no engine in this build: one catalogue line.
int RefusePatchScript() {
    Trelvane_SetStringData(0, "Patch scripts");
    PrintMessageLine(TLERR_UNSUPPORTED);
    return -1;
}

}  // namespace

// p: argument 3 is the patch, applied to the ROM file (argument 1) on disk.
int RunPatchApply(const CommandLine& line) {
    const char* patch = line.argv[3];
    PatchApplier apply = ApplierFor(patch);
    if (!apply) return RefusePatchScript();
    if (!apply(patch, line.argv[1])) return FailWithLastError();
    Trelvane_SetStringFile(patch);
    PrintMessageLine(TLMSG_PATCH_SUCCESS);
    return 0;
}
