// The variable-length numbers of delta patches: seven bits a byte, low bits
// first, the high bit marking the last byte, and the remaining value lowered
// by one after each other byte, so that every number has one encoding.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

void AppendPatchNumber(std::vector<unsigned char>& patch, uint64_t value);

// The number of bytes AppendPatchNumber writes for value.
size_t PatchNumberSize(uint64_t value);

enum class PatchRead { Read, Truncated, Overflow };

// Reads numbers and bytes from the range [at, end) of a patch, never beyond
// it.
class PatchCursor {
public:
    PatchCursor(const unsigned char* patch, size_t at, size_t end) : patch_(patch), at_(at), end_(end) {}

    // Truncated when the number runs past the end, Overflow when its value
    // does not fit in 64 bits; the cursor then stands anywhere in between.
    PatchRead Number(uint64_t& value);
    // Takes count bytes; false, without moving, when fewer remain.
    bool Take(uint64_t count, const unsigned char*& bytes);
    bool Byte(unsigned char& byte);

    size_t at() const { return at_; }
    size_t remaining() const { return end_ - at_; }
    bool AtEnd() const { return at_ == end_; }

private:
    const unsigned char* patch_;
    size_t at_;
    size_t end_;
};
