#include "app/command_sequences.h"
#include "app/sequence_support.h"
#include "core/path_names.h"
#include "core/text_compare.h"
#include "trelvane.h"

namespace {

bool IsIpsFile(const char* path) {
    const char* dot = LastDotOfBaseName(path);
    return dot && SameTextIgnoringCase(dot + 1, "ips");
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
    if (!IsIpsFile(patch)) return RefusePatchScript();
    if (!Trelvane_ApplyIPS(patch, line.argv[1])) return FailWithLastError();
    Trelvane_SetStringFile(patch);
    PrintMessageLine(TLMSG_PATCH_SUCCESS);
    return 0;
}
