// The Super NES part of the sample: a small image for the patch-script step.
#pragma once

#include <string>
#include <vector>

// The image without its copier header.
std::vector<unsigned char> MakeSnesImage();

// Writes the image as a .smc file, behind a 512-byte copier header of zeros.
bool WriteSmc(const std::string& path, const std::vector<unsigned char>& image);
