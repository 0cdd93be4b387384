// Whether two paths name one file: the same device and file number, so that
// links and different spellings of a path count as the same file.
#pragma once

// True when both paths name the same existing file.
bool SameFile(const char* a, const char* b);
