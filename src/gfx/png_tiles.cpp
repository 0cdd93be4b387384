// Trelvane_WritePNG and Trelvane_LoadPNG: tile sheets as indexed PNG files.
#include <algorithm>
#include <cstdio>
#include <string>

#include "core/file_bytes.h"
#include "core/last_error.h"
#include "core/output_file.h"
#include "gfx/png_codec.h"
#include "trelvane.h"

namespace {

constexpr long MAX_COLOURS = 16;

// palette, or colours evenly spaced greys when it is null.
std::vector<unsigned char> PaletteOrGreys(const unsigned char* palette, long colours) {
    if (palette) return std::vector<unsigned char>(palette, palette + 3 * colours);
    std::vector<unsigned char> greys;
    for (long i = 0; i < colours; ++i)
        greys.insert(greys.end(), 3, static_cast<unsigned char>(colours > 1 ? i * 255 / (colours - 1) : 0));
    return greys;
}

bool RefusePixel(const char* file, unsigned value, long colours) {
    return SetError(TLERR_PICTURE_PIXEL, file, 0, 0, std::to_string(value).c_str(), std::to_string(colours).c_str());
}

bool RefuseColour(const char* file, uint32_t colour) {
    char text[8];
    std::snprintf(text, sizeof text, "#%06X", static_cast<unsigned>(colour));
    return SetError(TLERR_PICTURE_COLOURS, file, 0, 0, text);
}

// Every pixel's index in palette by its colour; false (nothing reported) at
// the first colour the palette lacks, which missing then holds.
bool IndicesByColour(const PngPicture& picture, const std::vector<unsigned char>& palette, unsigned char* pixels,
                     uint32_t& missing) {
    const size_t colours = palette.size() / 3;
    for (size_t i = 0; i < picture.colours.size(); ++i) {
        size_t index = 0;
        while (index < colours && (uint32_t{palette[3 * index]} << 16 | uint32_t{palette[3 * index + 1]} << 8 |
                                   palette[3 * index + 2]) != picture.colours[i])
            ++index;
        if (index == colours) return missing = picture.colours[i], false;
        pixels[i] = static_cast<unsigned char>(index);
    }
    return true;
}

// By colour first; then, for an indexed picture of at most 16 entries, by
// its own indices.
bool MapPicture(const char* file, const PngPicture& picture, const std::vector<unsigned char>& palette,
                unsigned char* pixels) {
    uint32_t missing = 0;
    if (IndicesByColour(picture, palette, pixels, missing)) return true;
    if (picture.indices.empty() || picture.paletteSize > MAX_COLOURS) return RefuseColour(file, missing);
    const long colours = static_cast<long>(palette.size() / 3);
    for (size_t i = 0; i < picture.indices.size(); ++i) {
        if (picture.indices[i] >= colours) return RefusePixel(file, picture.indices[i], colours);
        pixels[i] = picture.indices[i];
    }
    return true;
}

bool RefuseSize(int64_t width, int64_t height) {
    const std::string size = std::to_string(width) + " x " + std::to_string(height) + " png";
    return SetError(TLERR_UNSUPPORTED, "", 0, 0, size.c_str());
}

bool ColoursInRange(long colours) {
    if (colours >= 1 && colours <= MAX_COLOURS) return true;
    return SetError(TLERR_UNSUPPORTED, "", 0, 0, (std::to_string(colours) + " colour palette").c_str());
}

}  // namespace

extern "C" {

long Trelvane_WritePNG(const char* file, const unsigned char* pixels, long width, long height,
                       const unsigned char* palette, long colours) {
    if (!file || !pixels) return RefuseNullArgument("Trelvane_WritePNG", !file ? "file" : "pixels");
    if (!ColoursInRange(colours)) return 0;
    if (width <= 0 || height <= 0 || uint64_t(width) * uint64_t(height) > PNG_MAX_PIXELS) return RefuseSize(width, height);
    const size_t count = static_cast<size_t>(width) * static_cast<size_t>(height);
    const unsigned char largest = *std::max_element(pixels, pixels + count);
    if (largest >= colours) return RefusePixel(file, largest, colours);
    std::vector<unsigned char> png;
    const std::vector<unsigned char> entries = PaletteOrGreys(palette, colours);
    if (!EncodeIndexedPng(pixels, static_cast<uint32_t>(width), static_cast<uint32_t>(height), entries.data(),
                          static_cast<size_t>(colours), png))
        return SetError(TLERR_UNSUPPORTED, file, 0, 0, "PNG encoding");
    if (!WriteOutputFile(file, png.data(), png.size())) return SetError(TLERR_FILE_NOCREATE, file, 0, 0);
    return -1;
}

long Trelvane_LoadPNG(const char* file, unsigned char* pixels, long capacity, long* width, long* height,
                      const unsigned char* palette, long colours) {
    if (!file || !pixels || !width || !height)
        return RefuseNullArgument("Trelvane_LoadPNG", !file ? "file" : !pixels ? "pixels" : !width ? "width" : "height");
    if (!ColoursInRange(colours)) return 0;
    std::vector<unsigned char> bytes;
    if (!ReadFileBytes(file, bytes)) return SetError(TLERR_FILE_NOREAD, file, 0, 0);
    PngPicture picture;
    if (!DecodePng(bytes, picture)) return SetError(TLERR_FILE_INVALID, file, 0, 0, "PNG file");
    if (capacity < 0 || picture.colours.size() > static_cast<uint64_t>(capacity))
        return RefuseSize(picture.width, picture.height);
    // Mapped apart from the caller's array, which a refused file leaves as it was.
    std::vector<unsigned char> mapped(picture.colours.size());
    if (!MapPicture(file, picture, PaletteOrGreys(palette, colours), mapped.data())) return 0;
    std::copy(mapped.begin(), mapped.end(), pixels);
    *width = static_cast<long>(picture.width);
    *height = static_cast<long>(picture.height);
    return -1;
}
}
