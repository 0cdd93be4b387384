// Whole-file input and output as raw bytes.
#pragma once

#include <cstddef>
#include <vector>

// Reads the file at path into bytes. False when it cannot be opened or read.
bool ReadFileBytes(const char* path, std::vector<unsigned char>& bytes);

// Creates or truncates the file at path and writes size bytes to it in one
// go. False when it cannot be created or the bytes cannot all be written.
bool WriteFileBytes(const char* path, const unsigned char* bytes, size_t size);
