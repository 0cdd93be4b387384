#include "patches/bps_create.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "patches/block_index.h"
#include "patches/bps_encoder.h"
#include "patches/byte_compare.h"
#include "patches/crc32.h"
#include "patches/delta_frame.h"
#include "patches/patch_numbers.h"
#include "patches/suffix_search.h"

namespace {

constexpr unsigned char kMagic[] = {'B', 'P', 'S', '1'};
// Matches shorter than this are weighed against the one a position later.
constexpr size_t kLazyBelow = 4096;
// Data read in place or moved along with the last copy is taken without
// looking further once it is this long.
constexpr size_t kLongEnough = 64;
// Slots for the new bytes of the modified file, which are indexed as they
// are passed: about one for every kNewBlockShare bytes, at most kMostNewBlocks.
constexpr size_t kNewBlockShare = 8;
constexpr size_t kMostNewBlocks = 1 << 18;
// Periods of the repeats looked for in the modified bytes written so far.
constexpr size_t kLongestPeriod = 4;
// Inside long literal stretches the search steps faster: by two more
// positions for each this many literal bytes. A match found late is
// extended backwards over the literal bytes it skipped.
constexpr size_t kLiteralsPerStep = 256;
constexpr size_t kLargestStep = 9;

struct Match {
    BpsAction action = BPS_TARGET_READ;
    size_t to = 0;      // where it starts in the modified file
    size_t from = 0;    // where it is copied from
    size_t length = 0;
    ptrdiff_t gain = 0;  // literal bytes saved less the action's cost
};

class DeltaBuilder {
public:
    DeltaBuilder(const unsigned char* source, size_t sourceSize, const unsigned char* target, size_t targetSize,
                 std::vector<unsigned char>& patch)
        : source_(source), sourceSize_(sourceSize), target_(target), targetSize_(targetSize),
          sourceSearch_(source, sourceSize),
          targetIndex_(target, targetSize, std::min(targetSize / kNewBlockShare, kMostNewBlocks)), encoder_(patch) {}

    void Build() {
        while (out_ < targetSize_) {
            Match match = Best(out_);
            // A match is weighed against the one a position later, which may
            // save more even after a literal byte; a long one is taken as it
            // is, so that no stretch is measured again and again.
            if (match.gain < LeastGain(match) ||
                (match.length < kLazyBelow && Best(out_ + 1).gain > match.gain + 1)) {
                targetIndex_.Add(out_);
                out_ += Step();
                continue;
            }
            Emit(match);
        }
        FlushLiteral(targetSize_);
    }

private:
    // What a match must save over literal bytes to be worth taking: a byte
    // when literal bytes precede it (they then need their own action) and
    // one when more are likely to follow (they need another).
    ptrdiff_t LeastGain(const Match& match) const {
        return (match.to > literal_ ? 1 : 0) + (match.to + match.length < targetSize_ ? 1 : 0);
    }

    size_t Step() const {
        size_t step = 1 + (out_ - literal_) / kLiteralsPerStep * 2;
        return std::min({step, kLargestStep, targetSize_ - out_});
    }

    Match Best(size_t at) const {
        Match best;
        if (at >= targetSize_) return best;
        Consider(best, SourceMatch(at, at, BPS_SOURCE_READ));
        if (copied_ && at + displacement_ < sourceSize_ && displacement_ != 0)
            Consider(best, SourceMatch(at, at + displacement_, BPS_SOURCE_COPY));
        if (best.length >= kLongEnough) return best;
        for (size_t from : sourceSearch_.Neighbours(target_ + at, targetSize_ - at))
            if (from != SuffixSearch::NONE && from != at) Consider(best, SourceMatch(at, from, BPS_SOURCE_COPY));
        if (targetSize_ - at >= BlockIndex::KEY_BYTES) {
            size_t from = targetIndex_.Find(target_ + at);
            if (from != BlockIndex::NONE && from < at) Consider(best, TargetMatch(at, from));
        }
        for (size_t period = 1; period <= kLongestPeriod && period <= at; ++period)
            Consider(best, TargetMatch(at, at - period));
        return best;
    }

    static void Consider(Match& best, const Match& candidate) {
        if (candidate.gain > best.gain) best = candidate;
    }

    // The match of the modified bytes at `at` with the original at `from`,
    // extended backwards over literal bytes not yet written.
    Match SourceMatch(size_t at, size_t from, BpsAction action) const {
        Match match;
        if (from >= sourceSize_) return match;
        size_t length = CommonLength(source_ + from, target_ + at, std::min(sourceSize_ - from, targetSize_ - at));
        if (length == 0) return match;
        size_t back = 0;
        while (at - back > literal_ && from - back > 0 && source_[from - back - 1] == target_[at - back - 1]) ++back;
        match.to = at - back;
        match.from = from - back;
        match.length = length + back;
        // Only a copy to the same position can be read in place.
        match.action = match.to == match.from ? BPS_SOURCE_READ : action;
        size_t cost = match.action == BPS_SOURCE_READ ? BpsEncoder::ActionCost(match.length)
                                                      : encoder_.SourceCopyCost(match.from, match.length);
        match.gain = static_cast<ptrdiff_t>(match.length) - static_cast<ptrdiff_t>(cost);
        return match;
    }

    // The modified bytes at `at` repeating those from `from` on (which may
    // run into the bytes being repeated).
    Match TargetMatch(size_t at, size_t from) const {
        Match match;
        match.length = CommonLength(target_ + from, target_ + at, targetSize_ - at);
        if (match.length == 0) return match;
        match.action = BPS_TARGET_COPY;
        match.to = at;
        match.from = from;
        match.gain = static_cast<ptrdiff_t>(match.length) -
                     static_cast<ptrdiff_t>(encoder_.TargetCopyCost(match.from, match.length));
        return match;
    }

    void Emit(const Match& match) {
        FlushLiteral(match.to);
        switch (match.action) {
            case BPS_SOURCE_READ: encoder_.SourceRead(match.length); break;
            case BPS_SOURCE_COPY:
                encoder_.SourceCopy(match.from, match.length);
                displacement_ = match.from - match.to;
                copied_ = true;
                break;
            default: encoder_.TargetCopy(match.from, match.length); break;
        }
        out_ = literal_ = match.to + match.length;
    }

    void FlushLiteral(size_t end) {
        if (end > literal_) encoder_.TargetRead(target_ + literal_, end - literal_);
        literal_ = end;
    }

    const unsigned char* source_;
    size_t sourceSize_;
    const unsigned char* target_;
    size_t targetSize_;
    SuffixSearch sourceSearch_;  // every suffix of the original
    BlockIndex targetIndex_;  // the blocks of the new bytes passed so far
    BpsEncoder encoder_;
    size_t out_ = 0;
    size_t literal_ = 0;  // the first modified byte not yet written
    // The last SourceCopy's distance from the modified position to the
    // original one (modulo the size type): following data usually moved
    // with it.
    size_t displacement_ = 0;
    bool copied_ = false;
};

}  // namespace

void BuildBpsPatch(const unsigned char* original, size_t originalSize, const unsigned char* modified,
                   size_t modifiedSize, std::vector<unsigned char>& patch) {
    patch.assign(std::begin(kMagic), std::end(kMagic));
    AppendPatchNumber(patch, originalSize);
    AppendPatchNumber(patch, modifiedSize);
    AppendPatchNumber(patch, 0);
    DeltaBuilder(original, originalSize, modified, modifiedSize, patch).Build();
    AppendDeltaFooter(patch, Crc32(original, originalSize), Crc32(modified, modifiedSize));
}
