// trelvane tiles export|import: tile graphics to and from PNG and BMP
// sheets, tile k at row-major position k, 16 tiles a row on export.
#include <cstdio>
#include <memory>
#include <vector>

#include "core/rom_slots.h"
#include "gfx/tile_codec.h"
#include "trelvane.h"
#include "verbs/tile_sheet.h"
#include "verbs/verb_image.h"
#include "verbs/verb_list.h"

namespace {

struct TilesOptions {
    std::string image;
    std::string address;
    std::string format;
    std::string count;
    std::string sheet;
    std::string output;
    std::string palette;
};

// --format, or the usual format of the current image's system.
const TileFormat* VerbTileFormat(const CLI::App& verb, const TilesOptions& options) {
    const char* usual = TileFormatForRomType(CurrentRom().type);
    const std::string name = options.format.empty() && usual ? usual : options.format;
    const TileFormat* format = FindTileFormat(name.c_str());
    if (!format) VerbError(verb, "unknown tile format '" + name + "' (NES, SNES2, SNES, GB1, GB)");
    return format;
}

// The address and the number of tiles, checked against the current image:
// every tile must lie wholly inside it.
bool TileRange(const CLI::App& verb, const TilesOptions& options, const TileFormat* format, long count, TileRun& run) {
    run.format = format;
    run.address = NumberValue(options.address);
    run.count = count;
    if (count < 1 || !RomRangeInside(run.address, int64_t{count} * run.format->BytesPerTile()))
        return VerbError(verb, std::to_string(count) + " tiles of " + run.format->name + " at " + options.address +
                                   " do not lie inside the image (" + std::to_string(CurrentRom().size) + " bytes)"),
               false;
    return true;
}

int RunExport(const CLI::App& verb, const TilesOptions& options) {
    SheetPalette palette;
    TileRun run;
    if (!ReadSheetPalette(verb, options.palette, options.output, palette) || !LoadVerbImage(verb, options.image))
        return 1;
    const TileFormat* format = VerbTileFormat(verb, options);
    if (!format || !TileRange(verb, options, format, static_cast<long>(NumberValue(options.count)), run)) return 1;
    TileSheet sheet = SheetFor(run.count);
    DecodeTileRun(run, sheet);
    if (!WriteTileSheet(verb, options.output, sheet, palette, run)) return 1;
    std::printf("%s: %ld tiles of %s from %06llXh\n", options.output.c_str(), run.count, run.format->name,
                static_cast<unsigned long long>(run.address));
    return 0;
}

int RunImport(const CLI::App& verb, const TilesOptions& options) {
    SheetPalette palette;
    TileSheet sheet;
    TileRun run;
    if (!ReadSheetPalette(verb, options.palette, options.sheet, palette) || !LoadVerbImage(verb, options.image))
        return 1;
    const TileFormat* format = VerbTileFormat(verb, options);
    if (!format || !ReadTileSheet(verb, options.sheet, *format, palette, sheet)) return 1;
    const long held = sheet.TileCount();
    const long count = options.count.empty() ? held : static_cast<long>(NumberValue(options.count));
    if (count > held)
        return VerbError(verb, options.sheet + " holds " + std::to_string(held) + " tiles, not " + options.count);
    if (!TileRange(verb, options, format, count, run)) return 1;
    EncodeTileRun(run, sheet);
    const std::string target = options.output.empty() ? options.image : options.output;
    if (!SaveVerbImage(verb, options.image, target)) return 1;
    std::printf("%s: %ld tiles of %s written at %06llXh\n", target.c_str(), run.count, run.format->name,
                static_cast<unsigned long long>(run.address));
    return 0;
}

void AddShared(CLI::App& command, TilesOptions& options) {
    command.add_option("--format", options.format, "Tile format: NES, SNES2, SNES, GB1, GB (default: the system's)");
    command.add_option("--palette", options.palette, "PNG palette: a raw file of RGB triplets (default: greys)");
}

}  // namespace

Verb AddTilesVerb(CLI::App& app) {
    CLI::App* verb = app.add_subcommand("tiles", "Export tile graphics to PNG or BMP and import them back");
    verb->require_subcommand(1);
    auto exportOptions = std::make_shared<TilesOptions>();
    CLI::App* exporter = verb->add_subcommand("export", "Write tiles of the image as a sheet, 16 tiles a row");
    exporter->add_option("IMAGE", exportOptions->image, "ROM image")->required();
    exporter->add_option("ADDRESS", exportOptions->address, "Offset of the first tile")->required()->check(NumberArgument());
    exporter->add_option("--count", exportOptions->count, "Number of tiles")->required()->check(NumberArgument());
    exporter->add_option("-o,--output", exportOptions->output, "Sheet to write (.png or .bmp)")->required();
    AddShared(*exporter, *exportOptions);
    auto importOptions = std::make_shared<TilesOptions>();
    CLI::App* importer = verb->add_subcommand("import", "Write the tiles of a sheet into the image, and nothing else");
    importer->add_option("IMAGE", importOptions->image, "ROM image")->required();
    importer->add_option("FILE", importOptions->sheet, "Sheet to read (.png or .bmp)")->required();
    importer->add_option("ADDRESS", importOptions->address, "Offset of the first tile")->required()->check(NumberArgument());
    importer->add_option("--count", importOptions->count, "Import only the first N tiles")->check(NumberArgument());
    importer->add_option("-o,--output", importOptions->output, "Write the changed image here instead of in place");
    AddShared(*importer, *importOptions);
    return Verb{verb, [verb, exporter, exportOptions, importOptions] {
                    return exporter->parsed() ? RunExport(*verb, *exportOptions) : RunImport(*verb, *importOptions);
                }};
}
