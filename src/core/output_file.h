// Output files, created (or truncated) with read and write permission for
// their owner only. Shared by the engine and the front end (which links only
// the library's exported interface, so this stays inline).
#pragma once

#include <fcntl.h>
#include <sys/stat.h>

#include <cstddef>
#include <cstdio>

#ifdef _WIN32
#include <io.h>
#else
#include <unistd.h>
#endif

// Creates or truncates path and returns it open for binary writing, or null.
inline std::FILE* CreateOutputFile(const char* path) {
#ifdef _WIN32
    int file = _open(path, _O_WRONLY | _O_CREAT | _O_TRUNC | _O_BINARY, _S_IREAD | _S_IWRITE);
    std::FILE* stream = file < 0 ? nullptr : _fdopen(file, "wb");
    if (file >= 0 && !stream) _close(file);
#else
    int file = open(path, O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, S_IRUSR | S_IWUSR);
    std::FILE* stream = file < 0 ? nullptr : fdopen(file, "wb");
    if (file >= 0 && !stream) close(file);
#endif
    return stream;
}

// Creates path and writes size bytes into it. False when it cannot be created
// or the bytes cannot all be written.
inline bool WriteOutputFile(const char* path, const void* bytes, size_t size) {
    std::FILE* file = CreateOutputFile(path);
    if (!file) return false;
    bool ok = std::fwrite(bytes, 1, size, file) == size;
    return std::fclose(file) == 0 && ok;
}
