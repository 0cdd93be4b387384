#include "script/written_text.h"

#include <cstring>

namespace {

uint32_t Key(const unsigned char* bytes, int32_t length) {
    uint32_t key = 0;
    for (int32_t i = 0; i < length; ++i) key = key << 8 | bytes[i];
    return key;
}

}  // namespace

WrittenText::WrittenText() : firstByte_(256, -1), firstPair_(65536, -1) {}

// Records the sequences that begin at position and end inside the text.
void WrittenText::Index(int32_t position) {
    const unsigned char* at = text_.data() + position;
    int32_t room = static_cast<int32_t>(text_.size()) - position;
    if (room >= 1 && firstByte_[at[0]] < 0) firstByte_[at[0]] = position;
    if (room >= 2 && firstPair_[Key(at, 2)] < 0) firstPair_[Key(at, 2)] = position;
    if (room >= 3) firstTriple_.try_emplace(Key(at, 3), position);
    if (room >= kKeyLength) quadruples_[Key(at, kKeyLength)].push_back(position);
}

void WrittenText::Append(const unsigned char* bytes, int32_t length) {
    if (length <= 0) return;
    int32_t oldSize = static_cast<int32_t>(text_.size());
    text_.insert(text_.end(), bytes, bytes + length);
    // Positions near the old end now have longer sequences to record; the
    // lookups that are already set keep their first offsets.
    int32_t from = oldSize >= kKeyLength ? oldSize - kKeyLength + 1 : 0;
    for (int32_t position = from; position < oldSize + length; ++position) Index(position);
}

int32_t WrittenText::Find(const unsigned char* bytes, int32_t length) const {
    if (length <= 0) return -1;
    if (length == 1) return firstByte_[bytes[0]];
    if (length == 2) return firstPair_[Key(bytes, 2)];
    if (length == 3) {
        auto found = firstTriple_.find(Key(bytes, 3));
        return found == firstTriple_.end() ? -1 : found->second;
    }
    auto found = quadruples_.find(Key(bytes, kKeyLength));
    if (found == quadruples_.end()) return -1;
    int32_t size = static_cast<int32_t>(text_.size());
    for (int32_t position : found->second) {
        if (position > size - length) break;
        if (std::memcmp(text_.data() + position, bytes, static_cast<size_t>(length)) == 0) return position;
    }
    return -1;
}
