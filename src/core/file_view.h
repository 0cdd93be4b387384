// A read-only view of a whole file: mapped into memory where the platform
// allows it, read into a buffer otherwise.
#pragma once

#include <cstddef>
#include <vector>

class FileView {
public:
    FileView() = default;
    ~FileView();
    FileView(const FileView&) = delete;
    FileView& operator=(const FileView&) = delete;

    // Opens the regular file at path. With copy set, the bytes are read into
    // a private buffer, so the view stays intact when the file itself is
    // truncated or rewritten while the view is in use. False when the file
    // cannot be opened or read.
    bool Open(const char* path, bool copy);

    const unsigned char* data() const { return data_; }
    size_t size() const { return size_; }

private:
    bool ReadCopy(const char* path);

    std::vector<unsigned char> copy_;
    void* mapping_ = nullptr;
    const unsigned char* data_ = nullptr;
    size_t size_ = 0;
};
