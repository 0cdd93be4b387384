// The patch file that the exported Trelvane_PatchFile_* calls work on.
#pragma once

#include <vector>

// The compiled bytes of the block that the last failed statement of the current patch file
// refused for its size (the p command lists them); empty when there is none.
const std::vector<unsigned char>& RefusedBlockOfCurrentPatch();
