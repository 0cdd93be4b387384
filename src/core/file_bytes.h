// Whole-file input as raw bytes.
#pragma once

#include <vector>

// Reads the file at path into bytes. False when it cannot be opened or read.
bool ReadFileBytes(const char* path, std::vector<unsigned char>& bytes);
