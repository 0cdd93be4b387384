// What the harnesses that go through files share: per-process scratch names on
// memory-backed storage, writing an input to one, and loading one as the image.
#pragma once

#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <string>

#include "trelvane.h"

// A per-process file name with that suffix, on memory-backed storage when the
// system has it, since every input is written once.
inline std::string ScratchName(const std::string& suffix) {
    std::error_code error;
    std::string folder =
        std::filesystem::is_directory("/dev/shm", error) ? "/dev/shm" : std::filesystem::temp_directory_path().string();
    return folder + "/trelvane-fuzz-" + std::to_string(getpid()) + suffix;
}

// Makes folder the current one for one input and goes back to the folder the
// fuzzer was started in afterwards, so that a relative corpus path still
// names the corpus when libFuzzer writes new inputs into it.
class InsideFolder {
public:
    explicit InsideFolder(const std::filesystem::path& folder) : previous_(std::filesystem::current_path(error_)) {
        if (!error_) std::filesystem::current_path(folder, error_);
    }
    ~InsideFolder() {
        std::error_code ignored;
        std::filesystem::current_path(previous_, ignored);
    }
    InsideFolder(const InsideFolder&) = delete;
    InsideFolder& operator=(const InsideFolder&) = delete;
    bool entered() const { return !error_; }

private:
    std::error_code error_;
    std::filesystem::path previous_;
};

inline bool WriteInput(const std::string& name, const uint8_t* data, size_t size) {
    std::FILE* file = std::fopen(name.c_str(), "wb");
    if (!file) return false;
    std::fwrite(data, 1, size, file);
    return std::fclose(file) == 0;
}

// Makes the bytes the current image (in place of any image before), loaded
// from a Game Boy file, whose header is empty; false when that fails.
inline bool LoadScratchImage(const uint8_t* data, size_t size) {
    static const std::string image = ScratchName("-image.gb");
    Trelvane_FreeROM(-1);
    return WriteInput(image, data, size) && Trelvane_LoadROM(image.c_str()) != 0;
}

// The 32-bit little-endian number at `at` in the input, zero bytes past its end.
inline int32_t ReadInt(const uint8_t* data, size_t size, size_t at) {
    uint32_t value = 0;
    for (size_t i = 0; i < 4 && at + i < size; ++i) value |= uint32_t{data[at + i]} << (8 * i);
    return static_cast<int32_t>(value);
}
