// Shared helpers of the unit and end-to-end tests: a private temporary
// folder, whole-file input and output, and running the built executable.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <ostream>
#include <random>
#include <string>
#include <vector>

using Bytes = std::vector<unsigned char>;

// A fresh folder under the system's temporary directory, removed with the object.
class TempDir {
public:
    TempDir();
    ~TempDir();
    TempDir(const TempDir&) = delete;
    TempDir& operator=(const TempDir&) = delete;
    const std::filesystem::path& path() const { return path_; }
    std::string operator/(const std::string& name) const { return (path_ / name).string(); }

private:
    std::filesystem::path path_;
};

void WriteFile(const std::string& path, const Bytes& bytes);
void WriteFile(const std::string& path, const std::string& text);
Bytes ReadFile(const std::string& path);
std::string ReadText(const std::string& path);
inline bool FileExists(const std::string& path) { return std::filesystem::exists(path); }

// size bytes drawn from random.
inline Bytes RandomBytes(size_t size, std::mt19937& random) {
    Bytes bytes(size);
    for (auto& byte : bytes) byte = static_cast<unsigned char>(random());
    return bytes;
}

inline bool StartsWith(const std::string& text, const std::string& start) {
    return text.compare(0, start.size(), start) == 0;
}

inline bool EndsWith(const std::string& text, const std::string& end) {
    return text.size() >= end.size() && text.compare(text.size() - end.size(), end.size(), end) == 0;
}

struct RunResult {
    int status;          // exit status as the shell sees it (0 to 255)
    std::string output;  // everything written to standard output
    bool operator==(const RunResult&) const = default;
    friend void PrintTo(const RunResult& run, std::ostream* out) { *out << run.status << " \"" << run.output << '"'; }
};

// Runs program (a path) with args in folder dir.
RunResult RunProgram(const std::filesystem::path& dir, const std::string& program, const std::vector<std::string>& args);

// The trelvane executable that the end-to-end tests run: the one built with
// the tests, unless the environment names another in TRELVANE_TEST_EXE,
// together with the program that runs it in TRELVANE_TEST_RUNNER (the Windows
// build, trelvane.exe, under scripts/wine-run.sh).
const std::filesystem::path& TrelvaneExecutable();

// True when the executable under test is a Windows one.
bool TestingWindowsBuild();

// Runs the trelvane executable at exe with args in folder dir. A Windows
// console turns each line feed printed into a carriage return and line feed;
// the output is given back as the program wrote it.
RunResult RunTrelvaneAt(const std::filesystem::path& exe, const std::filesystem::path& dir,
                        const std::vector<std::string>& args);

// Runs the trelvane executable under test with args in folder dir.
inline RunResult RunTrelvane(const std::filesystem::path& dir, const std::vector<std::string>& args) {
    return RunTrelvaneAt(TrelvaneExecutable(), dir, args);
}

struct VerbResult {
    int status;          // exit status as the shell sees it (0 to 255)
    std::string output;  // standard output
    std::string errors;  // standard error
    bool operator==(const VerbResult&) const = default;
    friend void PrintTo(const VerbResult& run, std::ostream* out) {
        *out << run.status << " \"" << run.output << "\" \"" << run.errors << '"';
    }
};

// Runs the trelvane executable under test with args in folder dir, keeping
// standard error apart: for the verbs, which print their errors there.
VerbResult RunVerb(const std::filesystem::path& dir, const std::vector<std::string>& args);

// A verb's refusal: status 1, nothing on standard output, a message on
// standard error.
inline void ExpectRefusal(const VerbResult& run) {
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.output, "");
    EXPECT_NE(run.errors, "");
}

// Copies the executable under test, with the library it loads from its own
// folder on Windows, into folder; returns the copy's path.
std::filesystem::path InstallTrelvane(const std::filesystem::path& folder);
