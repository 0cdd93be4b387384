// What the info verb says about a patch file (IPS, BPS, UPS).
#pragma once

#include <string>

#include "verbs/verb_support.h"

// True when the file at path starts as an IPS, BPS or UPS patch does.
bool LooksLikePatch(const std::string& path);

// Prints the description of patch (as JSON with json); with a non-empty
// image, also whether the patch fits that image. The exit status.
int RunPatchInfo(const CLI::App& verb, const std::string& patch, bool json, const std::string& image);
