#include "app/sequence_support.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "core/path_names.h"
#include "core/text_compare.h"
#include "trelvane.h"

int FailWithLastError() {
    std::printf("%s\n", Trelvane_GetLastError());
    return -1;
}

int FreeImageAndFail() {
    Trelvane_FreeROM(-1);
    return FailWithLastError();
}

void PrintMessageLine(int id) { std::printf("%s\n", Trelvane_GetString(id)); }

int64_t ParseNumberArgument(const char* text) {
    size_t length = std::strlen(text);
    if (length > 0 && (text[length - 1] == 'h' || text[length - 1] == 'H'))
        return static_cast<int64_t>(std::strtoull(text, nullptr, 16));
    return std::strtoll(text, nullptr, 10);
}

std::string IpsNameForRom(const char* rom) {
    const char* dot = LastDotOfBaseName(rom);
    return (dot ? std::string(rom, dot) : std::string(rom)) + ".ips";
}

bool HasExtension(const char* path, const char* extension) {
    const char* dot = LastDotOfBaseName(path);
    return dot && SameTextIgnoringCase(dot + 1, extension);
}
