// Whole-file input as raw bytes.
#pragma once

#include <cstddef>
#include <vector>

// Reads the file at path into bytes. False when it cannot be opened or read.
bool ReadFileBytes(const char* path, std::vector<unsigned char>& bytes);

// Creates the file at path (truncating an existing one) with read and write
// permission for its owner, and writes size bytes into it. False when it
// cannot be created or written.
bool WriteNewFile(const char* path, const void* bytes, size_t size);
