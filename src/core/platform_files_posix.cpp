// The file calls of POSIX systems; Linux adds unnamed temporary files.
#ifndef _WIN32
#include <dirent.h>
#include <fcntl.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <string>

#include "core/path_names.h"
#include "core/platform_files.h"

namespace {

constexpr int kLinkLimit = 40;  // as the kernel's own limit on nested links

int NewFileMode() {
    mode_t mask = umask(0);
    umask(mask);
    return 0666 & ~mask;
}

std::string FolderOrCurrent(const std::string& folder) { return folder.empty() ? "." : folder; }

void (*interruptCleanup)() = nullptr;

void OnInterrupt(int signal) {
    interruptCleanup();
    ::signal(signal, SIG_DFL);
    raise(signal);
}

}  // namespace

int ModeForTarget(const char* path) {
    struct stat status;
    if (stat(path, &status) != 0) return errno == ENOENT ? NewFileMode() : -1;
    if (!S_ISREG(status.st_mode) || access(path, W_OK) != 0) return -1;
    return static_cast<int>(status.st_mode & 07777);
}

bool IsRewritableFile(const char* path) {
    struct stat status;
    return stat(path, &status) == 0 && S_ISREG(status.st_mode) && access(path, W_OK) == 0;
}

int ProcessId() { return static_cast<int>(getpid()); }

bool ProcessHasEnded(int pid) { return pid > 0 && kill(static_cast<pid_t>(pid), 0) != 0 && errno == ESRCH; }

int CreateExclusive(const char* path) { return open(path, O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, S_IRUSR | S_IWUSR); }

int CreateUnnamed(const std::string& folder) {
#ifdef O_TMPFILE
    // Naming it later goes through /proc, without which it could not be kept.
    if (access("/proc/self/fd", X_OK) != 0) return -1;
    return open(FolderOrCurrent(folder).c_str(), O_TMPFILE | O_WRONLY | O_CLOEXEC, S_IRUSR | S_IWUSR);
#else
    (void)folder;
    return -1;
#endif
}

bool GiveName(int file, const char* path) {
    const std::string self = "/proc/self/fd/" + std::to_string(file);
    return linkat(AT_FDCWD, self.c_str(), AT_FDCWD, path, AT_SYMLINK_FOLLOW) == 0;
}

bool SetMode(int file, int mode) { return fchmod(file, static_cast<mode_t>(mode)) == 0; }

long WriteSome(int file, const unsigned char* bytes, size_t size) { return write(file, bytes, size); }

bool FlushToDisk(int file) { return fsync(file) == 0; }

bool CloseFile(int file) { return close(file) == 0; }

bool ReplaceWith(const std::string& temporary, const std::string& target) {
    return std::rename(temporary.c_str(), target.c_str()) == 0;
}

// The new file is complete either way, so a folder that cannot be flushed
// does not fail the output.
void FlushFolder(const std::string& folder) {
    int file = open(FolderOrCurrent(folder).c_str(), O_RDONLY | O_CLOEXEC);
    if (file < 0) return;
    fsync(file);
    close(file);
}

void RemoveFile(const char* path) { unlink(path); }

void ForEachName(const std::string& folder, const std::function<void(const char*)>& visit) {
    DIR* entries = opendir(FolderOrCurrent(folder).c_str());
    if (!entries) return;
    while (const dirent* entry = readdir(entries)) visit(entry->d_name);
    closedir(entries);
}

std::string FollowLinks(const char* path) {
    std::string target = path;
    char link[4096];
    for (int depth = 0; depth < kLinkLimit; ++depth) {
        const ssize_t length = readlink(target.c_str(), link, sizeof link);
        if (length < 0 || static_cast<size_t>(length) >= sizeof link) break;
        const std::string named(link, static_cast<size_t>(length));
        target = named[0] == '/' ? named : FolderOf(target) + named;
    }
    return target;
}

void InstallInterruptCleanup(void (*cleanup)()) {
    if (interruptCleanup) return;
    interruptCleanup = cleanup;
    for (int signal : {SIGINT, SIGTERM, SIGHUP}) {
        struct sigaction current {};
        // A signal the program was told to ignore (nohup) stays ignored.
        if (sigaction(signal, nullptr, &current) != 0 || current.sa_handler == SIG_IGN) continue;
        struct sigaction handler {};
        handler.sa_handler = OnInterrupt;
        sigemptyset(&handler.sa_mask);
        sigaction(signal, &handler, nullptr);
    }
}
#endif
