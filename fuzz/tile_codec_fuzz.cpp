// Arbitrary images, formats and geometry through the tile codecs. Decoding
// gives pixel values within the format's depth and encoding them back leaves
// the image as it was; arbitrary pixels, once encoded, decode to values that
// encode to the same bytes and decode to themselves again.
#include <cstdint>
#include <cstring>
#include <vector>

#include "core/rom_slots.h"
#include "gfx/tile_codec.h"
#include "scratch_files.h"
#include "trelvane.h"

namespace {

// The five formats in mixed case, and a name that is none.
constexpr const char* kFormatNames[] = {"NES", "snes2", "Snes", "gb1", "Gb", "SNES1"};

// The input's first five bytes: the format, width and height from -8 to 247
// pixels, and the offset of the first tile from -32768 to 32767.
constexpr size_t kGeometryBytes = 5;

struct Geometry {
    const char* format;
    long width, height, address;

    size_t Pixels() const { return width > 0 && height > 0 ? static_cast<size_t>(width * height) : 0; }
};

// A picture of no pixels still hands the codecs a valid pointer: they refuse
// a null one.
unsigned char noPixel = 0;
unsigned char* PixelPointer(std::vector<unsigned char>& pixels) { return pixels.empty() ? &noPixel : pixels.data(); }
const unsigned char* PixelPointer(const std::vector<unsigned char>& pixels) {
    return pixels.empty() ? &noPixel : pixels.data();
}

std::vector<unsigned char> Image() { return {CurrentRom().data, CurrentRom().data + CurrentRom().size}; }

std::vector<unsigned char> Decode(const Geometry& g) {
    std::vector<unsigned char> pixels(g.Pixels(), 0xEE);
    if (Trelvane_DecodeTiles(PixelPointer(pixels), g.width, g.height, g.address, g.format) != -1) __builtin_trap();
    return pixels;
}

void Encode(const Geometry& g, const std::vector<unsigned char>& pixels) {
    if (Trelvane_EncodeTiles(PixelPointer(pixels), g.width, g.height, g.address, 0, g.format) != -1) __builtin_trap();
}

void ExpectWithinDepth(const std::vector<unsigned char>& pixels, const TileFormat& format) {
    for (unsigned char value : pixels)
        if (value >> format.planeCount) __builtin_trap();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size < kGeometryBytes) return 0;
    const Geometry g{kFormatNames[data[0] % 6], data[1] - 8L, data[2] - 8L, static_cast<int16_t>(data[3] | data[4] << 8)};
    data += kGeometryBytes;
    size -= kGeometryBytes;
    if (!LoadScratchImage(data, size)) return 0;
    const TileFormat* format = FindTileFormat(g.format);
    if (!format) {
        unsigned char pixel = 0;
        if (Trelvane_DecodeTiles(&pixel, 1, 1, 0, g.format) != 0 || Trelvane_GetLastErrorCode() != TLERR_FORMAT_BAD)
            __builtin_trap();
        return 0;
    }
    const std::vector<unsigned char> original = Image();
    const std::vector<unsigned char> decoded = Decode(g);
    ExpectWithinDepth(decoded, *format);
    Encode(g, decoded);
    if (Image() != original) __builtin_trap();

    std::vector<unsigned char> pixels(g.Pixels());
    for (size_t i = 0; i < pixels.size(); ++i) pixels[i] = static_cast<unsigned char>(size ? data[i % size] + i : i);
    Encode(g, pixels);
    const std::vector<unsigned char> encoded = Image();
    const std::vector<unsigned char> again = Decode(g);
    ExpectWithinDepth(again, *format);
    Encode(g, again);
    if (Image() != encoded || Decode(g) != again) __builtin_trap();
    return 0;
}
