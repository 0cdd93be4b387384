// Patch scripts at scale: a generated 1 MB script of 1,200 code blocks run as
// an engine call and as the whole p command on a 4 MiB Super NES image, and
// blocks whose branches all have to be widened to 16 bits.
#include <benchmark/benchmark.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "run_trelvane.h"
#include "trelvane.h"

namespace {

constexpr size_t kImageSize = 4 * 1024 * 1024;
constexpr int kBlocks = 1200;

std::string Hex(long value) {
    char text[16];
    std::snprintf(text, sizeof text, "%06lXh", value);
    return text;
}

// One code block of about 900 characters that compiles to fewer than 100h bytes:
// labels, backward branches, data, immediate, direct-page, indexed and long
// operands, variables, a constant, a pointer and calls of a two-parameter macro.
std::string Block(int n) {
    const std::string at = Hex(0x808000 + n * 0x100L), data = std::to_string(n % 256);
    return ".ADDRESS " + at + " (100h)\t; block " + std::to_string(n) +
           "\nstart:\n"
           "\trep 30h\n\tldx 0h\n\tldy 2h\n"
           "copy:\n"
           "\tlda [7E2000h+x]\n\tsta [0300h+x]\n\tlda [7F4000h]\n\tsta [0400h+y]\n"
           "\t_move [10h], [12h]\n\t_move [0014h+x], [7E0016h]\n"
           "\tinx\n\tinx\n\tcpx 40h\n\tbne copy\n"
           "\t; clear the work area\n"
           "fill:\n\tlda 0h\n\tsta [7E3000h+x]\n\tinx\n\tinx\n\tcpx 100h\n\tbne fill\n"
           "\t_move counter, [0600h]\n"
           "\tlda counter\n\tadc 1234h\n\tsta counter\n\tlda table+x\n\tadc [(03h+s)+y]\n"
           "\tlda [05h+s]\n\tand 0FF00h\n\tora 0011h\n\tsta [2118h]\n"
           "wait:\n"
           "\tlda [4212h]\n\tand 80h\n\tbeq wait\n\tdex\n\tbpl wait\n"
           "\tsep 20h\n\tlda [10h+x]\n\tsta [7E1000h+x]\n\tstz [20h]\n\tstz [0520h+x]\n"
           "\tpha\n\tphx\n\tjsl handler\n\tjsr 0FF80h\n\tplx\n\tpla\n"
           "\tcmp 8040h\n\tbcc copy\n\tclc\n\trts\n"
           "\t.POINTER 2 @ " + Hex(0x3F0000 + n * 2L) + "\n"
           "\t.BYTE " + data + ", 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15\n"
           "\t.BYTE 16, 17, 18, 19, 20, 21, 22, 23, 24, 25, 26, 27, 28, 29, 30, 31\n"
           "\t.BYTE 32, 33, 34, 35, 36, 37, 38, 39, 40, 41, 42, 43, 44, 45, 46, 47\n"
           "\t.WORD 1234h, 5678h, 9ABCh, 0DEF0h\n";
}

std::string BigScript() {
    std::string script =
        "; a generated script: shared names, a macro, then the code blocks\n"
        ".ASSUME dbr: 7E0000h\n$counter 7E0010h\n$table 7E0200h\nhandler .EQL 80FF00h\n"
        "move .MACRO\n\tlda ?0\n\tsta ?1\n.ENDM\n";
    for (int n = 0; n < kBlocks; ++n) script += Block(n);
    return script;
}

// Blocks of brl instructions that all jump past the block's end, so that each
// is widened from 8 to 16 bits with a restart of the encoding pass.
std::string FarBranchScript(int branchesPerBlock) {
    std::string script;
    for (int n = 0; n < 8; ++n) {
        script += ".ADDRESS " + Hex(0x808000 + n * 0x4000L) + "\n";
        for (int i = 0; i < branchesPerBlock; ++i) script += "brl done\n";
        script += "done:\nrts\n";
    }
    return script;
}

class BenchFiles {
public:
    BenchFiles() {
        folder_ = std::filesystem::temp_directory_path() / ("trelvane-patch-bench-" + std::to_string(getpid()));
        std::filesystem::create_directories(folder_);
        std::vector<char> image(512 + kImageSize, 0);
        Write("game.smc", image);
        Write("command.smc", image);
        bigScript_ = BigScript();
        Write("big.txt", bigScript_);
        Write("far1000.txt", FarBranchScript(1000));
        Write("far4000.txt", FarBranchScript(4000));
        handle_ = Trelvane_LoadROM(Path("game.smc").c_str());
    }
    ~BenchFiles() {
        Trelvane_FreeROM(handle_);
        std::error_code ignored;
        std::filesystem::remove_all(folder_, ignored);
    }
    std::string Path(const std::string& name) const { return (folder_ / name).string(); }
    size_t BigScriptSize() const { return bigScript_.size(); }
    bool Loaded() const { return handle_ != 0; }

private:
    template <typename Bytes>
    void Write(const char* name, const Bytes& bytes) {
        std::ofstream(Path(name), std::ios::binary).write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    }
    std::filesystem::path folder_;
    std::string bigScript_;
    long handle_ = 0;
};

const BenchFiles& Files() {
    static BenchFiles files;
    return files;
}

// Runs a script on the loaded image through the exported calls; true when no statement failed.
bool RunScript(const std::string& path) {
    bool done = Trelvane_PatchFile_Open(path.c_str()) && Trelvane_PatchFile_Process();
    Trelvane_PatchFile_Close();
    return done;
}

void BM_PatchScriptEngine(benchmark::State& state) {
    const BenchFiles& files = Files();
    if (!files.Loaded()) state.SkipWithError("no image");
    for (auto _ : state)
        if (!RunScript(files.Path("big.txt"))) state.SkipWithError(Trelvane_GetLastError());
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * files.BigScriptSize()));
    state.counters["blocks"] = kBlocks;
}
BENCHMARK(BM_PatchScriptEngine)->Unit(benchmark::kMillisecond)->UseRealTime();

void BM_PatchScriptCommand(benchmark::State& state) {
    const BenchFiles& files = Files();
    for (auto _ : state)
        if (!RunTrelvane({files.Path("command.smc"), "p", files.Path("big.txt")}))
            state.SkipWithError("the p command failed");
}
BENCHMARK(BM_PatchScriptCommand)->Unit(benchmark::kMillisecond)->UseRealTime();

void BM_PatchScriptFarBranches(benchmark::State& state) {
    const BenchFiles& files = Files();
    const std::string script = files.Path("far" + std::to_string(state.range(0)) + ".txt");
    for (auto _ : state)
        if (!RunScript(script)) state.SkipWithError(Trelvane_GetLastError());
    state.counters["widened"] = static_cast<double>(8 * state.range(0));
}
BENCHMARK(BM_PatchScriptFarBranches)->Arg(1000)->Arg(4000)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace
