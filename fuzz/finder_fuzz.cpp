// Arbitrary bytes as a game image: the pointer-table finder from an address
// the input names, reads through the table found and through a table the
// input describes, and the three searches for a pattern taken from the input.
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>

#include "scratch_files.h"
#include "trelvane.h"

namespace {

void ReadThroughTable(PointerTable& table) {
    Trelvane_AdjustPointerTable(1, &table);
    for (long index : {0L, 1L, 5L, static_cast<long>(table.count) - 1, static_cast<long>(table.count)})
        Trelvane_GetPointer(1, &table, index);
}

void SearchAll(const uint8_t* data, size_t size) {
    std::string pattern(reinterpret_cast<const char*>(data), size < 6 ? size : 6);
    long length = static_cast<long>(pattern.size());
    for (auto search : {Trelvane_Locate, Trelvane_LocateWide, Trelvane_LocateRelative})
        for (int i = 0; i < 4 && search(pattern.data(), length); ++i) {
        }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static const std::string table = ScratchName("-game.tbl");
    static bool ready = [] {
        std::string text = "/FF\n*FE\n";
        for (int code = 0x20; code < 0x7F; ++code) text += std::to_string(code / 16) + "0123456789ABCDEF"[code % 16] + "=x\n";
        return WriteInput(table, reinterpret_cast<const uint8_t*>(text.data()), text.size()) &&
               Trelvane_LoadFont(table.c_str()) == 1;
    }();
    if (!ready || !LoadScratchImage(data, size)) return 0;
    int32_t start = size ? ReadInt(data, size, 0) % static_cast<int32_t>(size) : 0;
    if (PointerTable* found = Trelvane_FindPointerTable(1, start < 0 ? -start : start)) {
        ReadThroughTable(*found);
        std::free(found);
    }
    PointerTable given{};
    given.low = ReadInt(data, size, 4) % 64;
    given.high = ReadInt(data, size, 8) % 64;
    given.bank = ReadInt(data, size, 12) % 64;
    given.size = ReadInt(data, size, 16) % 8;
    given.frequency = ReadInt(data, size, 20) % 20;
    given.base = ReadInt(data, size, 24);
    given.table = ReadInt(data, size, 28);
    ReadThroughTable(given);
    SearchAll(data, size);
    Trelvane_FreeROM(-1);
    return 0;
}
