#include "core/output_file.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstdio>
#include <filesystem>

#ifdef _WIN32
#include <io.h>
#include <process.h>
#include <windows.h>
#else
#include <unistd.h>
#endif

namespace {

#ifdef _WIN32
using FileStatus = struct _stat64;
int StatusOf(const char* path, FileStatus& status) { return _stat64(path, &status); }
bool IsRegular(const FileStatus& status) { return (status.st_mode & _S_IFMT) == _S_IFREG; }
bool MayWrite(const char* path) { return _access(path, 2) == 0; }
int ProcessId() { return _getpid(); }
int CreateExclusive(const char* path) {
    return _open(path, _O_WRONLY | _O_CREAT | _O_EXCL | _O_BINARY, _S_IREAD | _S_IWRITE);
}
bool SetMode(int, int) { return true; }  // read-only targets are refused, nothing else to keep
int NewFileMode() { return 0; }
long WriteSome(int file, const unsigned char* bytes, size_t size) {
    const unsigned chunk = size > 0x40000000 ? 0x40000000u : static_cast<unsigned>(size);
    return _write(file, bytes, chunk);
}
bool FlushAndClose(int file) {
    bool flushed = _commit(file) == 0;
    return _close(file) == 0 && flushed;
}
bool ReplaceWith(const std::string& temporary, const std::string& target) {
    return MoveFileExA(temporary.c_str(), target.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) != 0;
}
void FlushFolderOf(const std::string&) {}  // the rename was written through
void CloseFile(int file) { _close(file); }
void RemoveFile(const std::string& path) { _unlink(path.c_str()); }
#else
using FileStatus = struct stat;
int StatusOf(const char* path, FileStatus& status) { return stat(path, &status); }
bool IsRegular(const FileStatus& status) { return S_ISREG(status.st_mode); }
bool MayWrite(const char* path) { return access(path, W_OK) == 0; }
int ProcessId() { return static_cast<int>(getpid()); }
int CreateExclusive(const char* path) { return open(path, O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, S_IRUSR | S_IWUSR); }
bool SetMode(int file, int mode) { return fchmod(file, static_cast<mode_t>(mode)) == 0; }
int NewFileMode() {
    mode_t mask = umask(0);
    umask(mask);
    return 0666 & ~mask;
}
long WriteSome(int file, const unsigned char* bytes, size_t size) { return write(file, bytes, size); }
bool FlushAndClose(int file) {
    bool flushed = fsync(file) == 0;
    return close(file) == 0 && flushed;
}
bool ReplaceWith(const std::string& temporary, const std::string& target) {
    return std::rename(temporary.c_str(), target.c_str()) == 0;
}
// Makes the rename itself durable. The new file is complete either way, so
// a folder that cannot be flushed does not fail the output.
void FlushFolderOf(const std::string& target) {
    std::string folder = std::filesystem::path(target).parent_path().string();
    int file = open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_CLOEXEC);
    if (file < 0) return;
    fsync(file);
    close(file);
}
void CloseFile(int file) { close(file); }
void RemoveFile(const std::string& path) { unlink(path.c_str()); }
#endif

// The file a write to path replaces: a symbolic link is followed, so that
// the link stays and the file it names gets the new bytes.
std::string ResolvedTarget(const char* path) {
    std::error_code error;
    if (!std::filesystem::is_symlink(path, error)) return path;
    std::filesystem::path resolved = std::filesystem::canonical(path, error);
    return error ? std::string(path) : resolved.string();
}

// The mode the finished file gets: an existing target's own, the usual mode
// of a new file otherwise. -1 when the target may not be replaced.
int ModeForTarget(const std::string& target) {
    FileStatus status;
    if (StatusOf(target.c_str(), status) != 0) return errno == ENOENT ? NewFileMode() : -1;
    if (!IsRegular(status) || !MayWrite(target.c_str())) return -1;
    return static_cast<int>(status.st_mode & 07777);
}

// Creates a fresh file in target's folder and names it in temporary. The
// name is short, so that a target whose own name is as long as a name may
// be still gets one.
int CreateTemporaryBeside(const std::string& target, std::string& temporary) {
    static unsigned serial = 0;
    constexpr int kAttempts = 64;
    const std::filesystem::path folder = std::filesystem::path(target).parent_path();
    for (int attempt = 0; attempt < kAttempts; ++attempt) {
        std::string name = ".trelvane-" + std::to_string(ProcessId()) + "-" + std::to_string(serial++) + ".tmp";
        temporary = (folder / name).string();
        int file = CreateExclusive(temporary.c_str());
        if (file >= 0 || errno != EEXIST) return file;
    }
    return -1;
}

}  // namespace

OutputFile::OutputFile(const char* path) : target_(ResolvedTarget(path)) {
    int mode = ModeForTarget(target_);
    if (mode < 0) return;
    file_ = CreateTemporaryBeside(target_, temporary_);
    if (file_ >= 0 && !SetMode(file_, mode)) Discard();
}

OutputFile::~OutputFile() { Discard(); }

void OutputFile::Discard() {
    if (file_ >= 0) CloseFile(file_);
    file_ = -1;
    if (!temporary_.empty()) RemoveFile(temporary_);
    temporary_.clear();
}

bool OutputFile::Write(const void* bytes, size_t size) {
    const auto* next = static_cast<const unsigned char*>(bytes);
    while (!failed_ && is_open() && size > 0) {
        long written = WriteSome(file_, next, size);
        if (written < 0 && errno == EINTR) continue;
        if (written <= 0) failed_ = true;
        if (written > 0) {
            next += written;
            size -= static_cast<size_t>(written);
        }
    }
    return !failed_ && is_open();
}

bool OutputFile::Commit() {
    if (!is_open() || failed_) {
        Discard();
        return false;
    }
    bool closed = FlushAndClose(file_);
    file_ = -1;
    if (!closed || !ReplaceWith(temporary_, target_)) {
        Discard();
        return false;
    }
    temporary_.clear();
    FlushFolderOf(target_);
    return true;
}

bool WriteOutputFile(const char* path, const void* bytes, size_t size) {
    OutputFile file(path);
    return file.Write(bytes, size) && file.Commit();
}

bool IsRewritableFile(const char* path) {
    FileStatus status;
    return StatusOf(path, status) == 0 && IsRegular(status) && MayWrite(path);
}
