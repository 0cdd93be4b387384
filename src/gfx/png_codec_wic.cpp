#ifdef _WIN32
#include <objbase.h>
#include <wincodec.h>

#include "gfx/png_codec.h"

namespace {

// Releases a COM object at the end of a scope.
template <typename T>
struct Com {
    T* object = nullptr;
    ~Com() {
        if (object) object->Release();
    }
    T* operator->() const { return object; }
    T** operator&() { return &object; }
};

// The imaging factory, with COM started for this thread on first use.
IWICImagingFactory* Factory() {
    static IWICImagingFactory* factory = [] {
        IWICImagingFactory* created = nullptr;
        CoInitializeEx(nullptr, COINIT_MULTITHREADED);
        CoCreateInstance(CLSID_WICImagingFactory, nullptr, CLSCTX_INPROC_SERVER, IID_IWICImagingFactory,
                         reinterpret_cast<void**>(&created));
        return created;
    }();
    return factory;
}

bool ReadColours(IWICBitmapSource* frame, PngPicture& picture) {
    Com<IWICBitmapSource> bgra;
    if (FAILED(WICConvertBitmapSource(GUID_WICPixelFormat32bppBGRA, frame, &bgra))) return false;
    std::vector<unsigned char> pixels(size_t{picture.width} * picture.height * 4);
    if (FAILED(bgra->CopyPixels(nullptr, picture.width * 4, static_cast<UINT>(pixels.size()), pixels.data())))
        return false;
    picture.colours.resize(size_t{picture.width} * picture.height);
    for (size_t i = 0; i < picture.colours.size(); ++i)
        picture.colours[i] = uint32_t{pixels[4 * i + 2]} << 16 | uint32_t{pixels[4 * i + 1]} << 8 | pixels[4 * i];
    return true;
}

unsigned IndexedDepth(const WICPixelFormatGUID& format) {
    if (format == GUID_WICPixelFormat1bppIndexed) return 1;
    if (format == GUID_WICPixelFormat2bppIndexed) return 2;
    if (format == GUID_WICPixelFormat4bppIndexed) return 4;
    if (format == GUID_WICPixelFormat8bppIndexed) return 8;
    return 0;
}

// The palette indices of an indexed frame, unpacked from its bit depth.
bool ReadIndices(IWICBitmapFrameDecode* frame, unsigned depth, PngPicture& picture) {
    Com<IWICPalette> palette;
    UINT entries = 0;
    if (FAILED(Factory()->CreatePalette(&palette)) || FAILED(frame->CopyPalette(palette.object)) ||
        FAILED(palette->GetColorCount(&entries)))
        return false;
    const UINT stride = (picture.width * depth + 7) / 8;
    std::vector<unsigned char> packed(size_t{stride} * picture.height);
    if (FAILED(frame->CopyPixels(nullptr, stride, static_cast<UINT>(packed.size()), packed.data()))) return false;
    picture.paletteSize = entries;
    picture.indices.resize(size_t{picture.width} * picture.height);
    for (size_t y = 0; y < picture.height; ++y)
        for (size_t x = 0; x < picture.width; ++x) {
            const size_t bit = x * depth;
            const unsigned byte = packed[y * stride + bit / 8];
            picture.indices[y * picture.width + x] =
                static_cast<unsigned char>((byte >> (8 - depth - bit % 8)) & ((1u << depth) - 1));
        }
    return true;
}

// The bytes written to stream so far.
bool StreamBytes(IStream* stream, std::vector<unsigned char>& bytes) {
    STATSTG status{};
    LARGE_INTEGER start{};
    if (FAILED(stream->Stat(&status, STATFLAG_NONAME)) || FAILED(stream->Seek(start, STREAM_SEEK_SET, nullptr)))
        return false;
    bytes.resize(static_cast<size_t>(status.cbSize.QuadPart));
    ULONG read = 0;
    return SUCCEEDED(stream->Read(bytes.data(), static_cast<ULONG>(bytes.size()), &read)) && read == bytes.size();
}

bool WriteFrame(IWICBitmapEncoder* encoder, const unsigned char* pixels, uint32_t width, uint32_t height,
                const unsigned char* palette, size_t colours) {
    Com<IWICBitmapFrameEncode> frame;
    Com<IWICPalette> wicPalette;
    std::vector<WICColor> entries;
    for (size_t i = 0; i < colours; ++i)
        entries.push_back(0xFF000000u | uint32_t{palette[3 * i]} << 16 | uint32_t{palette[3 * i + 1]} << 8 | palette[3 * i + 2]);
    WICPixelFormatGUID format = GUID_WICPixelFormat8bppIndexed;
    return SUCCEEDED(encoder->CreateNewFrame(&frame, nullptr)) && SUCCEEDED(frame->Initialize(nullptr)) &&
           SUCCEEDED(frame->SetSize(width, height)) && SUCCEEDED(frame->SetPixelFormat(&format)) &&
           format == GUID_WICPixelFormat8bppIndexed && SUCCEEDED(Factory()->CreatePalette(&wicPalette)) &&
           SUCCEEDED(wicPalette->InitializeCustom(entries.data(), static_cast<UINT>(colours))) &&
           SUCCEEDED(frame->SetPalette(wicPalette.object)) &&
           SUCCEEDED(frame->WritePixels(height, width, width * height, const_cast<BYTE*>(pixels))) &&
           SUCCEEDED(frame->Commit());
}

}  // namespace

bool DecodePng(const std::vector<unsigned char>& bytes, PngPicture& picture) {
    Com<IWICStream> stream;
    Com<IWICBitmapDecoder> decoder;
    Com<IWICBitmapFrameDecode> frame;
    WICPixelFormatGUID format{};
    PngPicture decoded;
    if (!Factory() || FAILED(Factory()->CreateStream(&stream)) ||
        FAILED(stream->InitializeFromMemory(const_cast<BYTE*>(bytes.data()), static_cast<DWORD>(bytes.size()))) ||
        FAILED(Factory()->CreateDecoderFromStream(stream.object, &GUID_ContainerFormatPng, WICDecodeMetadataCacheOnDemand,
                                                  &decoder)) ||
        FAILED(decoder->GetFrame(0, &frame)) || FAILED(frame->GetSize(&decoded.width, &decoded.height)) ||
        uint64_t{decoded.width} * decoded.height > PNG_MAX_PIXELS || FAILED(frame->GetPixelFormat(&format)) ||
        !ReadColours(frame.object, decoded))
        return false;
    const unsigned depth = IndexedDepth(format);
    if (depth && !ReadIndices(frame.object, depth, decoded)) return false;
    picture = std::move(decoded);
    return true;
}

bool EncodeIndexedPng(const unsigned char* pixels, uint32_t width, uint32_t height, const unsigned char* palette,
                      size_t colours, std::vector<unsigned char>& png) {
    Com<IStream> stream;
    Com<IWICBitmapEncoder> encoder;
    return Factory() && SUCCEEDED(CreateStreamOnHGlobal(nullptr, TRUE, &stream)) &&
           SUCCEEDED(Factory()->CreateEncoder(GUID_ContainerFormatPng, nullptr, &encoder)) &&
           SUCCEEDED(encoder->Initialize(stream.object, WICBitmapEncoderNoCache)) &&
           WriteFrame(encoder.object, pixels, width, height, palette, colours) && SUCCEEDED(encoder->Commit()) &&
           StreamBytes(stream.object, png);
}
#endif
