// The translator's round trip at scale: the pointer-table finder on 4 MiB
// images (a table near the end, and no table at all), and the whole t and d
// commands on a script of 10,000 strings of which a third repeat earlier ones.
#include <benchmark/benchmark.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <vector>

#include "run_trelvane.h"
#include "sentences.h"
#include "trelvane.h"

namespace {

constexpr size_t kFinderImageSize = 4 * 1024 * 1024;
constexpr int kScriptStrings = 10000;
constexpr size_t kScriptImageSize = 1024 * 1024;

using Bytes = std::vector<char>;

// Printable ASCII as itself, FE a line break, FF the end of a string.
std::string Table() {
    std::string table;
    char line[8];
    for (int code = 0x20; code < 0x7F; ++code) {
        if (code == '\\') continue;
        std::snprintf(line, sizeof line, "%02X=%c\n", code, code);
        table += line;
    }
    return table + "*FE\n/FF\n";
}

Bytes RandomBytes(size_t size, std::mt19937& random) {
    Bytes bytes(size);
    for (char& byte : bytes) byte = static_cast<char>(random());
    return bytes;
}

class BenchFiles {
public:
    BenchFiles() {
        folder_ = std::filesystem::temp_directory_path() / ("trelvane-script-bench-" + std::to_string(getpid()));
        std::filesystem::create_directories(folder_);
        std::mt19937 random(42);
        Write("game.tbl", Table());
        WriteFinderImages(random);
        WriteScript(random);
    }
    ~BenchFiles() {
        std::error_code ignored;
        std::filesystem::remove_all(folder_, ignored);
    }
    std::string Path(const char* name) const { return (folder_ / name).string(); }

    int32_t tableStringAt = 0;  // first string of the finder image's table

private:
    void Write(const char* name, const std::string& text) { Write(name, Bytes(text.begin(), text.end())); }
    void Write(const char* name, const Bytes& bytes) {
        std::ofstream(Path(name), std::ios::binary).write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    }

    // Random 4 MiB images: one with 200 strings at 3F0000h behind a 2-byte
    // table at 3FF000h, one with the same strings and no table.
    void WriteFinderImages(std::mt19937& random) {
        Bytes image = RandomBytes(kFinderImageSize + 16, random);
        tableStringAt = 0x3F0000;
        size_t at = 16 + tableStringAt;
        std::vector<int32_t> offsets;
        for (int i = 0; i < 200; ++i) {
            offsets.push_back(static_cast<int32_t>(at - 16));
            std::string text = Sentence(random);
            std::copy(text.begin(), text.end(), image.begin() + at);
            at += text.size();
            image[at++] = static_cast<char>(0xFF);
        }
        Write("notable.nes", image);
        for (size_t i = 0; i < offsets.size(); ++i) {
            image[16 + 0x3FF000 + 2 * i] = static_cast<char>(offsets[i]);
            image[16 + 0x3FF000 + 2 * i + 1] = static_cast<char>(offsets[i] >> 8);
        }
        Write("table.nes", image);
    }

    // 10,000 strings (about 300 KB); from string 20 on, every third repeats
    // an earlier one.
    void WriteScript(std::mt19937& random) {
        std::string script = "load \"";
        script += Path("game.tbl");
        script += "\"\ntextaddress 10000h\nfirstpointer 10000h\npointertable 8000h\npointersize 3\n";
        std::vector<std::string> texts;
        for (int i = 0; i < kScriptStrings; ++i) {
            bool repeat = i >= 20 && i % 3 == 2;
            texts.push_back(repeat ? texts[random() % texts.size()] : Sentence(random));
            char entry[16];
            std::snprintf(entry, sizeof entry, "[%04X]\n", i);
            script += entry;
            script += texts.back();
            script += '\n';
        }
        Write("script.txt", script);
        Write("game.nes", RandomBytes(kScriptImageSize + 16, random));
    }

    std::filesystem::path folder_;
};

const BenchFiles& Files() {
    static BenchFiles files;
    static long font = Trelvane_LoadFont(files.Path("game.tbl").c_str());
    (void)font;
    return files;
}

void FindTable(benchmark::State& state, const char* image, bool expectFound) {
    const BenchFiles& files = Files();
    if (!Trelvane_LoadROM(files.Path(image).c_str())) return state.SkipWithError("loading failed");
    for (auto _ : state) {
        PointerTable* table = Trelvane_FindPointerTable(1, files.tableStringAt);
        if ((table != nullptr) != expectFound) state.SkipWithError("unexpected finder result");
        std::free(table);
    }
    Trelvane_FreeROM(-1);
}

void BM_FinderTableNearTheEnd(benchmark::State& state) { FindTable(state, "table.nes", true); }
BENCHMARK(BM_FinderTableNearTheEnd)->Unit(benchmark::kMillisecond)->UseRealTime();

void BM_FinderNoTable(benchmark::State& state) { FindTable(state, "notable.nes", false); }
BENCHMARK(BM_FinderNoTable)->Unit(benchmark::kMillisecond)->UseRealTime();

void BM_ScriptInsertCommand(benchmark::State& state) {
    const BenchFiles& files = Files();
    for (auto _ : state)
        if (!RunTrelvane({files.Path("game.nes"), "t", files.Path("script.txt")}))
            state.SkipWithError("the t command failed");
}
BENCHMARK(BM_ScriptInsertCommand)->Unit(benchmark::kMillisecond)->UseRealTime();

void BM_ScriptDumpCommand(benchmark::State& state) {
    const BenchFiles& files = Files();
    RunTrelvane({files.Path("game.nes"), "t", files.Path("script.txt")});
    for (auto _ : state)
        if (!RunTrelvane({files.Path("game.nes"), "d", files.Path("game.tbl"), files.Path("dump.txt"), "10000h",
                          std::to_string(kScriptStrings)}))
            state.SkipWithError("the d command failed");
}
BENCHMARK(BM_ScriptDumpCommand)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace
