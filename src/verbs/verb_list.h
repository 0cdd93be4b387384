// Every verb, one function each: it adds the verb's subcommand to app and
// returns what runs it.
#pragma once

#include "verbs/verb_support.h"

Verb AddInfoVerb(CLI::App& app);
Verb AddFindVerb(CLI::App& app);
Verb AddTableVerb(CLI::App& app);
Verb AddTilesVerb(CLI::App& app);
Verb AddDiffVerb(CLI::App& app);
Verb AddApplyVerb(CLI::App& app);
Verb AddDumpVerb(CLI::App& app);
Verb AddInsertVerb(CLI::App& app);
Verb AddAsmVerb(CLI::App& app);
