#include "asm/patch_file.h"

#include <cstdarg>
#include <cstdio>
#include <cstring>

#include "core/last_error.h"
#include "core/rom_slots.h"
#include "asm/patch_lexicon.h"
#include "asm/statements.h"
#include "trelvane.h"

PatchFile::PatchFile(int32_t romType, unsigned char* data, int32_t size) : cpu(MakeCpuDescription(romType)) {
    reader.SetAutomaton(std::strcmp(cpu->Name(), "65816") == 0 ? &Lexicon65816() : &GenericLexicon());
    cpu->SetMemory(data, size);
}

bool PatchFile::Open(const char* name) {
    if (!reader.Open(name, "")) return false;
    openFiles.assign(1, name);
    return true;
}

void PatchFile::OpenText(const char* name, const char* text) {
    reader.OpenText(name, text);
    openFiles.assign(1, name);
}

namespace {

// Writes the formatted text at the message's end, cut at its size.
void AppendFormatted(PatchFile& patch, const char* format, va_list values) {
    const size_t used = std::strlen(patch.message);
    std::vsnprintf(patch.message + used, sizeof patch.message - used, format, values);
}

}  // namespace

void SetMessagePrefix(PatchFile& patch, const char* file, int line, int column) {
    std::snprintf(patch.message, sizeof patch.message, PATCH_POSITION, file, line, column);
}

int AppendMessage(PatchFile& patch, const char* format, ...) {
    va_list values;
    va_start(values, format);
    AppendFormatted(patch, format, values);
    va_end(values);
    return 0;
}

int ReportAt(PatchFile& patch, const char* file, int line, int column, const char* format, ...) {
    SetMessagePrefix(patch, file, line, column);
    va_list values;
    va_start(values, format);
    AppendFormatted(patch, format, values);
    va_end(values);
    return 0;
}

int Report(PatchFile& patch, const char* format, ...) {
    SetMessagePrefix(patch, patch.reader.FileName(), patch.reader.TokenLine(), patch.reader.TokenColumn());
    va_list values;
    va_start(values, format);
    AppendFormatted(patch, format, values);
    va_end(values);
    return 0;
}

int ReportExpected(PatchFile& patch, const char* expected) {
    return Report(patch, MSG_EXPECTED, expected, patch.reader.TokenText());
}

int ReportInvalidOperand(PatchFile& patch) { return Report(patch, MSG_INVALID_OPERAND, patch.reader.TokenText()); }

int ReportAlreadyDefined(PatchFile& patch, const char* kind, const char* name) {
    return Report(patch, MSG_ALREADY_DEFINED, kind, name);
}

int ReportNotImplemented(PatchFile& patch, const char* first, const char* second) {
    return Report(patch, MSG_NOT_IMPLEMENTED, first, second);
}

int ReportTooMany(PatchFile& patch, const char* table, int limit) { return Report(patch, MSG_TOO_MANY, table, limit); }

namespace {

std::unique_ptr<PatchFile> currentPatch;

}  // namespace

extern "C" {

long Trelvane_PatchFile_Open(const char* file) {
    if (!RequireCurrentRom()) return 0;
    const RomImage& image = CurrentRom();
    currentPatch = std::make_unique<PatchFile>(image.type, image.data, image.size);
    if (!file) file = "";
    if (!currentPatch->Open(file)) return SetError(TLERR_FILE_NOREAD, file, 0, 0);
    return 1;
}

long Trelvane_PatchFile_Process(void) {
    if (!currentPatch) return SetError(TLERR_NESTED, MSG_NO_PATCH_FILE, 0, 0);
    for (;;) {
        const int32_t kind = ParseStatement(*currentPatch);
        if (kind == TOKEN_END) return 1;
        if (kind == 0) return SetError(TLERR_NESTED, currentPatch->message, 0, 0);
    }
}

void Trelvane_PatchFile_Close(void) { currentPatch.reset(); }

}  // extern "C"
