// trelvane insert IMAGE SCRIPT [-o OUTPUT] [--fixed-length] [--optimal]:
// puts a script from the dump verb, or a classic script, back into the image.
#include <cstdio>
#include <vector>

#include "core/file_bytes.h"
#include "core/path_names.h"
#include "script/script_document_reader.h"
#include "script/script_placement.h"
#include "verbs/verb_image.h"
#include "verbs/verb_list.h"

namespace {

struct InsertArguments {
    std::string image, script, output;
    PlacementOptions options;
};

// The table as the script names it, else beside the script.
long LoadScriptTable(const std::string& script, const std::string& table) {
    long fontId = Trelvane_LoadFont(table.c_str());
    if (fontId || table.empty() || IsFolderSeparator(table[0])) return fontId;
    const std::string folder = script.substr(0, static_cast<size_t>(BaseName(script.c_str()) - script.c_str()));
    return folder.empty() ? 0 : Trelvane_LoadFont((folder + table).c_str());
}

void PrintReport(const InsertArguments& arguments, const PlacementReport& report) {
    std::printf("%s: %lld strings - %lld/%lld bytes\n", arguments.script.c_str(),
                static_cast<long long>(report.strings), static_cast<long long>(report.used),
                static_cast<long long>(report.space));
    if (!arguments.options.optimal) return;
    std::printf("encoded by longest match: %lld bytes; shortest: %lld bytes (%lld saved)\n",
                static_cast<long long>(report.longestMatch), static_cast<long long>(report.optimal),
                static_cast<long long>(report.longestMatch - report.optimal));
}

int RunInsert(const CLI::App& verb, const InsertArguments& arguments) {
    std::vector<unsigned char> script;
    if (!ReadFileBytes(arguments.script.c_str(), script)) return VerbError(verb, "cannot read " + arguments.script);
    if (!LoadVerbImage(verb, arguments.image)) return 1;
    ScriptDocument document;
    const char* name = BaseName(arguments.script.c_str());
    if (!ReadScriptDocument(std::string(script.begin(), script.end()), name, document)) return VerbEngineError(verb);
    const long fontId = LoadScriptTable(arguments.script, document.tableFile);
    if (!fontId) return VerbError(verb, "cannot load the table \"" + document.tableFile + "\"");
    PlacementReport report;
    if (!PlaceScript(fontId, document, arguments.options, name, report)) return VerbEngineError(verb);
    const std::string& output = arguments.output.empty() ? arguments.image : arguments.output;
    if (!SaveVerbImage(verb, arguments.image, output)) return 1;
    PrintReport(arguments, report);
    return 0;
}

}  // namespace

Verb AddInsertVerb(CLI::App& app) {
    CLI::App* verb = app.add_subcommand("insert", "Insert an edited script into a game image");
    auto arguments = std::make_shared<InsertArguments>();
    verb->add_option("IMAGE", arguments->image, "The game image")->required();
    verb->add_option("SCRIPT", arguments->script, "The script (from dump, or a classic one)")->required();
    verb->add_option("-o,--output", arguments->output, "Write the result here instead of over IMAGE");
    verb->add_flag("--fixed-length", arguments->options.fixedLength,
                   "Keep each string at its original place and length, padded");
    verb->add_flag("--optimal", arguments->options.optimal, "Choose the shortest encoding of each string");
    return Verb{verb, [verb, arguments] { return RunInsert(*verb, *arguments); }};
}
