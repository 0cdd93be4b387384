// trelvane diff ORIGINAL MODIFIED -o PATCH: the patch that turns ORIGINAL
// into MODIFIED, as IPS, BPS or UPS by the extension of PATCH.
#include <cstdio>
#include <memory>

#include "core/path_names.h"
#include "patches/patch_diff.h"
#include "verbs/verb_list.h"

namespace {

struct DiffOptions {
    std::string original;
    std::string modified;
    std::string patch;
};

PatchKind KindByExtension(const std::string& patch) {
    for (PatchKind kind : {PatchKind::Ips, PatchKind::Bps, PatchKind::Ups}) {
        std::string extension = PatchKindName(kind);
        if (HasExtension(patch.c_str(), extension.c_str())) return kind;
    }
    return PatchKind::None;
}

int RunDiff(const CLI::App& verb, const DiffOptions& options) {
    PatchKind kind = KindByExtension(options.patch);
    if (kind == PatchKind::None) return VerbError(verb, options.patch + ": the patch name must end in .ips, .bps or .ups");
    if (!WritePatchOfFiles(kind, options.patch.c_str(), options.original.c_str(), options.modified.c_str()))
        return VerbEngineError(verb);
    std::printf("%s: %s patch from %s to %s\n", options.patch.c_str(), PatchKindName(kind), options.original.c_str(),
                options.modified.c_str());
    return 0;
}

}  // namespace

Verb AddDiffVerb(CLI::App& app) {
    CLI::App* verb = app.add_subcommand("diff", "Make the IPS, BPS or UPS patch that turns one file into another");
    auto options = std::make_shared<DiffOptions>();
    verb->add_option("ORIGINAL", options->original, "File before the changes")->required();
    verb->add_option("MODIFIED", options->modified, "File after the changes")->required();
    verb->add_option("-o,--output", options->patch, "Patch to write: .ips, .bps or .ups")->required();
    return Verb{verb, [verb, options] { return RunDiff(*verb, *options); }};
}
