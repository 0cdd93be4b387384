// trelvane apply IMAGE PATCH... [-o OUTPUT]: IPS, BPS and UPS patches,
// recognised by their first bytes, applied in order in memory; the result is
// written once, over IMAGE or to OUTPUT, and nothing at all on a refusal.
#include <cstdio>
#include <memory>

#include "core/file_bytes.h"
#include "core/last_error.h"
#include "core/output_file.h"
#include "patches/patch_application.h"
#include "patches/patch_stack.h"
#include "trelvane.h"
#include "verbs/verb_list.h"

namespace {

struct ApplyOptions {
    std::string image;
    std::vector<std::string> patches;
    std::string output;
    bool allowOverlap = false;
    bool addHeader = false;
    bool removeHeader = false;
};

// The image to patch: one that is replaced must be a file this process may
// write; one only read may be any readable file.
bool ReadImage(const ApplyOptions& options, std::vector<unsigned char>& image) {
    if (options.output.empty()) return ReadPatchTarget(options.image.c_str(), image);
    switch (ReadFileBytesUpTo(options.image.c_str(), PATCH_LARGEST_FILE, image)) {
        case FileRead::Read: return true;
        case FileRead::TooLarge: return SetError(TLERR_FILE_TOOLARGE, options.image.c_str(), 0, 0, "1 GiB");
        case FileRead::Failed: break;
    }
    return SetError(TLERR_FILE_NOREAD, options.image.c_str(), 0, 0);
}

std::string Listed(const std::vector<std::string>& names) {
    std::string list;
    for (const std::string& name : names) list += (list.empty() ? "" : ", ") + name;
    return list;
}

int RunApply(const CLI::App& verb, const ApplyOptions& options) {
    PatchStackOptions stack;
    stack.allowOverlap = options.allowOverlap;
    stack.ipsHeader = options.addHeader      ? HeaderShift::Add
                      : options.removeHeader ? HeaderShift::Remove
                                             : HeaderShift::None;
    std::vector<unsigned char> image;
    if (!ReadImage(options, image) || !ApplyPatchStack(options.patches, options.image.c_str(), stack, image))
        return VerbEngineError(verb);
    const std::string& output = options.output.empty() ? options.image : options.output;
    if (!WriteOutputFile(output.c_str(), image.data(), image.size())) {
        SetError(options.output.empty() ? TLERR_FILE_NOWRITE : TLERR_FILE_NOCREATE, output.c_str(), 0, 0);
        return VerbEngineError(verb);
    }
    std::printf("%s: %s applied\n", output.c_str(), Listed(options.patches).c_str());
    return 0;
}

}  // namespace

Verb AddApplyVerb(CLI::App& app) {
    CLI::App* verb = app.add_subcommand("apply", "Apply IPS, BPS and UPS patches, in order, to an image");
    auto options = std::make_shared<ApplyOptions>();
    verb->add_option("IMAGE", options->image, "Image to patch (replaced unless -o is given)")->required();
    verb->add_option("PATCH", options->patches, "Patches, applied in this order")->required();
    verb->add_option("-o,--output", options->output, "File to write the result to, leaving IMAGE as it is");
    verb->add_flag("--allow-overlap", options->allowOverlap,
                   "Let a later patch change bytes an earlier one changed (the later one wins)");
    CLI::Option* add = verb->add_flag("--add-header", options->addHeader,
                                      "Apply IPS patches made for this image with a 512-byte copier header");
    CLI::Option* remove = verb->add_flag("--remove-header", options->removeHeader,
                                         "Apply IPS patches made for this image without its copier header");
    add->excludes(remove);
    return Verb{verb, [verb, options] { return RunApply(*verb, *options); }};
}
