#include "app/sequence_support.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "core/number_text.h"
#include "core/path_names.h"
#include "table/table_reader.h"
#include "trelvane.h"

int FailWithLastError() {
    if (const char* table = UnopenedTableFile()) std::printf("loadFile failed on '%s'\n", table);
    std::printf("%s\n", Trelvane_GetLastError());
    return -1;
}

int FreeImageAndFail() {
    Trelvane_FreeROM(-1);
    return FailWithLastError();
}

void PrintMessageLine(int id) { std::printf("%s\n", Trelvane_GetString(id)); }

int64_t ParseNumberArgument(const char* text) {
    int64_t value = 0;
    ReadNumberText(text, value);
    return value;
}

std::string IpsNameForRom(const char* rom) {
    const char* dot = LastDotOfBaseName(rom);
    return (dot ? std::string(rom, dot) : std::string(rom)) + ".ips";
}
