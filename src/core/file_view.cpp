#include "core/file_view.h"

#include "core/file_bytes.h"

#ifndef _WIN32
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

FileView::~FileView() {
#ifndef _WIN32
    if (mapping_) munmap(mapping_, size_);
#endif
}

bool FileView::ReadCopy(const char* path) {
    if (!ReadFileBytes(path, copy_)) return false;
    data_ = copy_.data();
    size_ = copy_.size();
    return true;
}

#ifdef _WIN32
bool FileView::Open(const char* path, bool) { return ReadCopy(path); }
#else
bool FileView::Open(const char* path, bool copy) {
    if (copy) return ReadCopy(path);
    int fd = open(path, O_RDONLY | O_NONBLOCK | O_CLOEXEC);  // a FIFO must not block
    if (fd < 0) return false;
    struct stat info;
    bool regular = fstat(fd, &info) == 0 && S_ISREG(info.st_mode);
    size_t size = regular ? static_cast<size_t>(info.st_size) : 0;
    int flags = MAP_PRIVATE;
#ifdef MAP_POPULATE
    flags |= MAP_POPULATE;
#endif
    void* mapping = regular && size > 0 ? mmap(nullptr, size, PROT_READ, flags, fd, 0) : MAP_FAILED;
    close(fd);
    if (!regular) return false;
    if (mapping == MAP_FAILED) return size == 0 || ReadCopy(path);
    mapping_ = mapping;
    data_ = static_cast<const unsigned char*>(mapping);
    size_ = size;
    return true;
}
#endif
