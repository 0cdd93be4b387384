// Writes the actions of a BPS patch, keeping the relative positions that
// SourceCopy and TargetCopy offsets are counted from, and tells what each
// action would cost in patch bytes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "patches/bps_apply.h"

class BpsEncoder {
public:
    explicit BpsEncoder(std::vector<unsigned char>& patch) : patch_(patch) {}

    void SourceRead(size_t length) { AppendAction(BPS_SOURCE_READ, length); }
    void TargetRead(const unsigned char* bytes, size_t length);
    void SourceCopy(size_t from, size_t length) { AppendCopy(BPS_SOURCE_COPY, sourceRel_, from, length); }
    void TargetCopy(size_t from, size_t length) { AppendCopy(BPS_TARGET_COPY, targetRel_, from, length); }

    // Patch bytes of each action, literal bytes not counted.
    static size_t ActionCost(size_t length);
    size_t SourceCopyCost(size_t from, size_t length) const { return CopyCost(sourceRel_, from, length); }
    size_t TargetCopyCost(size_t from, size_t length) const { return CopyCost(targetRel_, from, length); }

private:
    void AppendAction(BpsAction action, size_t length);
    void AppendCopy(BpsAction action, uint64_t& relative, size_t from, size_t length);
    static uint64_t OffsetNumber(uint64_t relative, size_t from);
    static size_t CopyCost(uint64_t relative, size_t from, size_t length);

    std::vector<unsigned char>& patch_;
    uint64_t sourceRel_ = 0;
    uint64_t targetRel_ = 0;
};
