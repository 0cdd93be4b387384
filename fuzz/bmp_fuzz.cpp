// Feeds arbitrary files to the bitmap reader. A file it accepts must write
// back and read again to the same pixels.
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string>

#include "trelvane.h"

namespace {

std::string TempPath(const char* name) {
    return "/tmp/trelvane-bmp-fuzz-" + std::to_string(getpid()) + "-" + name;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static const std::string input = TempPath("in.bmp"), output = TempPath("out.bmp");
    std::FILE* file = std::fopen(input.c_str(), "wb");
    if (!file) return 0;
    std::fwrite(data, 1, size, file);
    std::fclose(file);

    static unsigned char pixels[TRELVANE_BMP_MAX_PIXELS], again[TRELVANE_BMP_MAX_PIXELS];
    long width = 0, height = 0, widthAgain = 0, heightAgain = 0;
    if (!Trelvane_LoadBMP(input.c_str(), pixels, &width, &height)) return 0;
    if (width % 2) return 0;  // an odd width's last column is not stored
    if (Trelvane_WriteBMP(output.c_str(), pixels, width, height) != -1 ||
        Trelvane_LoadBMP(output.c_str(), again, &widthAgain, &heightAgain) != -1 || widthAgain != width ||
        heightAgain != height || std::memcmp(pixels, again, static_cast<size_t>(width * height)) != 0)
        __builtin_trap();
    return 0;
}
