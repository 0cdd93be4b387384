// Whole-file input as raw bytes.
#pragma once

#include <cstdint>
#include <vector>

enum class FileRead { Read, Failed, TooLarge };

// Reads the regular file at path into bytes, refusing a file of more than
// limit bytes before anything is allocated. Anything but a regular file
// (a folder, FIFO or device) is refused before it is opened, so reading
// never blocks.
FileRead ReadFileBytesUpTo(const char* path, uint64_t limit, std::vector<unsigned char>& bytes);

// Reads the file at path into bytes. False when it cannot be opened or read.
bool ReadFileBytes(const char* path, std::vector<unsigned char>& bytes);
