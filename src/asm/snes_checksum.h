// The Super NES internal checksum: the 16-bit sum of the image's bytes at
// $00FFDE and its complement at $00FFDC (through the mapping).
#pragma once

#include <vector>

#include "core/snes_mapping.h"

// Rewrites checksum and complement: with FF FF 00 00 in their place, the sum of every byte,
// where an image whose size is no power of two counts its part beyond the largest power of two
// P below its size as often as it fits into P. False when the image does not reach the header.
bool FixSnesChecksum(std::vector<unsigned char>& image, SnesMapping mapping);
