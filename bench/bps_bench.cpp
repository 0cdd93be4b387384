// BPS creation and application on a 16 MiB original: (a) 1% of its bytes
// changed in scattered runs; (b) the same plus eight 64 KiB blocks copied
// over other places and 64 KiB of new bytes inserted in the middle. The
// patch sizes, and that of the IPS patch of (a), are reported as counters.
// The engine calls, and for (b) the whole i and p commands as well. Creation
// also on (c): (a)'s changes to an original whose every fourth 64 KiB block
// is padding, which the creator searches through its suffix array.
#include <benchmark/benchmark.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <vector>

#include "run_trelvane.h"
#include "trelvane.h"

namespace {

constexpr size_t kImageSize = 16 * 1024 * 1024;
constexpr size_t kBlockSize = 64 * 1024;
constexpr int kCopiedBlocks = 8;

using Bytes = std::vector<char>;

Bytes RandomBytes(size_t size, std::mt19937& random) {
    Bytes bytes(size);
    for (char& byte : bytes) byte = static_cast<char>(random());
    return bytes;
}

// Changes 1% of the bytes in runs of 1 to 32 bytes at random places.
Bytes ScatterChanges(Bytes bytes, std::mt19937& random) {
    for (size_t changed = 0; changed < bytes.size() / 100;) {
        size_t at = random() % bytes.size(), run = 1 + random() % 32;
        for (size_t i = at; i < at + run && i < bytes.size(); ++i, ++changed)
            bytes[i] = static_cast<char>(bytes[i] ^ (1 + random() % 255));
    }
    return bytes;
}

Bytes MoveAndInsert(Bytes bytes, const Bytes& original, std::mt19937& random) {
    for (int block = 0; block < kCopiedBlocks; ++block) {
        size_t from = random() % (original.size() - kBlockSize), to = random() % (bytes.size() - kBlockSize);
        std::copy_n(original.begin() + from, kBlockSize, bytes.begin() + to);
    }
    Bytes inserted = RandomBytes(kBlockSize, random);
    bytes.insert(bytes.begin() + bytes.size() / 2, inserted.begin(), inserted.end());
    return bytes;
}

class BenchFiles {
public:
    BenchFiles() {
        folder_ = std::filesystem::temp_directory_path() / ("trelvane-bps-bench-" + std::to_string(getpid()));
        std::filesystem::create_directories(folder_);
        std::mt19937 random(1234);
        original_ = RandomBytes(kImageSize, random);
        Bytes scattered = ScatterChanges(original_, random);
        Write("old.smc", original_);
        Write("a.smc", scattered);
        Write("b.smc", MoveAndInsert(scattered, original_, random));
        Bytes padded = original_;
        for (size_t at = 0; at < padded.size(); at += 4 * kBlockSize) std::fill_n(padded.begin() + at, kBlockSize, 0xFF);
        Write("padded.smc", padded);
        Write("c.smc", ScatterChanges(padded, random));
        for (const char* pair : {"a", "b"})
            Trelvane_CreateBPS(Path(std::string(pair) + ".bps").c_str(), Path("old.smc").c_str(),
                               Path(std::string(pair) + ".smc").c_str());
        Trelvane_CreateIPS(Path("a.ips").c_str(), Path("old.smc").c_str(), Path("a.smc").c_str());
    }
    ~BenchFiles() {
        std::error_code ignored;
        std::filesystem::remove_all(folder_, ignored);
    }
    std::string Path(const std::string& name) const { return (folder_ / name).string(); }
    double Size(const std::string& name) const { return static_cast<double>(std::filesystem::file_size(Path(name))); }
    void RestoreOriginal(const char* name) const { Write(name, original_); }

private:
    void Write(const char* name, const Bytes& bytes) const {
        std::ofstream(Path(name), std::ios::binary).write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    }
    std::filesystem::path folder_;
    Bytes original_;
};

const BenchFiles& Files() {
    static BenchFiles files;
    return files;
}

void CreateBps(benchmark::State& state, const std::string& pair, const char* original = "old.smc") {
    const BenchFiles& files = Files();
    for (auto _ : state)
        if (!Trelvane_CreateBPS(files.Path("out.bps").c_str(), files.Path(original).c_str(),
                                files.Path(pair + ".smc").c_str()))
            state.SkipWithError("creating failed");
    state.counters["patch_bytes"] = files.Size("out.bps");
    if (pair == "a") state.counters["ips_bytes"] = files.Size("a.ips");
}

void ApplyBps(benchmark::State& state, const std::string& pair) {
    const BenchFiles& files = Files();
    for (auto _ : state) {
        state.PauseTiming();
        files.RestoreOriginal("target.smc");
        state.ResumeTiming();
        if (!Trelvane_ApplyBPS(files.Path(pair + ".bps").c_str(), files.Path("target.smc").c_str()))
            state.SkipWithError("applying failed");
    }
}

void BM_CreateBpsScattered(benchmark::State& state) { CreateBps(state, "a"); }
void BM_CreateBpsMovedAndInserted(benchmark::State& state) { CreateBps(state, "b"); }
void BM_CreateBpsPaddedOriginal(benchmark::State& state) { CreateBps(state, "c", "padded.smc"); }
void BM_ApplyBpsScattered(benchmark::State& state) { ApplyBps(state, "a"); }
void BM_ApplyBpsMovedAndInserted(benchmark::State& state) { ApplyBps(state, "b"); }

void BM_CreateBpsCommand(benchmark::State& state) {
    const BenchFiles& files = Files();
    for (auto _ : state)
        if (!RunTrelvane({files.Path("b.smc"), "i", files.Path("old.smc"), files.Path("cmd.bps")}))
            state.SkipWithError("the i command failed");
}

void BM_ApplyBpsCommand(benchmark::State& state) {
    const BenchFiles& files = Files();
    for (auto _ : state) {
        state.PauseTiming();
        files.RestoreOriginal("target.smc");
        state.ResumeTiming();
        if (!RunTrelvane({files.Path("target.smc"), "p", files.Path("b.bps")}))
            state.SkipWithError("the p command failed");
    }
}

BENCHMARK(BM_CreateBpsScattered)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_CreateBpsMovedAndInserted)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_CreateBpsPaddedOriginal)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_ApplyBpsScattered)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_ApplyBpsMovedAndInserted)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_CreateBpsCommand)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_ApplyBpsCommand)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace
