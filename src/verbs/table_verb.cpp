// trelvane table convert THINGY -o TABLE: a thingy table written as a
// Trelvane table.
#include <cstdio>
#include <memory>

#include "table/thingy_reader.h"
#include "trelvane.h"
#include "verbs/verb_list.h"

namespace {

struct ConvertOptions {
    std::string thingy;
    std::string output;
};

int RunConvert(const CLI::App& verb, const ConvertOptions& options) {
    const long font = ReadThingyTable(options.thingy.c_str());
    if (!font || !Trelvane_SaveFont(font, options.output.c_str())) return VerbEngineError(verb);
    std::printf("%s: written from %s\n", options.output.c_str(), options.thingy.c_str());
    return 0;
}

}  // namespace

Verb AddTableVerb(CLI::App& app) {
    CLI::App* verb = app.add_subcommand("table", "Work with character tables");
    verb->require_subcommand(1);
    CLI::App* convert = verb->add_subcommand("convert", "Write a thingy table (any extension) as a Trelvane table");
    auto options = std::make_shared<ConvertOptions>();
    convert->add_option("THINGY", options->thingy, "Thingy table to read")->required();
    convert->add_option("-o,--output", options->output, "Trelvane table to write")->required();
    return Verb{verb, [verb, options] { return RunConvert(*verb, *options); }};
}
