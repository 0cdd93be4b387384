// Arbitrary bytes as a script of the dump and insert verbs: read into a
// document, placed into a fixed image through a fixed table (the image is
// restored before every input), and written out again.
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "core/rom_slots.h"
#include "font_file_fuzzing.h"
#include "script/script_document_reader.h"
#include "script/script_document_writer.h"
#include "script/script_placement.h"
#include "table/font_set.h"
#include "trelvane.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static std::vector<unsigned char> original;
    static bool ready = [] {
        std::string text = "/FF\n*FE\n80=th\n$05=1\n";
        for (int code = 0x20; code < 0x7F; ++code)
            if (code != '\\') text += std::to_string(code / 16) + "0123456789ABCDEF"[code % 16] + "=" + char(code) + "\n";
        const std::string table = ScratchName("-verbs.tbl");
        const std::string rom = ScratchName("-verbs.nes");
        std::vector<uint8_t> bytes(0x8010);
        for (size_t i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<uint8_t>(i * 7);
        if (!WriteInput(table, reinterpret_cast<const uint8_t*>(text.data()), text.size()) ||
            !WriteInput(rom, bytes.data(), bytes.size()) || !Trelvane_LoadROM(rom.c_str()))
            return false;
        ResetFontSet();
        original.assign(CurrentRom().data, CurrentRom().data + CurrentRom().size);
        return Trelvane_LoadFont(table.c_str()) == 1;
    }();
    if (!ready) return 0;
    std::memcpy(CurrentRom().data, original.data(), original.size());
    ScriptDocument document;
    if (!ReadScriptDocument(std::string(reinterpret_cast<const char*>(data), size), "fuzz.txt", document)) return 0;
    (void)FormatScriptDocument(document);
    PlacementReport report;
    for (bool optimal : {false, true}) {
        PlacementOptions options;
        options.optimal = optimal;
        options.fixedLength = size % 2 == 1;
        PlaceScript(1, document, options, "fuzz.txt", report);
    }
    return 0;
}
