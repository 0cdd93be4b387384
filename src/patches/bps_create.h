// Making BPS patches: a delta of the modified file against the whole
// original, not only a comparison position by position.
#pragma once

#include <cstddef>
#include <vector>

// Builds the patch that turns original into modified (empty metadata).
// Unchanged stretches become SourceRead; data found elsewhere in the
// original (moved, copied, behind an insertion) SourceCopy; runs, and new
// bytes that occur again, TargetCopy; everything else TargetRead. Among the
// ways to go on at a position, the one that saves the most patch bytes is
// taken, looking one position ahead first unless it is long.
void BuildBpsPatch(const unsigned char* original, size_t originalSize, const unsigned char* modified,
                   size_t modifiedSize, std::vector<unsigned char>& patch);
