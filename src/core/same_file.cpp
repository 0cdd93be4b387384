#include "core/same_file.h"

#ifdef _WIN32
#include <windows.h>
#else
#include <sys/stat.h>
#endif

namespace {

#ifdef _WIN32
// The volume serial number and file index that identify an open file.
struct FileIdentity {
    DWORD volume = 0, high = 0, low = 0;
    bool operator==(const FileIdentity&) const = default;
};

bool IdentityOf(const char* path, FileIdentity& identity) {
    HANDLE file = CreateFileA(path, 0, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, OPEN_EXISTING,
                              FILE_FLAG_BACKUP_SEMANTICS, nullptr);
    if (file == INVALID_HANDLE_VALUE) return false;
    BY_HANDLE_FILE_INFORMATION info;
    bool known = GetFileInformationByHandle(file, &info) != 0;
    CloseHandle(file);
    identity = FileIdentity{info.dwVolumeSerialNumber, info.nFileIndexHigh, info.nFileIndexLow};
    return known;
}
#else
struct FileIdentity {
    dev_t device = 0;
    ino_t number = 0;
    bool operator==(const FileIdentity&) const = default;
};

bool IdentityOf(const char* path, FileIdentity& identity) {
    struct stat info;
    if (stat(path, &info) != 0) return false;
    identity = FileIdentity{info.st_dev, info.st_ino};
    return true;
}
#endif

}  // namespace

bool SameFile(const char* a, const char* b) {
    FileIdentity first, second;
    return IdentityOf(a, first) && IdentityOf(b, second) && first == second;
}
