#include "core/file_bytes.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cstdio>
#include <filesystem>
#include <new>

#ifdef _WIN32
#include <io.h>
#define open _open
#define write _write
#define close _close
#define OWNER_READ_WRITE (_S_IREAD | _S_IWRITE)
#define WRITE_FLAGS (_O_WRONLY | _O_CREAT | _O_TRUNC | _O_BINARY)
#else
#include <unistd.h>
#define OWNER_READ_WRITE (S_IRUSR | S_IWUSR)
#define WRITE_FLAGS (O_WRONLY | O_CREAT | O_TRUNC)
#endif

bool ReadFileBytes(const char* path, std::vector<unsigned char>& bytes) {
    std::error_code error;
    if (!std::filesystem::is_regular_file(path, error)) return false;
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

bool WriteNewFile(const char* path, const void* bytes, size_t size) {
    int file = open(path, WRITE_FLAGS, OWNER_READ_WRITE);
    if (file < 0) return false;
    const char* next = static_cast<const char*>(bytes);
    bool ok = true;
    while (ok && size > 0) {
        auto written = write(file, next, static_cast<unsigned>(size > (1u << 30) ? (1u << 30) : size));
        ok = written > 0;
        if (ok) {
            next += written;
            size -= static_cast<size_t>(written);
        }
    }
    return close(file) == 0 && ok;
}
