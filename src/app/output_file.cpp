#include "app/output_file.h"

#include <fcntl.h>
#include <sys/stat.h>

#ifdef _WIN32
#include <io.h>
#define open _open
#define write _write
#define close _close
#define OWNER_READ_WRITE (_S_IREAD | _S_IWRITE)
#define CREATE_FLAGS (_O_WRONLY | _O_CREAT | _O_TRUNC | _O_BINARY)
#else
#include <unistd.h>
#define OWNER_READ_WRITE (S_IRUSR | S_IWUSR)
#define CREATE_FLAGS (O_WRONLY | O_CREAT | O_TRUNC)
#endif

bool WriteOutputFile(const char* path, const void* bytes, size_t size) {
    int file = open(path, CREATE_FLAGS, OWNER_READ_WRITE);
    if (file < 0) return false;
    const char* next = static_cast<const char*>(bytes);
    bool ok = true;
    while (ok && size > 0) {
        unsigned chunk = static_cast<unsigned>(size < (1u << 30) ? size : (1u << 30));
        auto written = write(file, next, chunk);
        ok = written > 0;
        if (ok) {
            next += written;
            size -= static_cast<size_t>(written);
        }
    }
    return close(file) == 0 && ok;
}
