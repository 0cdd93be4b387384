// Compiling the pending block into the image.
#pragma once

struct PatchFile;

// Lays out the pending block at the block address, resolves its branches and pointers and copies
// the bytes into the image. Empties the block and resets the label table in every case.
bool CompileBlock(PatchFile& patch);
