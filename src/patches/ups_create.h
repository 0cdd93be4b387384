// Making UPS patches: every position where the two files differ is carried
// as the XOR of their bytes, in hunks that a 0 byte ends.
#pragma once

#include <cstddef>
#include <vector>

// The patch that turns input into output (and, XOR being its own inverse,
// output back into input). Positions past the end of the shorter file count
// as 0 bytes.
void BuildUpsPatch(const unsigned char* input, size_t inputSize, const unsigned char* output, size_t outputSize,
                   std::vector<unsigned char>& patch);
