// Commands killed or interrupted at random moments while they rewrite a
// 16 MiB image: the image is always the old one or the new one, and no
// temporary file is left in the folder once the next command wrote into it.
#include <gtest/gtest.h>
#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include "support/test_support.h"

namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

constexpr size_t kImageSize = 16 << 20;
constexpr int kRuns = 50;

// Three records: at the start, the middle and the end of the image.
Bytes Patch() {
    const std::string text = std::string("PATCH") + std::string("\0\0\0\0\2AB", 7) + std::string("\x80\0\0\0\2CD", 7) +
                             std::string("\xFF\xFF\xFE\0\2EF", 7) + "EOF";
    return Bytes(text.begin(), text.end());
}

pid_t StartPatching(const fs::path& folder) {
    const std::string exe = TrelvaneExecutable().string(), rom = (folder / "game.smc").string(),
                      patch = (folder / "fix.ips").string();
    std::vector<char*> argv = {const_cast<char*>(exe.c_str()), const_cast<char*>(rom.c_str()),
                               const_cast<char*>("p"), const_cast<char*>(patch.c_str()), nullptr};
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 1, "/dev/null", O_WRONLY, 0);
    pid_t pid = -1;
    if (posix_spawn(&pid, exe.c_str(), &actions, nullptr, argv.data(), environ) != 0) pid = -1;
    posix_spawn_file_actions_destroy(&actions);
    return pid;
}

std::vector<std::string> TemporariesIn(const fs::path& folder) {
    std::vector<std::string> found;
    for (const auto& entry : fs::directory_iterator(folder))
        if (entry.path().filename().string().rfind(".trelvane-", 0) == 0) found.push_back(entry.path().filename());
    return found;
}

// Runs the patch kRuns times, sending signal after a random part of the time
// one whole run takes; returns how many runs the signal ended.
int InterruptRuns(const fs::path& folder, int signal, const Bytes& before, const Bytes& after) {
    auto start = Clock::now();
    pid_t pid = StartPatching(folder);
    int status = 0;
    waitpid(pid, &status, 0);
    const auto whole = std::chrono::duration_cast<std::chrono::microseconds>(Clock::now() - start);
    EXPECT_EQ(status, 0);

    std::mt19937 random(static_cast<unsigned>(signal));
    std::uniform_int_distribution<long> moment(0, whole.count());
    int ended = 0;
    bool patched = true;
    for (int run = 0; run < kRuns; ++run) {
        if (patched) WriteFile((folder / "game.smc").string(), before);  // the old image again
        pid = StartPatching(folder);
        std::this_thread::sleep_for(std::chrono::microseconds(moment(random)));
        kill(pid, signal);
        waitpid(pid, &status, 0);
        if (WIFSIGNALED(status) && WTERMSIG(status) == signal) ++ended;
        const Bytes image = ReadFile((folder / "game.smc").string());
        patched = image == after;
        EXPECT_TRUE(patched || image == before) << "run " << run << ", signal " << signal;
    }
    return ended;
}

TEST(InterruptedWritesTest, TheImageIsOldOrNewAndNoTemporaryOutlivesTheNextCommand) {
    if (TestingWindowsBuild()) GTEST_SKIP() << "POSIX signals";
    TempDir dir;
    Bytes before(kImageSize);
    std::mt19937 random(7);
    for (unsigned char& byte : before) byte = static_cast<unsigned char>(random());
    Bytes after = before;
    after[0] = 'A', after[1] = 'B', after[0x800000] = 'C', after[0x800001] = 'D';
    after[kImageSize - 2] = 'E', after[kImageSize - 1] = 'F';
    // One folder per signal, all three interrupted at once.
    const int signals[] = {SIGKILL, SIGINT, SIGTERM};
    int ended[3] = {};
    std::vector<std::thread> threads;
    for (int k = 0; k < 3; ++k) {
        const fs::path folder = dir.path() / std::to_string(signals[k]);
        fs::create_directory(folder);
        WriteFile((folder / "fix.ips").string(), Patch());
        WriteFile((folder / "game.smc").string(), before);
        threads.emplace_back([&, k, folder] { ended[k] = InterruptRuns(folder, signals[k], before, after); });
    }
    for (std::thread& thread : threads) thread.join();
    for (int k = 0; k < 3; ++k) {
        const fs::path folder = dir.path() / std::to_string(signals[k]);
        EXPECT_GT(ended[k], kRuns / 4) << "signal " << signals[k];  // most runs were cut short
        EXPECT_EQ(RunTrelvane(folder, {"game.smc", "p", "fix.ips"}), (RunResult{0, "fix.ips: Patch successful\n"}));
        EXPECT_EQ(TemporariesIn(folder), std::vector<std::string>{}) << "signal " << signals[k];
        EXPECT_TRUE(ReadFile((folder / "game.smc").string()) == after);
    }
}

}  // namespace
