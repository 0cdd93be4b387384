// Scratch files of the harnesses: every input is written to a file first.
#pragma once

#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <string>

// A per-process file name with that suffix, on memory-backed storage when the
// system has it, since every input is written once.
inline std::string ScratchName(const char* suffix) {
    std::error_code error;
    std::string folder =
        std::filesystem::is_directory("/dev/shm", error) ? "/dev/shm" : std::filesystem::temp_directory_path().string();
    return folder + "/trelvane-fuzz-" + std::to_string(getpid()) + suffix;
}

inline bool WriteInput(const std::string& name, const uint8_t* data, size_t size) {
    std::FILE* file = std::fopen(name.c_str(), "wb");
    if (!file) return false;
    std::fwrite(data, 1, size, file);
    return std::fclose(file) == 0;
}
