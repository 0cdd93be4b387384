// Arbitrary images and pointer-table parameters through the dump of the d and
// x commands: with a table found from an address, one given by hand, or none,
// the text written stays within what its header and strings can fill.
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>

#include "app/script_dump.h"
#include "every_kind_font.h"
#include "scratch_files.h"
#include "table/font_set.h"
#include "trelvane.h"

namespace {

// The input's first twelve bytes: how the table is found and which font
// decodes, the text address or table offset, pointer size and frequency, and
// the count of strings (0 takes the table's own, as the commands do).
constexpr size_t kParameterBytes = 12;

// Every entry line, comment and end line: a decoded string fills at most the
// decoder's area, and each of its characters takes at most four bytes (a
// line feed becomes "\r\n; ").
constexpr size_t kHeaderBound = 256;
constexpr size_t kEntryBound = 32 + 4 * DECODER_AREA_SIZE;
constexpr long kMaxCount = 0x10000;

const char kTableFile[] = "game.tbl";
const std::string kLoadLine = std::string("load \"") + kTableFile + "\"\r\n";

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static bool built = [] { return BuildEveryKindFont(0) == 1 && BuildEveryKindFont(FONT_RULE_ROMANJI) == 2; }();
    if (!built || size < kParameterBytes) return 0;
    const bool givenByHand = data[0] & 1;
    const long fontId = 1 + (data[0] >> 1 & 1);
    const long address = ReadInt(data, size, 1);
    PointerTable given{};
    given.table = static_cast<int32_t>(address);
    given.size = static_cast<int8_t>(data[5]);
    given.frequency = static_cast<int8_t>(data[6]);
    given.base = ReadInt(data, size, 7);
    long count = data[11] % 64;
    data += kParameterBytes;
    size -= kParameterBytes;
    if (!LoadScratchImage(data, size)) return 0;

    PointerTable* found = nullptr;
    const PointerTable* table = nullptr;
    if (givenByHand) {
        if (given.size < 1 || given.size > 4 || given.frequency < 1) return 0;  // the x command refuses these
        Trelvane_AdjustPointerTable(fontId, &given);
        table = &given;
    } else {
        table = found = Trelvane_FindPointerTable(fontId, address);
    }
    if (count == 0 && table) count = table->count < kMaxCount ? table->count : kMaxCount;
    const std::string dump = FormatScriptDump(DumpRequest{fontId, table, count, address, kTableFile, ""});
    std::free(found);
    if (dump.compare(0, kLoadLine.size(), kLoadLine) != 0 ||
        dump.size() > kHeaderBound + static_cast<size_t>(count) * kEntryBound)
        __builtin_trap();
    return 0;
}
