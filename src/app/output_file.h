// Files the front end writes.
#pragma once

#include <cstddef>

// Creates the file at path (truncating an existing one) with read and write
// permission for its owner, and writes size bytes into it. False when it
// cannot be created or written.
bool WriteOutputFile(const char* path, const void* bytes, size_t size);
