// The suffix array of a byte sequence: the start positions of all its
// suffixes in lexicographic order (a suffix that is a prefix of another
// comes first). All suffixes of a sequence differ in length, so the order is
// strict and the array is the same whatever builds it: libdivsufsort where
// the platform has it (Linux), the induced sorting of InducedSuffixArray
// otherwise (Windows), and the patches made from it are the same byte for
// byte.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

// Sequences of up to INT32_MAX bytes.
std::vector<int32_t> SuffixArray(const unsigned char* bytes, size_t size);

// The same array by induced sorting (SA-IS), built on every platform so that
// the tests compare it with the library's.
std::vector<int32_t> InducedSuffixArray(const unsigned char* bytes, size_t size);
