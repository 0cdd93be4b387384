// Hand-built BPS and UPS patches for the tests: the parts are given, the
// footer's CRCs are computed (or overridden to make them wrong).
#pragma once

#include <initializer_list>
#include <optional>
#include <string>

#include "patches/crc32.h"
#include "core/little_endian.h"
#include "patches/patch_numbers.h"
#include "support/test_support.h"

inline uint32_t CrcOf(const Bytes& bytes) { return Crc32(bytes.data(), bytes.size()); }

inline Bytes Numbers(std::initializer_list<uint64_t> values) {
    Bytes bytes;
    for (uint64_t value : values) AppendPatchNumber(bytes, value);
    return bytes;
}

inline Bytes Join(std::initializer_list<Bytes> parts) {
    Bytes joined;
    for (const Bytes& part : parts) joined.insert(joined.end(), part.begin(), part.end());
    return joined;
}

inline Bytes Crc4(uint32_t crc) {
    Bytes bytes(4);
    WriteLittleEndian(bytes.data(), crc, 4);
    return bytes;
}

struct FooterCrcs {
    std::optional<uint32_t> source = std::nullopt, target = std::nullopt, patch = std::nullopt;
};

// magic + body + footer; the CRCs of source and target unless overridden.
inline Bytes DeltaPatch(const std::string& magic, const Bytes& body, const Bytes& source, const Bytes& target,
                        FooterCrcs crcs = {}) {
    Bytes patch = Join({Bytes(magic.begin(), magic.end()), body, Crc4(crcs.source.value_or(CrcOf(source))),
                        Crc4(crcs.target.value_or(CrcOf(target)))});
    Bytes footer = Crc4(crcs.patch.value_or(CrcOf(patch)));
    return Join({patch, footer});
}

// A BPS patch from source to target with these actions (empty metadata).
inline Bytes BpsPatch(const Bytes& source, const Bytes& target, const Bytes& actions, FooterCrcs crcs = {}) {
    return DeltaPatch("BPS1", Join({Numbers({source.size(), target.size(), 0}), actions}), source, target, crcs);
}

// A UPS patch from input to output with these hunks.
inline Bytes UpsPatch(const Bytes& input, const Bytes& output, const Bytes& hunks, FooterCrcs crcs = {}) {
    return DeltaPatch("UPS1", Join({Numbers({input.size(), output.size()}), hunks}), input, output, crcs);
}

// The number of a BPS action.
inline uint64_t Action(int kind, uint64_t length) { return (length - 1) << 2 | static_cast<uint64_t>(kind); }
