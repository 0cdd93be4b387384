#include "asm/included_files.h"

#include "core/system_path.h"
#include "asm/patch_limits.h"

namespace {

// What names the file whatever the spelling or links that lead to it; empty when the file
// does not exist (it will not open either). The reader drops the dot an empty extension leaves.
std::filesystem::path Identity(std::string name) {
    if (!name.empty() && name.back() == '.') name.pop_back();
    std::error_code error;
    std::filesystem::path identity = std::filesystem::canonical(SystemPath(name.c_str()), error);
    return error ? std::filesystem::path() : identity;
}

}  // namespace

void IncludedFiles::Start(const std::string& name) {
    Clear();
    stack_.push_back(Identity(name));
    open_.insert(stack_.back());
}

IncludedFiles::Refusal IncludedFiles::Check(const std::string& name) const {
    const std::filesystem::path identity = Identity(name);
    if (!identity.empty() && open_.count(identity) > 0) return Refusal::ALREADY_OPEN;
    if (Depth() >= MAX_INCLUDE_DEPTH) return Refusal::TOO_DEEP;
    if (includes_ >= MAX_INCLUDES) return Refusal::TOO_MANY;
    return Refusal::NONE;
}

void IncludedFiles::Enter(const std::string& name) {
    stack_.push_back(Identity(name));
    open_.insert(stack_.back());
    ++includes_;
}

void IncludedFiles::Leave() {
    if (stack_.empty()) return;
    open_.erase(open_.find(stack_.back()));
    stack_.pop_back();
}

void IncludedFiles::Clear() {
    stack_.clear();
    open_.clear();
    includes_ = 0;
}
