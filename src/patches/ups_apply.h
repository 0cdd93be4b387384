// Applying UPS patches in memory: "UPS1", input size, output size, hunks,
// footer. A hunk is a number of positions to keep, then bytes XORed into
// the following positions up to and including a 0 byte. XOR works both
// ways, so a patch turns its output back into its input as well.
#pragma once

#include <cstddef>
#include <vector>

#include "patches/delta_result.h"

inline constexpr char UPS_MAGIC[] = "UPS1";

// Makes target from source in whichever direction the source's size and
// CRC-32 fit. Checks, before target is filled: the magic, the patch's
// CRC-32, the header, every hunk, then the source; the result's CRC-32 last.
DeltaResult ApplyUpsPatch(const unsigned char* patch, size_t size, const unsigned char* source, size_t sourceSize,
                          std::vector<unsigned char>& target);
