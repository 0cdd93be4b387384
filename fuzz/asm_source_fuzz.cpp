// Arbitrary text assembled as a common-syntax source into a 64 KiB image,
// once as LoROM and once with the mapping left to the source. The text is on
// disk as main.asm and as self.asm, so that it may incsrc itself; data.bin
// (16 bytes) is there for incbin and game.tbl for table.
#include <cstdint>
#include <filesystem>
#include <optional>

#include "asm/asm_session.h"
#include "asm/source_assembler.h"
#include "scratch_files.h"

namespace {

const char kTable[] = "; Trelvane table\r\n\r\n[10]   \"A\"\r\n[11]   \"B\"\r\n[FF]   terminal\r\n";
const uint8_t kData[16] = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15};

void Assemble(std::optional<SnesMapping> mapping) {
    AsmSession session;
    session.image.assign(0x10000, 0);
    session.options.mapping = mapping;
    session.options.defines = {{"given", "$12"}};
    AssembleSource(session, "main.asm");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static const std::filesystem::path folder = ScratchName("-asm");
    static bool ready = [] {
        std::error_code error;
        std::filesystem::create_directories(folder, error);
        const InsideFolder inside(folder);
        return !error && inside.entered() &&
               WriteInput("game.tbl", reinterpret_cast<const uint8_t*>(kTable), sizeof kTable - 1) &&
               WriteInput("data.bin", kData, sizeof kData);
    }();
    const InsideFolder inside(folder);
    if (!ready || !inside.entered() || !WriteInput("main.asm", data, size) || !WriteInput("self.asm", data, size))
        return 0;
    Assemble(SnesMapping::LoRom);
    Assemble(std::nullopt);
    return 0;
}
