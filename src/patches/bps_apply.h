// Applying BPS patches in memory: "BPS1", source size, target size,
// metadata, actions, footer. Each action is a number n whose low two bits
// choose SourceRead, TargetRead, SourceCopy or TargetCopy and whose other
// bits hold the length minus one.
#pragma once

#include <cstddef>
#include <vector>

#include "patches/delta_result.h"

inline constexpr char BPS_MAGIC[] = "BPS1";

enum BpsAction { BPS_SOURCE_READ = 0, BPS_TARGET_READ = 1, BPS_SOURCE_COPY = 2, BPS_TARGET_COPY = 3 };

// Makes target from source. Everything is checked before target is filled:
// the magic, the patch's CRC-32, the header, every action (its numbers, its
// bounds, and that together they make exactly the target size, nothing
// behind), then the source's size and CRC-32; the result's CRC-32 last.
DeltaResult ApplyBpsPatch(const unsigned char* patch, size_t size, const unsigned char* source, size_t sourceSize,
                          std::vector<unsigned char>& target);
