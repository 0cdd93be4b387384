#include "asm/current_patch_file.h"

#include <memory>

#include "core/last_error.h"
#include "core/rom_slots.h"
#include "asm/patch_file.h"
#include "asm/patch_messages.h"
#include "asm/statements.h"
#include "trelvane.h"

namespace {

std::unique_ptr<PatchFile> currentPatch;
uint64_t patchedLoad = 0;  // the load of the image the patch file writes into

}  // namespace

const std::vector<unsigned char>& RefusedBlockOfCurrentPatch() {
    static const std::vector<unsigned char> none;
    return currentPatch ? currentPatch->error.RefusedBlock() : none;
}

extern "C" {

long Trelvane_PatchFile_Open(const char* file) {
    currentPatch.reset();  // a failed open leaves nothing open
    if (!RequireCurrentRom()) return 0;
    const RomImage& image = CurrentRom();
    currentPatch = std::make_unique<PatchFile>(image.type, image.data, image.size);
    patchedLoad = image.load;
    if (!file) file = "";
    if (currentPatch->Open(file)) return 1;
    currentPatch.reset();
    return SetError(TLERR_FILE_NOREAD, file, 0, 0);
}

long Trelvane_PatchFile_Process(void) {
    if (!currentPatch) return SetError(TLERR_NESTED, MSG_NO_PATCH_FILE, 0, 0);
    if (CurrentRom().load != patchedLoad) return SetError(TLERR_PATCH_IMAGE_GONE, "", 0, 0);
    for (;;) {
        const int32_t kind = ParseStatement(*currentPatch);
        if (kind == TOKEN_END) return 1;
        if (kind == 0) return SetError(TLERR_NESTED, currentPatch->error.Text(), 0, 0);
    }
}

void Trelvane_PatchFile_Close(void) { currentPatch.reset(); }

}  // extern "C"
