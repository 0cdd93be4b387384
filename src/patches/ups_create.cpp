#include "patches/ups_create.h"

#include <algorithm>
#include <iterator>

#include "patches/crc32.h"
#include "patches/delta_frame.h"
#include "patches/patch_numbers.h"
#include "patches/ups_apply.h"

namespace {

unsigned char ByteAt(const unsigned char* bytes, size_t size, size_t at) { return at < size ? bytes[at] : 0; }

}  // namespace

void BuildUpsPatch(const unsigned char* input, size_t inputSize, const unsigned char* output, size_t outputSize,
                   std::vector<unsigned char>& patch) {
    patch.assign(UPS_MAGIC, UPS_MAGIC + DELTA_MAGIC_SIZE);
    AppendPatchNumber(patch, inputSize);
    AppendPatchNumber(patch, outputSize);
    const size_t length = std::max(inputSize, outputSize);
    auto difference = [&](size_t at) {
        return static_cast<unsigned char>(ByteAt(input, inputSize, at) ^ ByteAt(output, outputSize, at));
    };
    size_t next = 0;  // the first position behind the last hunk
    for (size_t at = 0; at < length; ++at) {
        if (difference(at) == 0) continue;
        AppendPatchNumber(patch, at - next);
        for (; at < length && difference(at) != 0; ++at) patch.push_back(difference(at));
        patch.push_back(0);  // ends the hunk and stands for the unchanged position at `at`
        next = at + 1;
    }
    AppendDeltaFooter(patch, Crc32(input, inputSize), Crc32(output, outputSize));
}
