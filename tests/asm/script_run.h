// Runs patch-script text on an in-memory Super NES image and records what the
// statements did: the bytes of the image and the message of every failure.
#pragma once

#include <string>
#include <vector>

#include "asm/patch_file.h"
#include "asm/statement_kinds.h"
#include "asm/statements.h"
#include "trelvane.h"

using Bytes = std::vector<unsigned char>;

inline constexpr int SCRIPT_IMAGE_SIZE = 0x20000;

struct ScriptRun {
    Bytes image;
    std::vector<std::string> errors;
    std::vector<int> kinds;  // the result of every statement, TOKEN_END last
    std::vector<Bytes> refusedBlocks;  // the bytes of every block refused for its size

    // The image bytes at [position, position + count).
    Bytes At(int position, int count) const {
        return Bytes(image.begin() + position, image.begin() + position + count);
    }
};

// Runs text to its end (continuing after failures, at most 20000 statements) on a zeroed image.
inline ScriptRun RunScript(const std::string& text, int romType = ROM_SNES, int imageSize = SCRIPT_IMAGE_SIZE) {
    ScriptRun run;
    run.image.assign(static_cast<size_t>(imageSize), 0);
    PatchFile patch(romType, run.image.data(), imageSize);
    patch.OpenText("t.asm", text.c_str());
    for (int i = 0; i < 20000; ++i) {
        const int kind = ParseStatement(patch);
        run.kinds.push_back(kind);
        if (kind == 0) run.errors.push_back(patch.error.Text());
        if (kind == 0 && !patch.error.RefusedBlock().empty()) run.refusedBlocks.push_back(patch.error.RefusedBlock());
        if (kind == TOKEN_END) break;
    }
    return run;
}

// The bytes of a block assembled at 8000h from text.
inline Bytes Assemble(const std::string& text, int count) {
    return RunScript(".ADDRESS 8000h\n" + text).At(0x8000, count);
}
