// Verbs whose work is still being built: each refuses to run.
#include "verbs/verb_list.h"

namespace {

Verb PendingVerb(CLI::App& app, const char* name) {
    CLI::App* command = app.add_subcommand(name, "(not available yet)");
    command->allow_extras();
    return Verb{command, [command] { return VerbError(*command, "not available yet"); }};
}

}  // namespace

Verb AddTilesVerb(CLI::App& app) { return PendingVerb(app, "tiles"); }
