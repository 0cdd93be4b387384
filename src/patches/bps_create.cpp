#include "patches/bps_create.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>

#include "patches/block_chains.h"
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
// The original's blocks are searched through their chains while no block's
// bytes occur this often; an original that repeats itself more is searched
// through its suffix array, whose search time does not grow with repeats.
constexpr size_t kMostRepeats = 16;
// Chain links looked at for one block of the modified file.
constexpr size_t kMostLinks = 64;
// Repeats of the bytes just written with a period up to this are looked for
// directly; longer distances are found through the written blocks' chains.
constexpr size_t kLongestPeriod = BlockChains::SPACING;
// The chains for the block this far ahead are fetched into the cache while
// a position is searched.
constexpr size_t kFetchAhead = 2 * BlockChains::SPACING;
// Inside long literal stretches the search steps faster: by two more
// positions for each this many literal bytes. A match found late is
// extended backwards over the literal bytes it skipped.
constexpr size_t kLiteralsPerStep = 256;
constexpr size_t kLargestStep = 9;

// The last positions of the modified file whose block an index was found
// not to hold, so that the overlapping probes of neighbouring positions look
// each block up once.
class AbsentBlocks {
public:
    bool Holds(size_t at) const { return slots_[at % kSlots] == at + 1; }
    void Note(size_t at) { slots_[at % kSlots] = at + 1; }
    void Clear() { slots_.fill(0); }

private:
    static constexpr size_t kSlots = 2 * BlockChains::SPACING;
    std::array<size_t, kSlots> slots_{};
};

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
          sourceChains_(ChainOriginal(source, sourceSize)), targetChains_(target, targetSize), encoder_(patch) {
        if (!sourceChains_) sourceSuffixes_.emplace(source, sourceSize);
    }

    void Build() {
        Match ahead;  // the best match a position past out_, when already found
        size_t aheadAt = SIZE_MAX;
        while (out_ < targetSize_) {
            Match match = aheadAt == out_ ? ahead : Best(out_);
            // A match is weighed against the one a position later, which may
            // save more even after a literal byte; a long one is taken as it
            // is, so that no stretch is measured again and again.
            if (match.gain >= LeastGain(match) && match.length < kLazyBelow) {
                aheadAt = out_ + 1;
                ahead = Best(aheadAt);
            }
            if (match.gain < LeastGain(match) || (match.length < kLazyBelow && ahead.gain > match.gain + 1)) {
                out_ += Step();
                continue;
            }
            aheadAt = SIZE_MAX;
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

    static std::optional<BlockChains> ChainOriginal(const unsigned char* source, size_t sourceSize) {
        std::optional<BlockChains> chains(std::in_place, source, sourceSize);
        if (!chains->AddUpTo(sourceSize, kMostRepeats)) chains.reset();
        return chains;
    }

    Match Best(size_t at) {
        Match best;
        if (at >= targetSize_) return best;
        Consider(best, SourceMatch(at, at, BPS_SOURCE_READ));
        if (copied_ && at + displacement_ < sourceSize_ && displacement_ != 0)
            Consider(best, SourceMatch(at, at + displacement_, BPS_SOURCE_COPY));
        if (best.length >= kLongEnough) return best;
        ConsiderSourceCopies(best, at);
        ConsiderTargetCopies(best, at);
        return best;
    }

    void ConsiderSourceCopies(Match& best, size_t at) {
        auto consider = [&](size_t from) {
            if (from != at) Consider(best, SourceMatch(at, from, BPS_SOURCE_COPY));
        };
        if (sourceSuffixes_) {
            for (size_t from : sourceSuffixes_->Neighbours(target_ + at, targetSize_ - at))
                if (from != SuffixSearch::NONE) consider(from);
        } else {
            ForEachAlignedBlock(*sourceChains_, sourceAbsent_, at, consider);
        }
    }

    void ConsiderTargetCopies(Match& best, size_t at) {
        ChainWrittenBlocks(at);
        ForEachAlignedBlock(targetChains_, targetAbsent_, at, [&](size_t from) {
            if (from < at) Consider(best, TargetMatch(at, from));
        });
        for (size_t period = 1; period <= kLongestPeriod && period <= at; ++period)
            Consider(best, TargetMatch(at, at - period));
    }

    // Calls visit(from) for every place `from` whose indexed block equals the
    // modified bytes the same distance past `at`: every place where 15 or
    // more of the bytes at `at` occur is among them.
    template <class Visit>
    void ForEachAlignedBlock(const BlockChains& chains, AbsentBlocks& absent, size_t at, Visit&& visit) const {
        if (targetSize_ - at >= kFetchAhead + BlockChains::KEY_BYTES) chains.Prefetch(target_ + at + kFetchAhead);
        for (size_t shift = 0; shift < BlockChains::SPACING && targetSize_ - at >= shift + BlockChains::KEY_BYTES;
             ++shift) {
            if (absent.Holds(at + shift)) continue;
            bool held = false;
            chains.ForEachEqual(target_ + at + shift, kMostLinks, [&](size_t block) {
                held = true;
                if (block >= shift) visit(block - shift);
            });
            if (!held) absent.Note(at + shift);
        }
    }

    // Indexes the blocks of the modified file that start before `at`.
    void ChainWrittenBlocks(size_t at) {
        size_t before = targetChains_.Added();
        targetChains_.AddUpTo(at);
        if (targetChains_.Added() != before) targetAbsent_.Clear();
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
    // The original is searched through one of these.
    std::optional<BlockChains> sourceChains_;
    std::optional<SuffixSearch> sourceSuffixes_;
    BlockChains targetChains_;  // the blocks of the modified file passed so far
    AbsentBlocks sourceAbsent_;
    AbsentBlocks targetAbsent_;
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
