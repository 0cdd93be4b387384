// The file calls of Windows, through the ANSI functions that take the
// program's narrow names as they are.
#ifdef _WIN32
#include <fcntl.h>
#include <io.h>
#include <process.h>
#include <sys/stat.h>
#include <windows.h>

#include <string>

#include "core/platform_files.h"

namespace {

void (*interruptCleanup)() = nullptr;

BOOL WINAPI OnConsoleEvent(DWORD) {
    interruptCleanup();
    return FALSE;  // the default handler then ends the program
}

bool IsRegularStatus(const struct _stat64& status) { return (status.st_mode & _S_IFMT) == _S_IFREG; }

}  // namespace

// Read-only targets are refused, so there is no other mode to keep.
int ModeForTarget(const char* path) {
    struct _stat64 status;
    if (_stat64(path, &status) != 0) return errno == ENOENT ? 0 : -1;
    return IsRegularStatus(status) && _access(path, 2) == 0 ? 0 : -1;
}

bool IsRewritableFile(const char* path) {
    struct _stat64 status;
    return _stat64(path, &status) == 0 && IsRegularStatus(status) && _access(path, 2) == 0;
}

int ProcessId() { return _getpid(); }

bool ProcessHasEnded(int pid) {
    HANDLE process = OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION, FALSE, static_cast<DWORD>(pid));
    if (!process) return GetLastError() == ERROR_INVALID_PARAMETER;
    DWORD status = 0;
    const bool ended = GetExitCodeProcess(process, &status) && status != STILL_ACTIVE;
    CloseHandle(process);
    return ended;
}

int CreateExclusive(const char* path) {
    return _open(path, _O_WRONLY | _O_CREAT | _O_EXCL | _O_BINARY, _S_IREAD | _S_IWRITE);
}

int CreateUnnamed(const std::string&) { return -1; }

bool GiveName(int, const char*) { return false; }

bool SetMode(int, int) { return true; }

long WriteSome(int file, const unsigned char* bytes, size_t size) {
    const unsigned chunk = size > 0x40000000 ? 0x40000000u : static_cast<unsigned>(size);
    return _write(file, bytes, chunk);
}

bool FlushToDisk(int file) { return _commit(file) == 0; }

bool CloseFile(int file) { return _close(file) == 0; }

bool ReplaceWith(const std::string& temporary, const std::string& target) {
    return MoveFileExA(temporary.c_str(), target.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) != 0;
}

void FlushFolder(const std::string&) {}  // the rename was written through

void RemoveFile(const char* path) { DeleteFileA(path); }

void ForEachName(const std::string& folder, const std::function<void(const char*)>& visit) {
    WIN32_FIND_DATAA entry;
    HANDLE search = FindFirstFileA((folder + "*").c_str(), &entry);
    if (search == INVALID_HANDLE_VALUE) return;
    do visit(entry.cFileName);
    while (FindNextFileA(search, &entry));
    FindClose(search);
}

std::string FollowLinks(const char* path) { return path; }

void InstallInterruptCleanup(void (*cleanup)()) {
    if (interruptCleanup) return;
    interruptCleanup = cleanup;
    SetConsoleCtrlHandler(OnConsoleEvent, TRUE);
}
#endif
