#include "core/output_file.h"

#include <cerrno>

#include "core/path_names.h"
#include "core/platform_files.h"
#include "core/temporary_files.h"

OutputFile::OutputFile(const char* path) : target_(FollowLinks(path)), folder_(FolderOf(target_)) {
    const int mode = ModeForTarget(target_.c_str());
    if (mode < 0) return;
    RemoveLeftoverTemporaries(folder_);
    if (!OpenTemporary(mode)) Discard();
}

OutputFile::~OutputFile() { Discard(); }

// An unnamed file where the file system has them, a fresh named one
// otherwise. The name is short, so that a target whose own name is as long
// as a name may be still gets one.
bool OutputFile::OpenTemporary(int mode) {
    file_ = CreateUnnamed(folder_);
    constexpr int kAttempts = 64;
    for (int attempt = 0; file_ < 0 && attempt < kAttempts; ++attempt) {
        temporary_ = NextTemporaryName(folder_);
        registration_ = RegisterTemporary(temporary_);
        file_ = CreateExclusive(temporary_.c_str());
        if (file_ < 0) ForgetTemporary();
        if (file_ < 0 && errno != EEXIST) return false;
    }
    return file_ >= 0 && SetMode(file_, mode);
}

// Links a complete unnamed temporary to a name beside the target.
bool OutputFile::NameUnnamed() {
    constexpr int kAttempts = 64;
    for (int attempt = 0; attempt < kAttempts; ++attempt) {
        temporary_ = NextTemporaryName(folder_);
        registration_ = RegisterTemporary(temporary_);
        if (GiveName(file_, temporary_.c_str())) return true;
        const bool taken = errno == EEXIST;
        ForgetTemporary();
        if (!taken) return false;
    }
    return false;
}

// The temporary's name is no longer this output's to remove.
void OutputFile::ForgetTemporary() {
    UnregisterTemporary(registration_);
    registration_ = -1;
    temporary_.clear();
}

void OutputFile::Discard() {
    if (file_ >= 0) CloseFile(file_);
    file_ = -1;
    if (!temporary_.empty()) RemoveFile(temporary_.c_str());
    ForgetTemporary();
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
    const bool complete = is_open() && !failed_ && FlushToDisk(file_) && (!temporary_.empty() || NameUnnamed());
    const bool closed = file_ >= 0 && CloseFile(file_);
    file_ = -1;
    if (!complete || !closed || !ReplaceWith(temporary_, target_)) {
        Discard();
        return false;
    }
    ForgetTemporary();
    FlushFolder(folder_);
    return true;
}

bool WriteOutputFile(const char* path, const void* bytes, size_t size) {
    OutputFile file(path);
    return file.Write(bytes, size) && file.Commit();
}
