// What the verbs that work on a ROM image share: loading it by the engine's
// header rule and saying which header was assumed.
#pragma once

#include <string>

#include "verbs/verb_support.h"

// "none", "512-byte copier header", "16-byte iNES header", ... for an image
// of type with headerLength bytes in front of it in a file of fileSize bytes,
// with the reason where the size did not decide.
std::string HeaderDescription(int type, long long headerLength, long long fileSize);

// Loads the image at path as the current image and notes on standard error
// which header was assumed. False after reporting the engine's error.
bool LoadVerbImage(const CLI::App& verb, const std::string& path);

// Writes the file at source with the current image in place of its body
// (the header and any bytes behind the image stay) to target, all or
// nothing; target may be source. Unlike the letter commands' save, no
// checksum is corrected: only the bytes the verb changed differ. False after
// reporting why.
bool SaveVerbImage(const CLI::App& verb, const std::string& source, const std::string& target);
