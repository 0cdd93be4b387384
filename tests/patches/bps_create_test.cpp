#include "patches/bps_create.h"

#include <gtest/gtest.h>

#include <functional>
#include <random>
#include <string>

#include "patches/bps_apply.h"
#include "patches/delta_patch_builder.h"

namespace {

Bytes Build(const Bytes& original, const Bytes& modified) {
    Bytes patch;
    BuildBpsPatch(original.data(), original.size(), modified.data(), modified.size(), patch);
    return patch;
}

// Builds the patch, applies it and expects the modified bytes back; returns
// the patch's size.
size_t RoundTrip(const Bytes& original, const Bytes& modified) {
    Bytes patch = Build(original, modified), made;
    DeltaResult result = ApplyBpsPatch(patch.data(), patch.size(), original.data(), original.size(), made);
    EXPECT_TRUE(result.ok()) << static_cast<int>(result.fault) << " at " << result.at;
    EXPECT_TRUE(made == modified);
    return patch.size();
}

// Bytes that look like a cartridge image: stretches of random data, of
// repeated fill bytes and of small repeating tables.
Bytes ImageLike(size_t size, std::mt19937& random) {
    Bytes bytes(size);
    for (size_t at = 0; at < size;) {
        size_t run = std::min<size_t>(size - at, 16 + random() % 2048);
        switch (random() % 3) {
            case 0: for (size_t i = 0; i < run; ++i) bytes[at + i] = static_cast<unsigned char>(random()); break;
            case 1: std::fill_n(bytes.begin() + at, run, random() % 2 ? 0xFF : 0x00); break;
            default:
                for (size_t i = 0; i < run; ++i) bytes[at + i] = static_cast<unsigned char>(i % 7 * 3 + run);
        }
        at += run;
    }
    return bytes;
}

// A pattern of 1 to 64 random bytes repeated, as padding, tiles and tables are.
Bytes Repeating(size_t size, std::mt19937& random) {
    Bytes pattern = RandomBytes(1 + random() % 64, random), bytes(size);
    for (size_t at = 0; at < size; ++at) bytes[at] = pattern[at % pattern.size()];
    return bytes;
}

void ScatterEdits(Bytes& bytes, size_t count, std::mt19937& random) {
    for (size_t edit = 0; edit < count && !bytes.empty(); ++edit) {
        size_t at = random() % bytes.size(), run = 1 + random() % 32;
        for (size_t i = at; i < at + run && i < bytes.size(); ++i) bytes[i] ^= static_cast<unsigned char>(1 + random() % 255);
    }
}

void MoveBlock(Bytes& bytes, size_t from, size_t length, size_t to) {
    Bytes block(bytes.begin() + from, bytes.begin() + from + length);
    bytes.erase(bytes.begin() + from, bytes.begin() + from + length);
    bytes.insert(bytes.begin() + to, block.begin(), block.end());
}

TEST(BpsCreate, ExactPatchesOfSimplePairs) {
    const Bytes four = {1, 2, 3, 4};
    EXPECT_EQ(Build({}, {}), BpsPatch({}, {}, {}));
    EXPECT_EQ(Build(four, four), BpsPatch(four, four, Numbers({Action(BPS_SOURCE_READ, 4)})));
    EXPECT_EQ(Build({}, four), BpsPatch({}, four, Join({Numbers({Action(BPS_TARGET_READ, 4)}), four})));
    EXPECT_EQ(Build(four, {}), BpsPatch(four, {}, {}));
    // A shortened copy reads what it keeps; a run is one byte then a copy
    // of the byte before.
    const Bytes three = {1, 2, 3}, run = {1, 2, 3, 4, 4, 4, 4, 4, 4, 4, 4};
    EXPECT_EQ(Build(four, three), BpsPatch(four, three, Numbers({Action(BPS_SOURCE_READ, 3)})));
    EXPECT_EQ(Build(four, run), BpsPatch(four, run, Numbers({Action(BPS_SOURCE_READ, 4), Action(BPS_TARGET_COPY, 7),
                                                             3 << 1})));
}

// Data that moved is copied from where it was, however far.
TEST(BpsCreate, FindsMovedAndInsertedData) {
    std::mt19937 random(7);
    const Bytes original = RandomBytes(1 << 20, random);
    Bytes moved = original;
    MoveBlock(moved, 10000, 4096, 900000);
    EXPECT_LE(RoundTrip(original, moved), 60u);

    Bytes bankInserted = original;
    bankInserted.insert(bankInserted.begin() + 0x40000, 0x8000, 0xFF);
    EXPECT_LE(RoundTrip(original, bankInserted), 60u);

    Bytes expanded = original;  // expanded to 32 MiB, padded with 0xFF, its first bank copied at the end
    expanded.resize(32 << 20, 0xFF);
    std::copy_n(original.begin(), 0x8000, expanded.end() - 0x8000);
    EXPECT_LE(RoundTrip(original, expanded), 60u);

    Bytes newTwice = original;  // the same new bank inserted at two places
    const Bytes bank = RandomBytes(0x4000, random);
    newTwice.insert(newTwice.begin() + 0x90000, bank.begin(), bank.end());
    newTwice.insert(newTwice.begin() + 0x20000, bank.begin(), bank.end());
    EXPECT_LE(RoundTrip(original, newTwice), bank.size() + 60);

    Bytes relocated = original;  // a script moved to a new place and partly rewritten
    std::copy_n(original.begin() + 0x1000, 0x3000, relocated.begin() + 0x80000);
    for (size_t i = 0x80000; i < 0x83000; i += 0x100) relocated[i + 5] ^= 0x5A;
    EXPECT_LE(RoundTrip(original, relocated), 48u * 5 + 60);
}

// A copy of 40 bytes is found wherever it starts, from the original and from
// the bytes written before it, in an original whose blocks are all different
// and in one that repeats itself (a long stretch of zeros).
TEST(BpsCreate, FindsShortCopiesAtEveryAlignment) {
    std::mt19937 random(13);
    const Bytes unique = RandomBytes(1 << 18, random);
    Bytes repeating = unique;
    std::fill_n(repeating.begin() + 0x30000, 0x4000, 0);
    const Bytes fresh = RandomBytes(40, random);
    for (const Bytes* original : {&unique, static_cast<const Bytes*>(&repeating)}) {
        for (size_t shift = 0; shift < 8; ++shift) {
            SCOPED_TRACE(shift);
            // Found, the copy costs a few bytes; as literal bytes it costs 40.
            Bytes copied = *original;
            std::copy_n(original->begin() + 0x1001 + shift, 40, copied.begin() + 0x20000);
            EXPECT_LE(RoundTrip(*original, copied), 45u);
            Bytes twice = *original;
            std::copy(fresh.begin(), fresh.end(), twice.begin() + 0x2003 + shift);
            std::copy(fresh.begin(), fresh.end(), twice.begin() + 0x28000);
            EXPECT_LE(RoundTrip(*original, twice), 40u + 55);
        }
    }
}

// After a changed byte, the longest match is taken from where it starts,
// whatever its alignment, even where a shorter one starts there too: here
// 100 bytes from elsewhere whose first 10 also stand in place.
TEST(BpsCreate, TakesTheLongestMatchWhereItStarts) {
    std::mt19937 random(17);
    Bytes original = RandomBytes(1 << 19, random);
    auto to = [](size_t k) { return 0x10000 + k * 1000; };
    auto from = [](size_t k) { return 0x30000 + k * 1000 + 1 + k % 7; };
    for (size_t k = 0; k < 100; ++k)
        for (size_t i = 0; i < 10; ++i) original[from(k) + i] = original[to(k) + i];
    Bytes modified = original;
    for (size_t k = 0; k < 100; ++k) {
        modified[to(k) - 1] ^= 0xFF;
        for (size_t i = 0; i < 100; ++i) modified[to(k) + i] = original[from(k) + i];
    }
    // About eight bytes an edit: the changed byte as a TargetRead, the
    // SourceCopy, the SourceRead after it. Reading the 10 bytes in place
    // first adds an action to nearly every edit (914 bytes in all).
    EXPECT_LE(RoundTrip(original, modified), 830u);
}

TEST(BpsCreate, ScatteredEditsCostLittleMoreThanTheirBytes) {
    std::mt19937 random(11);
    const Bytes original = ImageLike(1 << 20, random);
    Bytes modified = original;
    for (size_t at = 1000; at < modified.size(); at += 10000) modified[at] ^= 0x33;
    // 105 single-byte edits: each costs at most its byte, a literal action
    // and a SourceRead of up to three bytes.
    EXPECT_LE(RoundTrip(original, modified), 105u * 5 + 30);
}

// Generated pairs of every kind rebuild their modified half exactly.
TEST(BpsCreate, RoundTripsGeneratedPairs) {
    std::mt19937 random(20261123);
    const std::function<void(Bytes&)> changes[] = {
        [&](Bytes& b) { ScatterEdits(b, 1 + random() % 40, random); },
        [&](Bytes& b) {
            if (b.size() > 600) MoveBlock(b, random() % (b.size() / 2), 1 + random() % 300, random() % (b.size() / 2));
        },
        [&](Bytes& b) {
            Bytes inserted = RandomBytes(random() % 700, random);
            b.insert(b.begin() + random() % (b.size() + 1), inserted.begin(), inserted.end());
        },
        [&](Bytes& b) {
            size_t at = b.empty() ? 0 : random() % b.size();
            b.erase(b.begin() + at, b.begin() + std::min(b.size(), at + random() % 900));
        },
        [&](Bytes& b) { b.resize(b.size() + random() % 5000, static_cast<unsigned char>(random())); },
        [&](Bytes& b) { b.resize(b.size() / (2 + random() % 3)); },
        [&](Bytes& b) {
            if (b.size() > 64) std::copy_n(b.begin() + random() % (b.size() / 2), b.size() / 4, b.begin() + b.size() / 2);
        },
    };
    for (int round = 0; round < 240; ++round) {
        SCOPED_TRACE(round);
        size_t size = random() % (round % 10 == 0 ? 300000 : 3000);
        Bytes original = round % 3 == 0 ? ImageLike(size, random)
                         : round % 3 == 1 ? RandomBytes(size, random) : Repeating(size, random);
        Bytes modified = original;
        for (int change = 1 + random() % 4; change > 0; --change) changes[random() % std::size(changes)](modified);
        RoundTrip(original, modified);
    }
}

}  // namespace
