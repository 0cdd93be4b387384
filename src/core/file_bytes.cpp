#include "core/file_bytes.h"

#include <cstdio>
#include <filesystem>
#include <new>

#include "core/system_path.h"

FileRead ReadFileBytesUpTo(const char* path, uint64_t limit, std::vector<unsigned char>& bytes) {
    std::error_code error;
    if (!std::filesystem::is_regular_file(SystemPath(path), error)) return FileRead::Failed;
    uintmax_t size = std::filesystem::file_size(SystemPath(path), error);
    if (error) return FileRead::Failed;
    if (size > limit) return FileRead::TooLarge;
    std::FILE* file = std::fopen(path, "rb");
    if (!file) return FileRead::Failed;
    bool ok = std::fseek(file, 0, SEEK_END) == 0;
    long length = ok ? std::ftell(file) : -1;
    ok = length >= 0 && std::fseek(file, 0, SEEK_SET) == 0;
    // The file may have grown since it was measured.
    if (ok && static_cast<uint64_t>(length) > limit) {
        std::fclose(file);
        return FileRead::TooLarge;
    }
    if (ok) {
        try {
            bytes.resize(static_cast<size_t>(length));
        } catch (const std::bad_alloc&) {
            ok = false;
        }
    }
    if (ok) ok = std::fread(bytes.data(), 1, bytes.size(), file) == bytes.size();
    std::fclose(file);
    return ok ? FileRead::Read : FileRead::Failed;
}

bool ReadFileBytes(const char* path, std::vector<unsigned char>& bytes) {
    return ReadFileBytesUpTo(path, UINT64_MAX, bytes) == FileRead::Read;
}
