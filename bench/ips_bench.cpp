// IPS creation and application on a 16 MiB pair with 1% of its bytes changed
// in scattered runs: the engine calls and the whole i and p commands.
#include <benchmark/benchmark.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <vector>

#include "run_trelvane.h"
#include "trelvane.h"

namespace {

constexpr size_t kImageSize = 16 * 1024 * 1024;

// The files every benchmark works on, made once in a private folder.
class BenchFiles {
public:
    BenchFiles() {
        folder_ = std::filesystem::temp_directory_path() / ("trelvane-bench-" + std::to_string(getpid()));
        std::filesystem::create_directories(folder_);
        std::mt19937 random(1234);
        std::vector<char> original(kImageSize);
        for (char& byte : original) byte = static_cast<char>(random());
        std::vector<char> modified = original;
        for (size_t changed = 0; changed < kImageSize / 100;) {
            size_t at = random() % kImageSize, run = 1 + random() % 32;
            for (size_t i = at; i < at + run && i < kImageSize; ++i, ++changed)
                modified[i] = static_cast<char>(modified[i] ^ (1 + random() % 255));
        }
        Write("old.smc", original);
        Write("new.smc", modified);
        Write("target.smc", original);
        Trelvane_CreateIPS(Path("patch.ips").c_str(), Path("old.smc").c_str(), Path("new.smc").c_str());
    }
    ~BenchFiles() {
        std::error_code ignored;
        std::filesystem::remove_all(folder_, ignored);
    }
    std::string Path(const char* name) const { return (folder_ / name).string(); }

private:
    void Write(const char* name, const std::vector<char>& bytes) {
        std::ofstream(Path(name), std::ios::binary).write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    }
    std::filesystem::path folder_;
};

const BenchFiles& Files() {
    static BenchFiles files;
    return files;
}

void BM_CreateIps(benchmark::State& state) {
    const BenchFiles& files = Files();
    for (auto _ : state)
        if (!Trelvane_CreateIPS(files.Path("out.ips").c_str(), files.Path("old.smc").c_str(),
                                files.Path("new.smc").c_str()))
            state.SkipWithError("creating failed");
}
BENCHMARK(BM_CreateIps)->Unit(benchmark::kMillisecond)->UseRealTime();

void BM_ApplyIps(benchmark::State& state) {
    const BenchFiles& files = Files();
    for (auto _ : state)
        if (!Trelvane_ApplyIPS(files.Path("patch.ips").c_str(), files.Path("target.smc").c_str()))
            state.SkipWithError("applying failed");
}
BENCHMARK(BM_ApplyIps)->Unit(benchmark::kMillisecond)->UseRealTime();

void BM_CreateIpsCommand(benchmark::State& state) {
    const BenchFiles& files = Files();
    for (auto _ : state)
        if (!RunTrelvane({files.Path("new.smc"), "i", files.Path("old.smc"), files.Path("cmd.ips")}))
            state.SkipWithError("the i command failed");
}
BENCHMARK(BM_CreateIpsCommand)->Unit(benchmark::kMillisecond)->UseRealTime();

void BM_ApplyIpsCommand(benchmark::State& state) {
    const BenchFiles& files = Files();
    for (auto _ : state)
        if (!RunTrelvane({files.Path("target.smc"), "p", files.Path("patch.ips")}))
            state.SkipWithError("the p command failed");
}
BENCHMARK(BM_ApplyIpsCommand)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace
