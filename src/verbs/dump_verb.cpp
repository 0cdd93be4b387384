// trelvane dump IMAGE --table TABLE -o SCRIPT with the strings' pointers
// given as a table (--pointers), a split table (--split), found from a
// string's address (--find), listed in a file (--pointer-list), or no
// pointers at all (--at ADDRESS --count N).
#include <cstdio>
#include <sstream>
#include <vector>

#include "core/file_bytes.h"
#include "core/number_text.h"
#include "core/output_file.h"
#include "script/pointer_form.h"
#include "script/script_document_writer.h"
#include "script/script_extraction.h"
#include "script/table_extent.h"
#include "verbs/pointer_options.h"
#include "verbs/pointer_search.h"
#include "verbs/verb_image.h"
#include "verbs/verb_list.h"

namespace {

// Entries a table without --count is searched for at most.
constexpr int64_t kLongestTable = 0x10000;

bool Refuse(const CLI::App& verb, const std::string& why) {
    VerbError(verb, why);
    return false;
}

struct DumpArguments {
    std::string image, table, output;
    std::string pointers, split, find, pointerList, at, count;
    PointerOptions form;
};

bool ReadOffsets(const std::string& line, std::vector<int64_t>& offsets) {
    std::istringstream words(line);
    std::string word;
    int64_t value = 0;
    while (words >> word) {
        if (!ReadNumberText(word.c_str(), value) || value < 0) return false;
        offsets.push_back(value);
    }
    return true;
}

// One line per string: the offsets of its pointers; ";" starts a comment line.
bool ReadPointerList(const CLI::App& verb, const std::string& path, std::vector<std::vector<int64_t>>& lists) {
    std::vector<unsigned char> bytes;
    if (!ReadFileBytes(path.c_str(), bytes)) return Refuse(verb, "cannot read " + path);
    std::istringstream lines(std::string(bytes.begin(), bytes.end()));
    std::string line;
    for (int number = 1; std::getline(lines, line); ++number) {
        if (line.empty() || line[0] == ';' || line.find_first_not_of(" \t\r") == std::string::npos) continue;
        std::vector<int64_t> offsets;
        if (!ReadOffsets(line, offsets))
            return Refuse(verb, path + ":" + std::to_string(number) + ": expected pointer offsets");
        lists.push_back(offsets);
    }
    if (lists.empty()) return Refuse(verb, path + " lists no pointers");
    return true;
}

// LOW,HIGH[,BANK]
bool SplitTables(const CLI::App& verb, const std::string& text, PointerForm& form) {
    std::vector<int64_t> offsets;
    std::string spaced = text;
    for (char& c : spaced)
        if (c == ',') c = ' ';
    if (!ReadOffsets(spaced, offsets) || offsets.size() < 2 || offsets.size() > 3)
        return Refuse(verb, "--split takes LOW,HIGH or LOW,HIGH,BANK offsets");
    form.table = -1;
    form.low = static_cast<int>(offsets[0]);
    form.high = static_cast<int>(offsets[1]);
    form.bank = offsets.size() > 2 ? static_cast<int>(offsets[2]) : -1;
    form.size = 0;
    return true;
}

// The table's entries: --count, or as far as the table goes.
bool CountEntries(const CLI::App& verb, const DumpArguments& arguments, long fontId, PointerForm& form) {
    if (!CheckPointerForm(form)) return Refuse(verb, Trelvane_GetLastError());
    form.count = arguments.count.empty() ? static_cast<int>(TableExtent(fontId, form, kLongestTable))
                                         : static_cast<int>(NumberValue(arguments.count));
    if (form.count > 0) return true;
    return Refuse(verb, "no pointer to a string at the table's first entry");
}

// The longest table that holds a pointer to the string asked for.
bool FoundTable(const CLI::App& verb, const DumpArguments& arguments, ScriptSource& source) {
    const PointerSearch search = SearchPointersTo(NumberValue(arguments.find), arguments.form, source.fontId);
    if (search.tables.empty())
        return Refuse(verb, "no table of 8 or more pointers to the string at " + arguments.find);
    source.form = search.tables.front();
    if (!arguments.count.empty()) source.form.count = static_cast<int>(NumberValue(arguments.count));
    return true;
}

bool DescribeSource(const CLI::App& verb, const DumpArguments& arguments, ScriptSource& source) {
    const int given = !arguments.pointers.empty() + !arguments.split.empty() + !arguments.find.empty() +
                      !arguments.pointerList.empty() + !arguments.at.empty();
    if (given != 1) return Refuse(verb, "give one of --pointers, --split, --find, --pointer-list and --at");
    source.form = PointerFormOf(arguments.form, arguments.pointers.empty() ? -1 : NumberValue(arguments.pointers));
    if (!arguments.at.empty()) {
        if (arguments.count.empty()) return Refuse(verb, "--at needs --count");
        source.textAddress = NumberValue(arguments.at);
        source.count = NumberValue(arguments.count);
        return true;
    }
    if (!arguments.pointerList.empty()) {
        source.pointers = ScriptPointers::List;
        return ReadPointerList(verb, arguments.pointerList, source.pointerLists) &&
               (CheckPointerForm(source.form) || Refuse(verb, Trelvane_GetLastError()));
    }
    source.pointers = ScriptPointers::Table;
    if (!arguments.find.empty()) return FoundTable(verb, arguments, source);
    if (!arguments.split.empty() && !SplitTables(verb, arguments.split, source.form)) return false;
    return CountEntries(verb, arguments, source.fontId, source.form);
}

int RunDump(const CLI::App& verb, const DumpArguments& arguments) {
    if (!LoadVerbImage(verb, arguments.image)) return 1;
    ScriptSource source;
    source.tableFile = arguments.table;
    source.fontId = Trelvane_LoadFont(arguments.table.c_str());
    if (!source.fontId) return VerbEngineError(verb);
    if (!DescribeSource(verb, arguments, source)) return 1;
    ScriptDocument document;
    if (!ExtractScript(source, document)) return VerbEngineError(verb);
    const std::string text = FormatScriptDocument(document);
    if (!WriteOutputFile(arguments.output.c_str(), text.data(), text.size()))
        return VerbError(verb, "cannot write " + arguments.output);
    std::printf("%zu strings", document.entries.size());
    if (source.pointers == ScriptPointers::Table) std::printf(" through %s", DescribePointerForm(document.form).c_str());
    std::printf(", %zu text region%s\n", document.regions.size(), document.regions.size() == 1 ? "" : "s");
    return 0;
}

}  // namespace

Verb AddDumpVerb(CLI::App& app) {
    CLI::App* verb = app.add_subcommand("dump", "Dump a game's strings to an editable script");
    auto arguments = std::make_shared<DumpArguments>();
    verb->add_option("IMAGE", arguments->image, "The game image")->required();
    verb->add_option("--table", arguments->table, "The character table")->required();
    verb->add_option("-o,--output", arguments->output, "The script to write")->required();
    verb->add_option("--pointers", arguments->pointers, "Offset of a table of pointers")->check(NumberArgument());
    verb->add_option("--split", arguments->split,
                     "Offsets LOW,HIGH[,BANK] of a split pointer table (--base, or --map with a bank table)");
    verb->add_option("--find", arguments->find, "Find the table that points at the string at this offset")
        ->check(NumberArgument());
    verb->add_option("--pointer-list", arguments->pointerList, "File with each string's pointer offsets, a line each");
    verb->add_option("--at", arguments->at, "Offset of strings stored end to end, without pointers")
        ->check(NumberArgument());
    verb->add_option("--count", arguments->count, "Number of strings (pointers of a table)")->check(NumberArgument());
    AddPointerOptions(*verb, arguments->form, true);
    return Verb{verb, [verb, arguments] { return RunDump(*verb, *arguments); }};
}
