#include "patches/patch_numbers.h"

namespace {

constexpr unsigned kLowBits = 0x7F;
constexpr unsigned kLastByte = 0x80;

}  // namespace

void AppendPatchNumber(std::vector<unsigned char>& patch, uint64_t value) {
    for (;;) {
        unsigned char low = static_cast<unsigned char>(value & kLowBits);
        value >>= 7;
        if (value == 0) {
            patch.push_back(static_cast<unsigned char>(kLastByte | low));
            return;
        }
        patch.push_back(low);
        --value;
    }
}

size_t PatchNumberSize(uint64_t value) {
    size_t size = 1;
    for (value >>= 7; value != 0; value >>= 7) {
        --value;
        ++size;
    }
    return size;
}

PatchRead PatchCursor::Number(uint64_t& value) {
    value = 0;
    uint64_t shift = 1;
    for (;;) {
        if (at_ == end_) return PatchRead::Truncated;
        unsigned char byte = patch_[at_++];
        uint64_t part;
        if (__builtin_mul_overflow(uint64_t{byte & kLowBits}, shift, &part) ||
            __builtin_add_overflow(value, part, &value))
            return PatchRead::Overflow;
        if (byte & kLastByte) return PatchRead::Read;
        if (shift > UINT64_MAX >> 7) return PatchRead::Overflow;
        shift <<= 7;
        if (__builtin_add_overflow(value, shift, &value)) return PatchRead::Overflow;
    }
}

bool PatchCursor::Take(uint64_t count, const unsigned char*& bytes) {
    if (count > remaining()) return false;
    bytes = patch_ + at_;
    at_ += static_cast<size_t>(count);
    return true;
}

bool PatchCursor::Byte(unsigned char& byte) {
    if (at_ == end_) return false;
    byte = patch_[at_++];
    return true;
}
