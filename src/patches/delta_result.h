// What applying a delta patch (BPS or UPS) found wrong, if anything, with
// the figures its message gives.
#pragma once

#include <cstdint>

// Files larger than this are neither made nor patched: a patch's header
// could otherwise ask for any amount of memory.
constexpr uint64_t DELTA_LARGEST_FILE = uint64_t{1} << 30;

enum class DeltaFault {
    None,
    NotPatch,      // wrong magic, or too short for a header and a footer
    PatchCrc,      // the patch's own CRC-32 differs from its footer
    Truncated,     // a number or data runs past the actions (at)
    Overflow,      // a number does not fit in 64 bits (at)
    OutOfBounds,   // an action reads or writes outside the files (at)
    Trailing,      // bytes follow the action that completes the result (at)
    Incomplete,    // the actions make actual bytes of expected
    TooLarge,      // a file of actual bytes, over DELTA_LARGEST_FILE
    WrongSource,   // the file's CRC-32 is actual, the patch wants expected (or undoes alternative)
    ResultCrc,     // the result's CRC-32 is actual, the patch records expected
};

struct DeltaResult {
    DeltaFault fault = DeltaFault::None;
    uint64_t at = 0;           // patch offset of the faulty number or action
    uint64_t expected = 0;
    uint64_t actual = 0;
    uint64_t alternative = 0;  // UPS: the CRC-32 of the file the patch turns back
    bool twoWay = false;       // a UPS source: either side of the patch fits

    bool ok() const { return fault == DeltaFault::None; }
};

inline DeltaResult DeltaFailure(DeltaFault fault, uint64_t at = 0) { return DeltaResult{fault, at}; }

inline DeltaResult DeltaMismatch(DeltaFault fault, uint64_t expected, uint64_t actual) {
    return DeltaResult{fault, 0, expected, actual};
}
