#include "core/file_bytes.h"

#include <cstdio>
#include <filesystem>
#include <new>

#include "core/system_path.h"

bool ReadFileBytes(const char* path, std::vector<unsigned char>& bytes) {
    std::error_code error;
    if (!std::filesystem::is_regular_file(SystemPath(path), error)) return false;
    std::FILE* file = std::fopen(path, "rb");
    if (!file) return false;
    bool ok = std::fseek(file, 0, SEEK_END) == 0;
    long length = ok ? std::ftell(file) : -1;
    ok = length >= 0 && std::fseek(file, 0, SEEK_SET) == 0;
    if (ok) {
        try {
            bytes.resize(static_cast<size_t>(length));
        } catch (const std::bad_alloc&) {
            ok = false;
        }
    }
    if (ok) ok = std::fread(bytes.data(), 1, bytes.size(), file) == bytes.size();
    std::fclose(file);
    return ok;
}

