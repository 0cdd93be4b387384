#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "app/command_sequences.h"
#include "app/script_dump.h"
#include "app/sequence_support.h"
#include "trelvane.h"

namespace {

// Loads the image (argument 1) and the character table (argument 3).
bool LoadImageAndTable(const CommandLine& line) {
    return Trelvane_LoadROM(line.argv[1]) && Trelvane_LoadFont(line.argv[3]);
}

// The count argument at position `at` when it is the last argument, else 0.
// Entry numbers have four hex digits, so a larger count is cut to 65536.
long CountArgument(const CommandLine& line, int at) {
    constexpr long kMaxCount = 0x10000;
    if (line.argc != at + 1) return 0;
    int64_t count = ParseNumberArgument(line.argv[at]);
    if (count < 0) return 0;
    return count > kMaxCount ? kMaxCount : static_cast<long>(count);
}

DumpRequest MakeRequest(const CommandLine& line, const PointerTable* table, long count) {
    return DumpRequest{line.fontId, table, count, static_cast<long>(ParseNumberArgument(line.argv[5])), line.argv[3],
                       line.argv[4]};
}

// A pointer table given by hand must lie at an offset, and have a size of 1 to
// 4 bytes and a number of strings per pointer, that the 32-bit fields of the
// record hold: anything else is refused as not supported, never cut down.
bool CheckTableShape(int64_t table, int64_t size, int64_t frequency) {
    std::string what;
    if (table < INT32_MIN || table > INT32_MAX) what = "Pointer table " + std::to_string(table);
    else if (size < 1 || size > 4) what = "Pointer size " + std::to_string(size);
    else if (frequency < 1 || frequency > INT32_MAX) what = "Pointer frequency " + std::to_string(frequency);
    else return true;
    Trelvane_SetStringData(0, what.c_str());
    PrintMessageLine(TLERR_UNSUPPORTED);
    return false;
}

// A text address wider than 32 bits is refused as not supported, never cut
// down to the 32 bits of the engine's addresses.
bool CheckTextAddress(int64_t address) {
    if (address >= 0 && address <= UINT32_MAX) return true;
    Trelvane_SetStringData(0, ("Text address " + std::to_string(address)).c_str());
    PrintMessageLine(TLERR_UNSUPPORTED);
    return false;
}

}  // namespace

int RunScriptDump(const CommandLine& line) {
    if (!CheckTextAddress(ParseNumberArgument(line.argv[5]))) return -1;
    if (!LoadImageAndTable(line)) return FailWithLastError();
    long count = CountArgument(line, 6);
    std::printf("%s ", Trelvane_GetString(TLMSG_PTABLE_SEARCHING));
    PointerTable* table = Trelvane_FindPointerTable(line.fontId, ParseNumberArgument(line.argv[5]));
    PrintMessageLine(table ? TLMSG_PTABLE_FOUND : TLMSG_PTABLE_NOTFOUND);
    if (!table && count == 0) {
        PrintMessageLine(TLERR_TABLE_OR_COUNT);
        Trelvane_FreeROM(-1);
        return -1;
    }
    int status = DumpScript(MakeRequest(line, table, count ? count : table->count));
    std::free(table);
    return status;
}

int RunPointerDump(const CommandLine& line) {
    int64_t offset = ParseNumberArgument(line.argv[5]);
    int64_t size = ParseNumberArgument(line.argv[6]);
    int64_t frequency = ParseNumberArgument(line.argv[7]);
    if (!CheckTableShape(offset, size, frequency)) return -1;
    if (!LoadImageAndTable(line)) return FailWithLastError();
    PointerTable table{};
    table.table = static_cast<int>(offset);
    table.size = static_cast<int>(size);
    table.frequency = static_cast<int>(frequency);
    long count = CountArgument(line, 8);
    Trelvane_AdjustPointerTable(line.fontId, &table);
    return DumpScript(MakeRequest(line, &table, count ? count : table.count));
}
