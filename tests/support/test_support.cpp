#include "support/test_support.h"

#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <cstdio>
#include <fstream>
#include <iterator>

namespace {
// Appends text to command as one single-quoted shell word. (Built with
// appends only: gcc 12 misreports string concatenation here as overlapping.)
void AppendShellWord(std::string& command, const std::string& text) {
    command += " '";
    for (char c : text) {
        if (c == '\'')
            command += "'\\''";
        else
            command += c;
    }
    command += '\'';
}
}  // namespace

TempDir::TempDir() {
    static std::atomic<int> counter{0};
    path_ = std::filesystem::temp_directory_path() /
            ("trelvane-test-" + std::to_string(getpid()) + "-" + std::to_string(counter++));
    std::filesystem::remove_all(path_);
    std::filesystem::create_directories(path_);
}

TempDir::~TempDir() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

void WriteFile(const std::string& path, const Bytes& bytes) {
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
}

void WriteFile(const std::string& path, const std::string& text) { WriteFile(path, Bytes(text.begin(), text.end())); }

Bytes ReadFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return Bytes(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

std::string ReadText(const std::string& path) {
    Bytes bytes = ReadFile(path);
    return std::string(bytes.begin(), bytes.end());
}

RunResult RunProgram(const std::filesystem::path& dir, const std::string& program, const std::vector<std::string>& args) {
    std::string command = "cd";
    AppendShellWord(command, dir.string());
    command += " &&";
    AppendShellWord(command, program);
    for (const std::string& arg : args) AppendShellWord(command, arg);
    command += " 2>/dev/null";
    RunResult result{-1, ""};
    std::FILE* pipe = popen(command.c_str(), "r");
    if (!pipe) return result;
    char buffer[4096];
    size_t got;
    while ((got = std::fread(buffer, 1, sizeof buffer, pipe)) > 0) result.output.append(buffer, got);
    int status = pclose(pipe);
    result.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return result;
}
