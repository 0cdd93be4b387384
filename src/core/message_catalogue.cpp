#include "core/message_catalogue.h"

#include "core/last_error.h"
#include "trelvane.h"

namespace {

struct CatalogueEntry {
    int id;
    const char* name;  // null for the entries a message file names by number
    const char* text;  // null for TLERR_NESTED, whose text is the file field
};

constexpr CatalogueEntry kCatalogue[] = {
    {TLERR_NONE, "TLERR_NONE", "No errors occurred."},
    {TLERR_FILE_NOEXT, "TLERR_FILE_NOEXT", "You must specify an extension on [file]."},
    {TLERR_FILE_BADEXT, "TLERR_FILE_BADEXT", "Unknown file type: [data0]."},
    {TLERR_FILE_TOOMANY, "TLERR_FILE_TOOMANY", "Error opening [file]: Too many [data0] open."},
    {TLERR_FILE_NOREAD, "TLERR_FILE_NOREAD", "Error opening [file]."},
    {TLERR_FILE_NOWRITE, "TLERR_FILE_NOWRITE", "Error opening [file] for writing."},
    {TLERR_FILE_NOCREATE, "TLERR_FILE_NOCREATE", "Error creating [file]."},
    {TLERR_FILE_INVALID, "TLERR_FILE_INVALID", "[file] does not seem to be a valid [data0]."},
    {TLERR_FILE_TOOLARGE, "TLERR_FILE_TOOLARGE", "[file] is larger than [data0]."},
    {TLERR_FILE_SAME, "TLERR_FILE_SAME", "Output [file] is the same file as input [data0]."},
    {TLERR_NULL_ARGUMENT, "TLERR_NULL_ARGUMENT", "[data0]: [data1] is a null pointer."},
    {TLERR_NUMBER_BAD, "TLERR_NUMBER_BAD", "'[data0]' is not a number: write 10976, 0x2AE0, $2AE0 or 2AE0h."},
    {TLERR_PICTURE_COLOURS, "TLERR_PICTURE_COLOURS",
     "[file]: the colour [data0] is not in the palette, and the picture has no palette of at most 16 colours to "
     "read it by."},
    {TLERR_PICTURE_PIXEL, "TLERR_PICTURE_PIXEL", "[file]: pixel value [data0] is beyond the [data1] colours of the palette."},
    {TLERR_ID_BAD, "TLERR_ID_BAD", "Invalid [data0] ID: [data1]"},
    {TLERR_FORMAT_BAD, "TLERR_FORMAT_BAD", "Unknown format: [data0]"},
    {TLERR_EXPECTED, "TLERR_EXPECTED", "[file]:[line],[column]:Expected '[data0]', found '[data1]'."},
    {TLERR_NOENCODE, "TLERR_NOENCODE", "Unable to encode: [data0]"},
    {TLERR_UNSUPPORTED, "TLERR_UNSUPPORTED", "[data0] not supported."},
    {TLERR_UNSPECIFIED, "TLERR_UNSPECIFIED", "[file]:[data0] unspecified."},
    {TLERR_UNKNOWN, "TLERR_UNKNOWN", "[file]:[line],[column]:Unknown command: [data0]"},
    {TLWRN_OBSOLETE, "TLWRN_OBSOLETE", "[file]:[line],[column]:Obsolete command: [data0]"},
    {TLERR_NESTED, "TLERR_NESTED", nullptr},
    {TLERR_NO_TERMINALS, "TLERR_NO_TERMINALS", "[file] contains no terminal codes."},
    {TLERR_TABLE_OR_COUNT, "TLERR_TABLE_OR_COUNT", "Cannot dump script without pointer table unless count specified."},
    {TLERR_PATCH_IMAGE_GONE, "TLERR_PATCH_IMAGE_GONE", "The ROM image of the open patch file was freed or replaced."},
    {TLERR_ASM_SOURCE, "TLERR_ASM_SOURCE", "[file]:[line]:[column]: [data0]"},
    {TLERR_IPS_IDENTICAL, "TLERR_IPS_IDENTICAL", "Files identical. IPS not created."},
    {TLERR_IPS_NO_EOF, "TLERR_IPS_NO_EOF", "EOF not found at block marker in [file]."},
    {TLERR_DELTA_WRONG_ROM, "TLERR_DELTA_WRONG_ROM",
     "Wrong ROM: [file] has CRC-32 [data1], the patch expects [data0]."},
    {TLERR_DELTA_WRONG_ROM_EITHER_WAY, "TLERR_DELTA_WRONG_ROM_EITHER_WAY",
     "Wrong ROM: [file] has CRC-32 [data2], the patch expects [data0] (or [data1] to undo it)."},
    {TLERR_DELTA_PATCH_CRC, "TLERR_DELTA_PATCH_CRC",
     "[file] is damaged: its CRC-32 is [data1], its footer says [data0]."},
    {TLERR_DELTA_TRUNCATED, "TLERR_DELTA_TRUNCATED", "[file] is damaged: the entry at offset [data0] is cut short."},
    {TLERR_DELTA_OVERFLOW, "TLERR_DELTA_OVERFLOW", "[file] is damaged: the number at offset [data0] is too large."},
    {TLERR_DELTA_OUT_OF_BOUNDS, "TLERR_DELTA_OUT_OF_BOUNDS",
     "[file] is damaged: the action at offset [data0] reaches outside the files."},
    {TLERR_DELTA_TRAILING, "TLERR_DELTA_TRAILING",
     "[file] is damaged: bytes follow its last action, from offset [data0]."},
    {TLERR_DELTA_INCOMPLETE, "TLERR_DELTA_INCOMPLETE",
     "[file] is damaged: its actions make [data1] of the [data0] bytes it promises."},
    {TLERR_DELTA_RESULT_CRC, "TLERR_DELTA_RESULT_CRC",
     "[file] is damaged: the patched file has CRC-32 [data1], the patch expects [data0]."},
    {TLERR_DELTA_TOO_LARGE, "TLERR_DELTA_TOO_LARGE",
     "[file]: a file of [data1] bytes is too large (at most [data0])."},
    {TLERR_PATCH_OVERLAP, "TLERR_PATCH_OVERLAP",
     "[data0] and [file] change the same bytes differently, first at offset [data1]."},
    {TLERR_PATCH_UNKNOWN_FORMAT, "TLERR_PATCH_UNKNOWN_FORMAT", "[file] is not an IPS, BPS or UPS patch."},
    {TLERR_PATCH_NO_HEADER, "TLERR_PATCH_NO_HEADER",
     "[file] has no 512-byte copier header to take off ([data0] bytes)."},
    {TLERR_IPS_TOO_LARGE, "TLERR_IPS_TOO_LARGE",
     "[file] has [data0] bytes: an IPS patch cannot describe files over 16 MiB (16777216 bytes)."},
    {TLERR_TEXT_NOENCODE, "TLERR_TEXT_NOENCODE", "[file]:[line],[column]:Unable to encode: [data0]"},
    {TLERR_TEXT_TOOMUCH, "TLERR_TEXT_TOOMUCH", "[file]:Too much space used - [data0]/[data1] ([data2])"},
    {TLMSG_TEXT_INSERTED, "TLMSG_TEXT_INSERTED", "[file]:[data3] strings - [data0]/[data1] ([data2])"},
    {TLERR_TEXT_PARAMCOUNT, "TLERR_TEXT_PARAMCOUNT", "[file]:[line],[column]:Unsupported data length:[data0]"},
    {TLERR_POINTER_FORM, "TLERR_POINTER_FORM", "Pointer form: [data0]"},
    {TLERR_POINTER_OUTSIDE, "TLERR_POINTER_OUTSIDE", "Pointer [data0] at [data1] addresses no byte of the image."},
    {TLERR_POINTER_UNREACHABLE, "TLERR_POINTER_UNREACHABLE",
     "Entry [data0]: a pointer at [data1] cannot address offset [data2]."},
    {TLERR_SCRIPT_OVERFLOW, "TLERR_SCRIPT_OVERFLOW",
     "[file]: entry [data0] does not fit: [data1] more bytes needed than the text regions hold."},
    {TLERR_SCRIPT_FIXED_TOO_LONG, "TLERR_SCRIPT_FIXED_TOO_LONG",
     "[file]: entry [data0] is [data1] bytes longer than its place."},
    {TLERR_SCRIPT_HEADER, "TLERR_SCRIPT_HEADER", "[file]:[line],[column]:[data0]"},
    {TLMSG_SCRIPT_INSERTED, "TLMSG_SCRIPT_INSERTED", "[file]:[data0] strings - [data1]/[data2] bytes"},
    {TLERR_SCRIPT_NO_PLACE, "TLERR_SCRIPT_NO_PLACE", "[file]: entry [data0] has no original place: [data1]"},
    {TLERR_REGION_OUTSIDE, "TLERR_REGION_OUTSIDE", "[file]: text region [data0] lies outside the image."},
    {TLMSG_USAGE_USAGE, "TLMSG_USAGE_USAGE", "usage"},
    {TLMSG_USAGE_VALID_CMDS, "TLMSG_USAGE_VALID_CMDS", "valid command/parameters are:"},
    {TLMSG_USAGE_TILES_INSERT, "TLMSG_USAGE_TILES_INSERT", "insert tile graphics"},
    {TLMSG_USAGE_TILES_DUMP, "TLMSG_USAGE_TILES_DUMP", "bmp tile graphics dump"},
    {TLMSG_USAGE_THINGY_CONVERT, "TLMSG_USAGE_THINGY_CONVERT",
     "convert thingy table to trelvane file, <rom> = thingy table"},
    {TLMSG_USAGE_STRING_LOCATE, "TLMSG_USAGE_STRING_LOCATE", "locate string"},
    {TLMSG_USAGE_SCRIPT_INSERT, "TLMSG_USAGE_SCRIPT_INSERT", "insert script"},
    {TLMSG_USAGE_SCRIPT_DUMP, "TLMSG_USAGE_SCRIPT_DUMP", "dump script"},
    {MSG_USAGE_POINTER_DUMP, nullptr, "pointer dump"},
    {TLMSG_USAGE_IPS_CREATE, "TLMSG_USAGE_IPS_CREATE", "create ips file"},
    {TLMSG_USAGE_PATCH_APPLY, "TLMSG_USAGE_PATCH_APPLY", "apply patch file"},
    {TLMSG_USAGE_FONT_ID, "TLMSG_USAGE_FONT_ID", "where # is the font ID to use (1 if unspecified)"},
    {TLERR_USAGE_BADCOMMAND, "TLERR_USAGE_BADCOMMAND", "Unknown command: [data0]"},
    {TLMSG_PARAM_ADDRESS, "TLMSG_PARAM_ADDRESS", "address"},
    {TLMSG_PARAM_COUNT, "TLMSG_PARAM_COUNT", "count"},
    {TLMSG_PARAM_BMPFILE, "TLMSG_PARAM_BMPFILE", "bmpfile"},
    {TLMSG_PARAM_DUMPFILE, "TLMSG_PARAM_DUMPFILE", "dumpfile"},
    {TLMSG_PARAM_FONTFILE, "TLMSG_PARAM_FONTFILE", "fontfile"},
    {TLMSG_PARAM_IPSFILE, "TLMSG_PARAM_IPSFILE", "ipsfile"},
    {TLMSG_PARAM_ORIGINALFILE, "TLMSG_PARAM_ORIGINALFILE", "originalrom"},
    {TLMSG_PARAM_PATCHFILE, "TLMSG_PARAM_PATCHFILE", "patchfile"},
    {TLMSG_PARAM_TEXTFILE, "TLMSG_PARAM_TEXTFILE", "textfile"},
    {TLMSG_PARAM_FORMAT, "TLMSG_PARAM_FORMAT", "format"},
    {TLMSG_PARAM_STRING, "TLMSG_PARAM_STRING", "string"},
    {TLMSG_PARAM_ROM, "TLMSG_PARAM_ROM", "rom"},
    {TLMSG_PARAM_COMMAND, "TLMSG_PARAM_COMMAND", "command"},
    {TLMSG_PARAM_PARAMETERS, "TLMSG_PARAM_PARAMETERS", "parameters"},
    {MSG_PARAM_SIZE, nullptr, "size"},
    {MSG_PARAM_FREQUENCY, nullptr, "frequency"},
    {TLMSG_SEARCH_FOUND, "TLMSG_SEARCH_FOUND", " [data0] [data1]"},
    {TLMSG_SEARCH_FOUND_WIDE, "TLMSG_SEARCH_FOUND_WIDE", "?[data0] [data1]"},
    {TLMSG_SEARCH_FOUND_RELATIVE, "TLMSG_SEARCH_FOUND_RELATIVE", "*[data0] [data1]"},
    {TLMSG_SEARCH_NOTFOUND, "TLMSG_SEARCH_NOTFOUND", "No matches found."},
    {TLMSG_PTABLE_SEARCHING, "TLMSG_PTABLE_SEARCHING", "Searching for pointer table..."},
    {TLMSG_PTABLE_FOUND, "TLMSG_PTABLE_FOUND", "found."},
    {TLMSG_PTABLE_NOTFOUND, "TLMSG_PTABLE_NOTFOUND", "not found."},
    {TLMSG_PATCH_SUCCESS, "TLMSG_PATCH_SUCCESS", "[file]: Patch successful"},
    {TLMSG_TILES_SUCCESS, "TLMSG_TILES_SUCCESS", "[file]: Graphics updated"},
};

constexpr const char* kUnknownText = "Unknown error";

const CatalogueEntry* FindEntry(int id) {
    for (const CatalogueEntry& entry : kCatalogue)
        if (entry.id == id) return &entry;
    return nullptr;
}

}  // namespace

std::string MessageName(int id) {
    const CatalogueEntry* entry = FindEntry(id);
    return entry && entry->name ? entry->name : std::to_string(id);
}

const char* DefaultMessageText(int id) {
    const CatalogueEntry* entry = FindEntry(id);
    if (!entry) return kUnknownText;
    if (entry->text) return entry->text;
    // The nested message is inserted as text through the placeholder, never read as a format.
    return LastError().file.empty() ? kUnknownText : "[file]";
}
