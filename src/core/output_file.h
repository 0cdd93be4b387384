// All-or-nothing output files. The bytes go to a temporary file beside the
// target, are flushed to the disk and checked, and only a complete file is
// renamed over the target; any failure removes the temporary file and leaves
// an existing target exactly as it was. A replaced file keeps its mode, a
// new one gets the platform's usual mode (0666 less the umask).
//
// Shared by the engine and the front end: the front end links only the
// library's exported interface, so it is built into both.
#pragma once

#include <cstddef>
#include <string>

class OutputFile {
public:
    // Starts an output for path. Fails (is_open() false) when path names a
    // folder, device or other file that is not a regular file, a file this
    // process may not write, or a folder where no file can be created.
    explicit OutputFile(const char* path);
    ~OutputFile();  // an output never committed is removed
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;

    bool is_open() const { return file_ >= 0; }

    // Appends size bytes; false once any write has failed.
    bool Write(const void* bytes, size_t size);

    // Flushes and closes the temporary file and renames it over the target.
    // False, with the target untouched, when anything failed on the way.
    bool Commit();

private:
    void Discard();

    std::string target_;
    std::string temporary_;
    int file_ = -1;
    bool failed_ = false;
};

// Writes size bytes as the whole of the file at path, all or nothing. False
// when it cannot be created or written.
bool WriteOutputFile(const char* path, const void* bytes, size_t size);

// True when path names an existing regular file that this process may write:
// saves that update a file never create one.
bool IsRewritableFile(const char* path);
