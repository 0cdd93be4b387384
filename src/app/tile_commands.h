// The tile commands' shared choice of tile format.
#pragma once

// The tile format a ROM file name implies by its extension (the text from
// its last "."): "NES", "SNES2" or "GB", and "???" for anything else.
const char* TileFormatForRomName(const char* romName);
