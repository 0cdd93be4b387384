#include "support/test_support.h"

#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <cstdio>
#include <cstdlib>
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

namespace {
// Runs the words of command line with args in folder dir, capturing standard
// output; standard error goes to the file errors (nowhere when empty).
RunResult RunCommand(const std::filesystem::path& dir, const std::vector<std::string>& line,
                     const std::vector<std::string>& args, const std::string& errors = "") {
    std::string command = "cd";
    AppendShellWord(command, dir.string());
    command += " &&";
    for (const std::string& word : line) AppendShellWord(command, word);
    for (const std::string& arg : args) AppendShellWord(command, arg);
    command += " 2>";
    if (errors.empty())
        command += "/dev/null";
    else
        AppendShellWord(command, errors);
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

const char* Environment(const char* name) {
    const char* value = std::getenv(name);
    return value ? value : "";
}

// Undoes a Windows console's line ends: each carriage return and line feed
// pair back to the line feed that was printed.
std::string WithoutConsoleLineEnds(const std::string& text) {
    std::string plain;
    for (size_t i = 0; i < text.size(); ++i)
        if (text[i] != '\r' || i + 1 == text.size() || text[i + 1] != '\n') plain += text[i];
    return plain;
}
}  // namespace

RunResult RunProgram(const std::filesystem::path& dir, const std::string& program, const std::vector<std::string>& args) {
    return RunCommand(dir, {program}, args);
}

const std::filesystem::path& TrelvaneExecutable() {
    static const std::filesystem::path exe = *Environment("TRELVANE_TEST_EXE") ? Environment("TRELVANE_TEST_EXE")
                                                                                : TRELVANE_EXE;
    return exe;
}

bool TestingWindowsBuild() { return TrelvaneExecutable().extension() == ".exe"; }

namespace {
RunResult RunTrelvaneWith(const std::filesystem::path& exe, const std::filesystem::path& dir,
                          const std::vector<std::string>& args, const std::string& errors) {
    std::vector<std::string> line;
    if (*Environment("TRELVANE_TEST_RUNNER")) line.push_back(Environment("TRELVANE_TEST_RUNNER"));
    line.push_back(std::filesystem::absolute(exe).string());
    RunResult result = RunCommand(dir, line, args, errors);
    if (TestingWindowsBuild()) result.output = WithoutConsoleLineEnds(result.output);
    return result;
}
}  // namespace

RunResult RunTrelvaneAt(const std::filesystem::path& exe, const std::filesystem::path& dir,
                        const std::vector<std::string>& args) {
    return RunTrelvaneWith(exe, dir, args, "");
}

VerbResult RunVerb(const std::filesystem::path& dir, const std::vector<std::string>& args) {
    TempDir errorsDir;
    const std::string errors = errorsDir / "stderr.txt";
    const RunResult run = RunTrelvaneWith(TrelvaneExecutable(), dir, args, errors);
    std::string text = ReadText(errors);
    if (TestingWindowsBuild()) text = WithoutConsoleLineEnds(text);
    return VerbResult{run.status, run.output, text};
}

std::filesystem::path InstallTrelvane(const std::filesystem::path& folder) {
    const std::filesystem::path& exe = TrelvaneExecutable();
    std::filesystem::create_directories(folder);
    std::filesystem::copy_file(exe, folder / exe.filename());
    if (TestingWindowsBuild()) std::filesystem::copy_file(exe.parent_path() / "trelvane.dll", folder / "trelvane.dll");
    return folder / exe.filename();
}
