#ifndef _WIN32
#include <spng.h>

#include <cstdlib>
#include <memory>

#include "gfx/png_codec.h"

namespace {

struct ContextDeleter {
    void operator()(spng_ctx* context) const { spng_ctx_free(context); }
};
using Context = std::unique_ptr<spng_ctx, ContextDeleter>;

Context DecoderFor(const std::vector<unsigned char>& bytes, spng_ihdr& header) {
    Context context(spng_ctx_new(0));
    if (!context || spng_set_png_buffer(context.get(), bytes.data(), bytes.size()) != 0 ||
        spng_get_ihdr(context.get(), &header) != 0 ||
        uint64_t{header.width} * header.height > PNG_MAX_PIXELS)
        return nullptr;
    return context;
}

// Decodes the whole picture once in format into out.
bool DecodeAs(const std::vector<unsigned char>& bytes, int format, std::vector<unsigned char>& out) {
    spng_ihdr header{};
    Context context = DecoderFor(bytes, header);
    size_t size = 0;
    if (!context || spng_decoded_image_size(context.get(), format, &size) != 0) return false;
    out.resize(size);
    return spng_decode_image(context.get(), out.data(), size, format, 0) == 0;
}

// The palette indices of a decoded indexed picture, unpacked from its bit
// depth (rows start on whole bytes, leftmost pixel in the high bits).
std::vector<unsigned char> UnpackIndices(const std::vector<unsigned char>& packed, const spng_ihdr& header) {
    const unsigned depth = header.bit_depth;
    const size_t rowBytes = (size_t{header.width} * depth + 7) / 8;
    std::vector<unsigned char> indices(size_t{header.width} * header.height);
    for (size_t y = 0; y < header.height; ++y)
        for (size_t x = 0; x < header.width; ++x) {
            const size_t bit = x * depth;
            const unsigned byte = packed[y * rowBytes + bit / 8];
            indices[y * header.width + x] = static_cast<unsigned char>((byte >> (8 - depth - bit % 8)) & ((1u << depth) - 1));
        }
    return indices;
}

bool ReadIndices(const std::vector<unsigned char>& bytes, const spng_ihdr& header, PngPicture& picture) {
    spng_ihdr ignored{};
    Context context = DecoderFor(bytes, ignored);
    spng_plte palette{};
    if (!context || spng_get_plte(context.get(), &palette) != 0) return false;
    std::vector<unsigned char> packed;
    if (!DecodeAs(bytes, SPNG_FMT_PNG, packed)) return false;
    picture.paletteSize = palette.n_entries;
    picture.indices = UnpackIndices(packed, header);
    return true;
}

}  // namespace

bool DecodePng(const std::vector<unsigned char>& bytes, PngPicture& picture) {
    spng_ihdr header{};
    std::vector<unsigned char> rgba;
    if (!DecoderFor(bytes, header) || !DecodeAs(bytes, SPNG_FMT_RGBA8, rgba)) return false;
    PngPicture decoded;
    decoded.width = header.width;
    decoded.height = header.height;
    decoded.colours.resize(size_t{header.width} * header.height);
    for (size_t i = 0; i < decoded.colours.size(); ++i)
        decoded.colours[i] = uint32_t{rgba[4 * i]} << 16 | uint32_t{rgba[4 * i + 1]} << 8 | rgba[4 * i + 2];
    if (header.color_type == SPNG_COLOR_TYPE_INDEXED && !ReadIndices(bytes, header, decoded)) return false;
    picture = std::move(decoded);
    return true;
}

bool EncodeIndexedPng(const unsigned char* pixels, uint32_t width, uint32_t height, const unsigned char* palette,
                      size_t colours, std::vector<unsigned char>& png) {
    Context context(spng_ctx_new(SPNG_CTX_ENCODER));
    spng_ihdr header{width, height, 8, SPNG_COLOR_TYPE_INDEXED, 0, 0, 0};
    spng_plte plte{};
    plte.n_entries = static_cast<uint32_t>(colours);
    for (size_t i = 0; i < colours; ++i)
        plte.entries[i] = spng_plte_entry{palette[3 * i], palette[3 * i + 1], palette[3 * i + 2], 255};
    if (!context || spng_set_option(context.get(), SPNG_ENCODE_TO_BUFFER, 1) != 0 ||
        spng_set_ihdr(context.get(), &header) != 0 || spng_set_plte(context.get(), &plte) != 0 ||
        spng_encode_image(context.get(), pixels, size_t{width} * height, SPNG_FMT_PNG, SPNG_ENCODE_FINALIZE) != 0)
        return false;
    size_t size = 0;
    int error = 0;
    void* buffer = spng_get_png_buffer(context.get(), &size, &error);
    if (!buffer) return false;
    png.assign(static_cast<unsigned char*>(buffer), static_cast<unsigned char*>(buffer) + size);
    std::free(buffer);
    return true;
}
#endif
