#include "app/tile_commands.h"

#include "app/command_sequences.h"
#include "app/sequence_support.h"
#include "core/path_names.h"
#include "core/rom_formats.h"
#include "gfx/tile_codec.h"
#include "trelvane.h"

namespace {

constexpr long kSheetSide = 128;  // the dump is a sheet of 16 x 16 tiles

// Argument 5 when given, otherwise the format the ROM's extension implies.
const char* TileFormatArgument(const CommandLine& line) {
    return line.argc >= 6 ? line.argv[5] : TileFormatForRomName(line.argv[1]);
}

}  // namespace

const char* TileFormatForRomName(const char* romName) {
    const char* dot = LastDotOfBaseName(romName);
    const RomFormat* romFormat = dot ? FindRomFormat(dot + 1) : nullptr;
    const char* format = romFormat ? TileFormatForRomType(romFormat->type) : nullptr;
    return format ? format : "???";
}

int RunTilesInsert(const CommandLine& line) {
    const char* format = TileFormatArgument(line);
    static unsigned char pixels[TRELVANE_BMP_MAX_PIXELS];
    long width = 0, height = 0;
    if (!Trelvane_LoadBMP(line.argv[4], pixels, &width, &height)) return FailWithLastError();
    const long address = ParseNumberArgument(line.argv[3]);
    if (!Trelvane_LoadROM(line.argv[1])) return FailWithLastError();
    if (!Trelvane_EncodeTiles(pixels, width, height, address, (width / 8) * (height / 8), format) ||
        !Trelvane_SaveROM(line.argv[1]))
        return FreeImageAndFail();
    Trelvane_FreeROM(-1);
    Trelvane_SetStringFile(line.argv[4]);
    PrintMessageLine(TLMSG_TILES_SUCCESS);
    return 0;
}

int RunTilesDump(const CommandLine& line) {
    const char* format = TileFormatArgument(line);
    static unsigned char pixels[kSheetSide * kSheetSide];
    if (!Trelvane_LoadROM(line.argv[1])) return FailWithLastError();
    const long address = ParseNumberArgument(line.argv[3]);
    if (!Trelvane_DecodeTiles(pixels, kSheetSide, kSheetSide, address, format) ||
        !Trelvane_WriteBMP(line.argv[4], pixels, kSheetSide, kSheetSide))
        return FreeImageAndFail();
    Trelvane_FreeROM(-1);
    return 0;
}
