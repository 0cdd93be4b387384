// The script files a patch file is reading, outermost first: a file already
// being read may not be included again, and the depth of includes and their
// number over the whole patch file are bounded.
#pragma once

#include <filesystem>
#include <set>
#include <string>
#include <vector>

class IncludedFiles {
public:
    enum class Refusal { NONE, ALREADY_OPEN, TOO_DEEP, TOO_MANY };

    // The main script starts the list again.
    void Start(const std::string& name);
    // Why name may not be included now, or NONE. A constant-time check of the open files.
    Refusal Check(const std::string& name) const;
    // name is now being read (after Check said NONE and the file opened).
    void Enter(const std::string& name);
    // The innermost file has ended.
    void Leave();
    // Files being read: 1 while only the main script is.
    int Depth() const { return static_cast<int>(stack_.size()); }
    void Clear();

private:
    std::vector<std::filesystem::path> stack_;  // the identity of each file being read
    std::multiset<std::filesystem::path> open_;  // the same identities, for the look-up
    int includes_ = 0;
};
