// The Super NES internal checksum: the 16-bit sum of the image's bytes at
// $00FFDE and its complement at $00FFDC (through the mapping).
#pragma once

#include <vector>

#include "core/snes_mapping.h"

// Rewrites checksum and complement: the image's checksum (core/snes_header.h) taken with
// FF FF 00 00 in their place. False when the image does not reach them.
bool FixSnesChecksum(std::vector<unsigned char>& image, SnesMapping mapping);
