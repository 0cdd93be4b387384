#include "patches/bps_apply.h"

#include <algorithm>
#include <cstring>

#include "patches/crc32.h"
#include "patches/delta_frame.h"

namespace {

// Runs the actions of a patch whose frame has been read. Without buffers it
// only checks them against the sizes the header gives.
class BpsActions {
public:
    BpsActions(const unsigned char* patch, const DeltaFrame& frame, size_t actions)
        : frame_(frame), cursor_(patch, actions, frame.footer) {}

    DeltaResult Run(const unsigned char* source, unsigned char* target) {
        source_ = source;
        target_ = target;
        while (!cursor_.AtEnd()) {
            size_t start = cursor_.at();
            if (out_ == frame_.targetSize) return DeltaFailure(DeltaFault::Trailing, start);
            DeltaResult done = Action();
            if (!done.ok()) return done.fault == DeltaFault::OutOfBounds ? DeltaFailure(done.fault, start) : done;
        }
        if (out_ != frame_.targetSize) return DeltaMismatch(DeltaFault::Incomplete, frame_.targetSize, out_);
        return {};
    }

private:
    DeltaResult Action() {
        uint64_t n;
        DeltaResult read = ReadDeltaNumber(cursor_, n);
        if (!read.ok()) return read;
        uint64_t length = (n >> 2) + 1;
        if (length > frame_.targetSize - out_) return DeltaFailure(DeltaFault::OutOfBounds);
        switch (n & 3) {
            case BPS_SOURCE_READ: read = SourceRead(length); break;
            case BPS_TARGET_READ: read = TargetRead(length); break;
            case BPS_SOURCE_COPY: read = SourceCopy(length); break;
            default: read = TargetCopy(length); break;
        }
        if (read.ok()) out_ += length;
        return read;
    }

    DeltaResult SourceRead(uint64_t length) {
        if (out_ > frame_.sourceSize || length > frame_.sourceSize - out_)
            return DeltaFailure(DeltaFault::OutOfBounds);
        if (target_) std::memcpy(target_ + out_, source_ + out_, length);
        return {};
    }

    DeltaResult TargetRead(uint64_t length) {
        size_t start = cursor_.at();
        const unsigned char* bytes;
        if (!cursor_.Take(length, bytes)) return DeltaFailure(DeltaFault::Truncated, start);
        if (target_) std::memcpy(target_ + out_, bytes, length);
        return {};
    }

    DeltaResult SourceCopy(uint64_t length) {
        DeltaResult moved = MoveRelative(sourceRel_);
        if (!moved.ok()) return moved;
        if (sourceRel_ >= frame_.sourceSize || length > frame_.sourceSize - sourceRel_)
            return DeltaFailure(DeltaFault::OutOfBounds);
        if (target_) std::memcpy(target_ + out_, source_ + sourceRel_, length);
        sourceRel_ += length;
        return {};
    }

    // Copies from the target written so far; the bytes copied may be those
    // being written, which repeats the last (out - targetRel) bytes.
    DeltaResult TargetCopy(uint64_t length) {
        DeltaResult moved = MoveRelative(targetRel_);
        if (!moved.ok()) return moved;
        if (targetRel_ >= out_) return DeltaFailure(DeltaFault::OutOfBounds);
        if (target_) RepeatTarget(targetRel_, out_, length);
        targetRel_ += length;
        return {};
    }

    // Copies length bytes from target[from] on to target[to] on, doubling the
    // chunk: once copied, the bytes from from on repeat with a longer period.
    void RepeatTarget(uint64_t from, uint64_t to, uint64_t length) {
        while (length > 0) {
            uint64_t chunk = std::min(length, to - from);
            std::memcpy(target_ + to, target_ + from, chunk);
            to += chunk;
            length -= chunk;
        }
    }

    // Moves a relative position by the signed offset that follows: the low
    // bit is the sign, the other bits the distance.
    DeltaResult MoveRelative(uint64_t& position) {
        uint64_t offset;
        DeltaResult read = ReadDeltaNumber(cursor_, offset);
        if (!read.ok()) return read;
        uint64_t distance = offset >> 1;
        if (offset & 1) {
            if (distance > position) return DeltaFailure(DeltaFault::OutOfBounds);
            position -= distance;
        } else if (__builtin_add_overflow(position, distance, &position)) {
            return DeltaFailure(DeltaFault::OutOfBounds);
        }
        return {};
    }

    const DeltaFrame& frame_;
    PatchCursor cursor_;
    const unsigned char* source_ = nullptr;
    unsigned char* target_ = nullptr;
    uint64_t out_ = 0;
    uint64_t sourceRel_ = 0;
    uint64_t targetRel_ = 0;
};

}  // namespace

DeltaResult ApplyBpsPatch(const unsigned char* patch, size_t size, const unsigned char* source, size_t sourceSize,
                          std::vector<unsigned char>& target) {
    DeltaFrame frame;
    DeltaResult result = ReadDeltaFrame(patch, size, BPS_MAGIC, frame);
    if (!result.ok()) return result;
    PatchCursor header(patch, frame.body, frame.footer);
    uint64_t metadataSize;
    const unsigned char* metadata;
    result = ReadDeltaNumber(header, metadataSize);
    if (!result.ok()) return result;
    if (!header.Take(metadataSize, metadata)) return DeltaFailure(DeltaFault::Truncated, header.at());
    result = BpsActions(patch, frame, header.at()).Run(nullptr, nullptr);
    if (!result.ok()) return result;
    uint32_t sourceCrc = Crc32(source, sourceSize);
    if (sourceSize != frame.sourceSize || sourceCrc != frame.sourceCrc)
        return DeltaMismatch(DeltaFault::WrongSource, frame.sourceCrc, sourceCrc);
    target.assign(frame.targetSize, 0);
    BpsActions(patch, frame, header.at()).Run(source, target.data());
    uint32_t targetCrc = Crc32(target.data(), target.size());
    if (targetCrc != frame.targetCrc) return DeltaMismatch(DeltaFault::ResultCrc, frame.targetCrc, targetCrc);
    return {};
}
