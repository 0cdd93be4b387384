#include "script/pointer_candidates.h"

#include <algorithm>

#include "core/snes_mapping.h"
#include "script/pointer_form.h"
#include "script/pointer_width.h"

namespace {

constexpr uint32_t kNesWindows[] = {0x8000, 0xA000, 0xC000, 0xE000};
constexpr int64_t kNesBank = 0x2000;  // the smallest bank the windows switch
constexpr int64_t kGameBoyBank = 0x4000;
constexpr int kMaps[] = {POINTER_MAP_LOROM, POINTER_MAP_HIROM, POINTER_MAP_EXHIROM};

class Candidates {
public:
    Candidates(int64_t target, int size) : target_(target), size_(size) {}

    // A pointer of size bytes whose value plus base is the target.
    void AddBase(int size, int64_t value) {
        if (size_ != 0 && size != size_) return;
        if (value < 0 || value > PointerWidthMask(size)) return;
        PointerForm form = PlainPointerForm(size, -1);
        form.base = static_cast<int>(target_ - value);
        AddBothOrders(form, static_cast<uint32_t>(value));
    }

    // A 24-bit pointer through a mapping, in the mapping's banks and their
    // mirrors.
    void AddMap(int map) {
        const int size = size_ == 0 ? 3 : size_;
        if (size < 3 || target_ < 0 || target_ > 0xFFFFFFFF) return;
        PointerForm form = PlainPointerForm(size, -1);
        form.map = map;
        std::optional<uint32_t> value = ValueForTarget(form, target_, 0);
        if (!value) return;
        AddBothOrders(form, *value);
        std::optional<uint32_t> mirror = ValueForTarget(form, target_, 0x800000 ^ (*value & 0x800000));
        if (mirror && *mirror != *value) AddBothOrders(form, *mirror);
    }

    std::vector<PointerCandidate> found;

private:
    void AddBothOrders(PointerForm form, uint32_t value) {
        for (int big = 0; big <= (form.size > 1 ? 1 : 0); ++big) {
            form.bigEndian = big;
            found.push_back({form, value});
        }
    }

    int64_t target_;
    int size_;
};

void AddSystemBases(Candidates& candidates, int64_t target, int romType) {
    const bool every = romType != ROM_NES && romType != ROM_SNES && romType != ROM_GB;
    if (every || romType == ROM_NES)
        for (uint32_t window : kNesWindows) candidates.AddBase(2, window + target % kNesBank);
    if (every || romType == ROM_GB) candidates.AddBase(2, target < kGameBoyBank ? target : kGameBoyBank + target % kGameBoyBank);
    if (every || romType == ROM_SNES) {
        candidates.AddBase(2, 0x8000 | (target & 0x7FFF));
        candidates.AddBase(2, target & 0xFFFF);
        for (int map : kMaps) candidates.AddMap(map);
    }
    for (int size = 2; size <= 4; ++size) candidates.AddBase(size, target);
}

bool SameCandidate(const PointerCandidate& a, const PointerCandidate& b) {
    return a.value == b.value && a.form.size == b.form.size && a.form.bigEndian == b.form.bigEndian &&
           a.form.base == b.form.base && a.form.map == b.form.map;
}

}  // namespace

std::vector<PointerCandidate> PointerCandidates(int64_t target, int romType, int size, bool hasBase, int base,
                                                int map) {
    Candidates candidates(target, size);
    if (map != POINTER_MAP_NONE) candidates.AddMap(map);
    else if (hasBase) candidates.AddBase(size == 0 ? 2 : size, target - base);
    else AddSystemBases(candidates, target, romType);
    std::vector<PointerCandidate>& found = candidates.found;
    for (size_t i = 0; i < found.size(); ++i)
        found.erase(std::remove_if(found.begin() + static_cast<int64_t>(i) + 1, found.end(),
                                   [&](const PointerCandidate& c) { return SameCandidate(c, found[i]); }),
                    found.end());
    return found;
}
