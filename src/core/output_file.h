// All-or-nothing output files. The bytes go to a temporary file beside the
// target, are flushed to the disk and checked, and only a complete file is
// renamed over the target; any failure removes the temporary file and leaves
// an existing target exactly as it was. A replaced file keeps its mode, a
// new one gets the platform's usual mode (0666 less the umask).
//
// A temporary file never outlives the command: where the file system allows
// it (Linux) it has no name until it is complete, so it vanishes with a
// killed process; a named one is removed when the user interrupts the
// program, and those of processes that ended otherwise are removed by the
// next output into the same folder (temporary_files.h).
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
    bool OpenTemporary(int mode);
    bool NameUnnamed();
    void ForgetTemporary();
    void Discard();

    std::string target_;
    std::string folder_;
    std::string temporary_;  // empty while the temporary has no name
    int registration_ = -1;
    int file_ = -1;
    bool failed_ = false;
};

// Writes size bytes as the whole of the file at path, all or nothing. False
// when it cannot be created or written.
bool WriteOutputFile(const char* path, const void* bytes, size_t size);
