// Tile and bitmap speed: the engine calls on a 128 x 128 sheet, and the whole
// b and f commands run as a user runs them.
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "trelvane.h"

namespace {

namespace fs = std::filesystem;

// A folder holding a 1 MiB Super NES image of varied bytes and its dumped sheet.
struct Workspace {
    fs::path dir = fs::temp_directory_path() / "trelvane-gfx-bench";
    Workspace() {
        fs::create_directories(dir);
        std::vector<char> rom(512 + (1 << 20));
        for (size_t i = 0; i < rom.size(); ++i) rom[i] = static_cast<char>(i * 2654435761u >> 13);
        std::FILE* file = std::fopen(Path("game.smc").c_str(), "wb");
        std::fwrite(rom.data(), 1, rom.size(), file);
        std::fclose(file);
    }
    ~Workspace() { fs::remove_all(dir); }
    std::string Path(const char* name) const { return (dir / name).string(); }
};

const Workspace& Files() {
    static Workspace workspace;
    return workspace;
}

void BM_DecodeEncodeSheet(benchmark::State& state, const char* format) {
    Trelvane_LoadROM(Files().Path("game.smc").c_str());
    static unsigned char pixels[128 * 128];
    for (auto _ : state) {
        Trelvane_DecodeTiles(pixels, 128, 128, 0x8000, format);
        Trelvane_EncodeTiles(pixels, 128, 128, 0x8000, 256, format);
        benchmark::ClobberMemory();
    }
    Trelvane_FreeROM(-1);
}
BENCHMARK_CAPTURE(BM_DecodeEncodeSheet, snes, "SNES");
BENCHMARK_CAPTURE(BM_DecodeEncodeSheet, nes, "NES");
BENCHMARK_CAPTURE(BM_DecodeEncodeSheet, gb, "GB");

void BM_WriteLoadSheet(benchmark::State& state) {
    static unsigned char pixels[128 * 128];
    for (size_t i = 0; i < sizeof pixels; ++i) pixels[i] = static_cast<unsigned char>(i % 16);
    const std::string path = Files().Path("sheet.bmp");
    long width = 0, height = 0;
    for (auto _ : state) {
        Trelvane_WriteBMP(path.c_str(), pixels, 128, 128);
        Trelvane_LoadBMP(path.c_str(), pixels, &width, &height);
    }
}
BENCHMARK(BM_WriteLoadSheet);

// Runs the built trelvane in the workspace; its exit status.
int Trelvane(const std::string& arguments) {
    const std::string command = "cd '" + Files().dir.string() + "' && '" TRELVANE_EXE "' " + arguments + " >/dev/null";
    return std::system(command.c_str());
}

void BM_DumpCommand(benchmark::State& state) {
    for (auto _ : state)
        if (Trelvane("game.smc b 8000h dump.bmp SNES") != 0) state.SkipWithError("b failed");
}
BENCHMARK(BM_DumpCommand)->Unit(benchmark::kMillisecond);

void BM_InsertCommand(benchmark::State& state) {
    if (Trelvane("game.smc b 8000h dump.bmp SNES") != 0) state.SkipWithError("b failed");
    for (auto _ : state)
        if (Trelvane("game.smc f 8000h dump.bmp SNES") != 0) state.SkipWithError("f failed");
}
BENCHMARK(BM_InsertCommand)->Unit(benchmark::kMillisecond);

}  // namespace
