#include "app/sequence_support.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

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

long ParseNumberArgument(const char* text) {
    size_t length = std::strlen(text);
    if (length > 0 && (text[length - 1] == 'h' || text[length - 1] == 'H'))
        return static_cast<long>(std::strtoul(text, nullptr, 16));
    return std::strtol(text, nullptr, 10);
}

const char* ExtensionDot(const char* path) {
    const char* dot = std::strrchr(path, '.');
    if (!dot || std::strpbrk(dot, "/\\")) return nullptr;
    return dot;
}

std::string IpsNameForRom(const char* rom) {
    const char* dot = ExtensionDot(rom);
    return (dot ? std::string(rom, dot) : std::string(rom)) + ".ips";
}
