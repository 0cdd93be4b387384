// Several patch files applied in order to one image in memory: the input's
// first byte sets the options, the rest is cut at each "\n--\n" into the
// image and up to four patch files, written as they come.
#include <string>
#include <string_view>
#include <vector>

#include "patches/patch_stack.h"
#include "scratch_files.h"

namespace {

constexpr std::string_view kCut = "\n--\n";
constexpr size_t kMostPatches = 4;

std::vector<std::string_view> Sections(std::string_view input) {
    std::vector<std::string_view> sections;
    for (size_t cut; sections.size() < kMostPatches && (cut = input.find(kCut)) != std::string_view::npos;) {
        sections.push_back(input.substr(0, cut));
        input.remove_prefix(cut + kCut.size());
    }
    sections.push_back(input);
    return sections;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size == 0) return 0;
    PatchStackOptions options;
    options.allowOverlap = data[0] & 1;
    options.ipsHeader = static_cast<HeaderShift>(data[0] >> 1 & 1 ? (data[0] >> 2 & 1) + 1 : 0);
    std::vector<std::string_view> sections =
        Sections(std::string_view(reinterpret_cast<const char*>(data) + 1, size - 1));
    std::vector<std::string> patchfiles;
    for (size_t k = 1; k < sections.size(); ++k) {
        patchfiles.push_back(ScratchName("-" + std::to_string(k) + ".patch"));
        if (!WriteInput(patchfiles.back(), reinterpret_cast<const uint8_t*>(sections[k].data()), sections[k].size()))
            return 0;
    }
    std::vector<unsigned char> image(sections[0].begin(), sections[0].end());
    ApplyPatchStack(patchfiles, "image.sfc", options, image);
    return 0;
}
