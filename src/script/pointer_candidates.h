// The forms in which a game of a given system may hold a pointer to a given
// offset, and the value such a pointer holds: the common bases and mappings
// of the image's system (NES $8000-$E000 windows of its banks, the Game Boy's
// fixed bank and $4000 window, the Super NES LoROM, HiROM and ExHiROM
// mappings), in both byte orders.
#pragma once

#include <cstdint>
#include <vector>

#include "trelvane.h"

struct PointerCandidate {
    PointerForm form;  // size, byte order, base or mapping; no table
    uint32_t value;    // what a pointer of that form to the offset holds
};

// romType is a TrelvaneRomType (0 or another value: every system). A size of
// 0 tries the sizes of the system; a given base or mapping (map not
// POINTER_MAP_NONE, or hasBase) is the only one tried.
std::vector<PointerCandidate> PointerCandidates(int64_t target, int romType, int size, bool hasBase, int base,
                                                int map);
