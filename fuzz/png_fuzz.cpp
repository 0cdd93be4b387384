// Feeds arbitrary files to the PNG loader, with grey and with a palette of its
// own, into a buffer just large enough for the size the loader reports. A
// picture it accepts must write back and load again to the same pixels.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "scratch_files.h"
#include "trelvane.h"

namespace {

constexpr long kCapacity = 256 * 256;

const std::string& InputName() {
    static const std::string name = ScratchName("-in.png");
    return name;
}

const std::string& OutputName() {
    static const std::string name = ScratchName("-out.png");
    return name;
}

// Both scratch files go when the fuzzer ends (their names made first, so that they outlive the handler).
bool RemoveScratchFilesAtExit() {
    InputName();
    OutputName();
    return std::atexit([] {
        std::remove(InputName().c_str());
        std::remove(OutputName().c_str());
    }) == 0;
}

// Sixteen distinct colours: greys 00 to F0, the second one turned red.
const unsigned char* Palette() {
    static unsigned char palette[16 * 3];
    for (int i = 0; i < 16; ++i) std::memset(palette + 3 * i, i * 16, 3);
    palette[3] = 0xFF;
    return palette;
}

void CheckRoundTrip(const std::string& output, const std::vector<unsigned char>& pixels, long width, long height,
                    const unsigned char* palette, long colours) {
    if (width <= 0 || height <= 0 || width * height > kCapacity) __builtin_trap();
    std::vector<unsigned char> again(kCapacity);
    long widthAgain = 0, heightAgain = 0;
    if (Trelvane_WritePNG(output.c_str(), pixels.data(), width, height, palette, colours) != -1 ||
        Trelvane_LoadPNG(output.c_str(), again.data(), kCapacity, &widthAgain, &heightAgain, palette, colours) != -1 ||
        widthAgain != width || heightAgain != height ||
        std::memcmp(pixels.data(), again.data(), static_cast<size_t>(width * height)) != 0)
        __builtin_trap();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static const bool cleaned = RemoveScratchFilesAtExit();
    const std::string &input = InputName(), &output = OutputName();
    if (!cleaned || !WriteInput(input, data, size)) return 0;
    std::vector<unsigned char> pixels(kCapacity);
    for (const unsigned char* palette : {static_cast<const unsigned char*>(nullptr), Palette()}) {
        for (long colours : {2L, 16L}) {
            long width = 0, height = 0;
            if (Trelvane_LoadPNG(input.c_str(), pixels.data(), kCapacity, &width, &height, palette, colours) != -1)
                continue;
            CheckRoundTrip(output, pixels, width, height, palette, colours);
        }
    }
    // Into a buffer too small for all but the tiniest pictures: a refusal leaves it as it was.
    unsigned char small[7] = {0xAA, 0xAA, 0xAA, 0xAA, 0xAA, 0xAA, 0xAA};
    long width = 0, height = 0;
    if (Trelvane_LoadPNG(input.c_str(), small, sizeof small, &width, &height, nullptr, 16) != -1 &&
        std::memcmp(small, "\xAA\xAA\xAA\xAA\xAA\xAA\xAA", sizeof small) != 0)
        __builtin_trap();
    return 0;
}
