// The dump and insert verbs at scale: the pointer finder on a 4 MiB NES image
// with every base of the system tried, the insert verb on a script of 10,000
// strings, and the shortest encoding of 1 MB of text.
#include <benchmark/benchmark.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <vector>

#include "run_trelvane.h"
#include "sentences.h"
#include "table/font_set.h"
#include "table/shortest_encoding.h"
#include "trelvane.h"
#include "verbs/pointer_search.h"

namespace {

constexpr size_t kImageSize = 4 * 1024 * 1024;
constexpr int kStrings = 10000;

std::string Table() {
    std::string table;
    char line[16];
    for (int code = 0x20; code < 0x7F; ++code) {
        if (code == '\\') continue;
        std::snprintf(line, sizeof line, "%02X=%c\n", code, code);
        table += line;
    }
    // Dictionary entries that overlap, so that longest match is not shortest.
    return table + "80=the \n81=he\n82= th\n83=e c\n84=cast\n85=castle\n86=le \n*FE\n/FF\n";
}

class VerbFiles {
public:
    VerbFiles() {
        folder_ = std::filesystem::temp_directory_path() / ("trelvane-verbs-bench-" + std::to_string(getpid()));
        std::filesystem::create_directories(folder_);
        std::mt19937 random(7);
        Write("game.tbl", Table());
        std::string image(kImageSize + 16, '\0');
        for (char& byte : image) byte = static_cast<char>(random());
        // 16 strings in the bank at 3F8000h, a $8000-window table of them at 3FC000h.
        size_t at = 0x3F8000;
        stringAt = static_cast<int64_t>(at);
        for (int i = 0; i < 16; ++i) {
            const size_t pointer = 16 + 0x3FC000 + 2 * i;
            image[pointer] = static_cast<char>(0x8000 + at % 0x4000);
            image[pointer + 1] = static_cast<char>((0x8000 + at % 0x4000) >> 8);
            std::string text = Sentence(random) + '\xFF';
            image.replace(16 + at, text.size(), text);
            at += text.size();
        }
        Write("finder.nes", image);
        WriteScript(random);
    }
    ~VerbFiles() {
        std::error_code ignored;
        std::filesystem::remove_all(folder_, ignored);
    }
    std::string Path(const char* name) const { return (folder_ / name).string(); }

    int64_t stringAt = 0;
    std::vector<std::string> texts;

private:
    void Write(const char* name, const std::string& text) {
        std::ofstream(Path(name), std::ios::binary).write(text.data(), static_cast<std::streamsize>(text.size()));
    }

    // 10,000 strings through 3-byte pointers, a third of them repeats.
    void WriteScript(std::mt19937& random) {
        std::string script = "load \"" + Path("game.tbl") + "\"\ntextlines literal\npointertable 8000h\npointersize 3\n"
                             "pointercount 10000\ntextregion 10000h (800000)\n";
        for (int i = 0; i < kStrings; ++i) {
            const bool repeat = i >= 20 && i % 3 == 2;
            texts.push_back(repeat ? texts[random() % texts.size()] : Sentence(random));
            char entry[16];
            std::snprintf(entry, sizeof entry, "\n[%04X]\n", i);
            script += entry + texts.back() + "\n";
        }
        Write("script.txt", script);
        Write("game.nes", std::string(1024 * 1024 + 16, '\0'));
    }

    std::filesystem::path folder_;
};

const VerbFiles& Files() {
    static VerbFiles files;
    return files;
}

void BM_DumpFindEveryNesBase(benchmark::State& state) {
    const VerbFiles& files = Files();
    for (auto _ : state)
        if (!RunTrelvane({"dump", files.Path("finder.nes"), "--table", files.Path("game.tbl"), "-o",
                          files.Path("found.txt"), "--find", std::to_string(files.stringAt)}))
            state.SkipWithError("dump --find failed");
}
BENCHMARK(BM_DumpFindEveryNesBase)->Unit(benchmark::kMillisecond)->UseRealTime();

void BM_PointerSearchEveryNesBase(benchmark::State& state) {
    const VerbFiles& files = Files();
    ResetFontSet();
    const long font = Trelvane_LoadFont(files.Path("game.tbl").c_str());
    if (!Trelvane_LoadROM(files.Path("finder.nes").c_str())) return state.SkipWithError("loading failed");
    for (auto _ : state)
        if (SearchPointersTo(files.stringAt, PointerOptions(), font).tables.empty())
            state.SkipWithError("no table found");
    Trelvane_FreeROM(-1);
}
BENCHMARK(BM_PointerSearchEveryNesBase)->Unit(benchmark::kMillisecond)->UseRealTime();

void BM_InsertVerbTenThousandStrings(benchmark::State& state) {
    const VerbFiles& files = Files();
    for (auto _ : state)
        if (!RunTrelvane({"insert", files.Path("game.nes"), files.Path("script.txt")}))
            state.SkipWithError("insert failed");
}
BENCHMARK(BM_InsertVerbTenThousandStrings)->Unit(benchmark::kMillisecond)->UseRealTime();

// About 1 MB of text: the script's strings over and over.
void BM_ShortestEncodingOfOneMegabyte(benchmark::State& state) {
    const VerbFiles& files = Files();
    ResetFontSet();
    const long font = Trelvane_LoadFont(files.Path("game.tbl").c_str());
    size_t total = 0;
    for (auto _ : state) {
        total = 0;
        for (size_t i = 0; total < 1000000; i = (i + 1) % files.texts.size()) {
            const EncodedText encoded = EncodeShortest(font, files.texts[i].c_str(), LITERAL_ENCODING);
            if (!encoded.bytes) return state.SkipWithError("encoding failed");
            total += files.texts[i].size();
        }
    }
    state.SetBytesProcessed(static_cast<int64_t>(total) * state.iterations());
}
BENCHMARK(BM_ShortestEncodingOfOneMegabyte)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace
