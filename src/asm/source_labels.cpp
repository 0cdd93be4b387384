#include "asm/source_labels.h"

void LabelBook::StartPass() {
    previous_.swap(current_);
    current_.clear();
    previousPlus_.swap(plus_);
    plus_.clear();
    minus_.clear();
    main_.clear();
    sub_.clear();
    missed_ = false;
}

void LabelBook::FinishPass() {
    settled_ = !missed_ && current_.size() == previous_.size() && plus_ == previousPlus_;
    for (const auto& [name, entry] : current_) {
        const auto before = previous_.find(name);
        if (before == previous_.end() || before->second.value != entry.value) settled_ = false;
    }
}

std::string LabelBook::Qualify(std::string_view written) const {
    if (written.substr(0, 2) == "..") return main_ + "_" + sub_ + "_" + std::string(written.substr(2));
    if (written.substr(0, 1) == ".") return main_ + "_" + std::string(written.substr(1));
    return std::string(written);
}

bool LabelBook::Define(std::string_view written, uint32_t value, bool constant) {
    const std::string name = Qualify(written);
    if (!current_.emplace(name, LabelEntry{value, constant}).second) return false;
    if (constant) return true;
    if (written.substr(0, 2) == "..") return true;
    if (written.substr(0, 1) == ".") {
        sub_ = std::string(written.substr(1));
    } else {
        main_ = name;
        sub_.clear();
    }
    return true;
}

std::optional<uint32_t> LabelBook::Find(std::string_view written) const {
    const std::string name = Qualify(written);
    if (const auto found = current_.find(name); found != current_.end()) return found->second.value;
    if (const auto found = previous_.find(name); found != previous_.end()) return found->second.value;
    missed_ = true;
    return std::nullopt;
}

void LabelBook::DefineAnonymous(int count, bool plus, uint32_t value) {
    Anonymous& list = plus ? plus_ : minus_;
    if (list.size() <= static_cast<size_t>(count)) list.resize(static_cast<size_t>(count) + 1);
    list[static_cast<size_t>(count)].push_back(value);
}

std::optional<uint32_t> LabelBook::FindAnonymous(int count, bool plus) const {
    const size_t n = static_cast<size_t>(count);
    if (!plus) {
        if (n >= minus_.size() || minus_[n].empty()) return std::nullopt;
        return minus_[n].back();
    }
    const size_t seen = n < plus_.size() ? plus_[n].size() : 0;
    if (n >= previousPlus_.size() || seen >= previousPlus_[n].size()) {
        missed_ = true;
        return std::nullopt;
    }
    return previousPlus_[n][seen];
}
