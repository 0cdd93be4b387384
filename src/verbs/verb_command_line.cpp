#include "verbs/verb_command_line.h"

#include <cstring>
#include <vector>

#include "verbs/verb_list.h"

namespace {

using VerbAdder = Verb (*)(CLI::App&);

constexpr VerbAdder VERB_ADDERS[] = {AddInfoVerb, AddFindVerb,   AddTableVerb,  AddTilesVerb, AddDiffVerb,
                                     AddApplyVerb, AddDumpVerb, AddInsertVerb, AddAsmVerb};

constexpr const char* VERB_NAMES[] = {"info", "find", "table", "tiles", "diff", "apply",
                                      "dump", "insert", "asm", "--help", "-h", "--version"};

int RunParsedVerb(const std::vector<Verb>& verbs) {
    for (const Verb& verb : verbs)
        if (verb.command->parsed()) return verb.run();
    return 1;
}

}  // namespace

bool IsVerbCommandLine(int argc, char** argv) {
    if (argc < 2) return false;
    for (const char* name : VERB_NAMES)
        if (std::strcmp(argv[1], name) == 0) return true;
    return false;
}

int RunVerbCommandLine(int argc, char** argv) {
    CLI::App app{"Trelvane: a toolkit for translating NES, Super NES and Game Boy games.", "trelvane"};
    app.set_version_flag("--version", TRELVANE_VERSION);
    app.require_subcommand(1);
    std::vector<Verb> verbs;
    for (VerbAdder add : VERB_ADDERS) verbs.push_back(add(app));
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? 0 : 1;
    }
    return RunParsedVerb(verbs);
}
