// Arbitrary bytes as a script file, inserted into a fixed image through a
// table that the script's own header may load again; the image is restored
// before every input.
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "core/rom_slots.h"
#include "font_file_fuzzing.h"
#include "script/pointer_writer.h"
#include "table/font_set.h"
#include "trelvane.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static const std::string table = ScratchName("-game.tbl");
    static const std::string script = ScratchName("-script.txt");
    static std::vector<unsigned char> original;
    static bool ready = [] {
        std::string text = "/FF\n*FE\n5B=[\n";
        for (int code = 0x20; code < 0x7F; ++code)
            if (code != '\\' && code != '[') text += std::to_string(code / 16) + "0123456789ABCDEF"[code % 16] + "=" + char(code) + "\n";
        std::string rom = ScratchName("-game.gb");
        std::vector<uint8_t> bytes(0x4000);
        for (size_t i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<uint8_t>(i * 7);
        if (!WriteInput(table, reinterpret_cast<const uint8_t*>(text.data()), text.size()) ||
            !WriteInput(rom, bytes.data(), bytes.size()) || !Trelvane_LoadROM(rom.c_str()))
            return false;
        original.assign(CurrentRom().data, CurrentRom().data + CurrentRom().size);
        return true;
    }();
    if (!ready || !WriteInput(script, data, size)) return 0;
    std::memcpy(CurrentRom().data, original.data(), original.size());
    SetPointerDestination(PointerDestination());
    ResetFontSet();
    Trelvane_LoadFont(table.c_str());
    Trelvane_InsertFromFile(1, script.c_str());
    return 0;
}
