#include "asm/patch_file.h"

#include <cstring>

#include "asm/patch_lexicon.h"

PatchFile::PatchFile(int32_t romType, unsigned char* data, int32_t size) : cpu(MakeCpuDescription(romType)) {
    reader.SetAutomaton(std::strcmp(cpu->Name(), "65816") == 0 ? &Lexicon65816() : &GenericLexicon());
    cpu->SetMemory(data, size);
}

bool PatchFile::Open(const char* name) {
    if (!reader.Open(name, "")) return false;
    files.Start(name);
    return true;
}

void PatchFile::OpenText(const char* name, const char* text) {
    reader.OpenText(name, text);
    files.Start(name);
}

bool CompilePendingBlock(PatchFile& patch) {
    return CompileBlock(patch.block, patch.labels, patch.place, *patch.cpu, patch.error);
}
