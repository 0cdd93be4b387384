// trelvane find IMAGE TEXT --table TABLE [--relative] [--wide]: every place
// of the image where TEXT, encoded through TABLE, stands.
// trelvane find IMAGE --references ADDRESS [--size S] [--base B | --map M]
// [--table TABLE]: every place holding a pointer to ADDRESS, and with a
// table the pointer tables among them.
#include <cstdio>
#include <memory>
#include <vector>

#include "core/rom_slots.h"
#include "script/string_search.h"
#include "table/text_encoder.h"
#include "trelvane.h"
#include "verbs/verb_image.h"
#include "verbs/pointer_search.h"
#include "verbs/verb_list.h"

namespace {

struct FindOptions {
    std::string image;
    std::string text;
    std::string table;
    bool relative = false;
    bool wide = false;
    std::string references;
    PointerOptions pointers;
};

using MatchFinder = int32_t (*)(const unsigned char* pattern, int32_t length, int32_t from);

MatchFinder FinderFor(const FindOptions& options) {
    if (options.relative) return FindRelativeMatch;
    if (options.wide) return FindWideMatch;
    return FindPlainMatch;
}

// Every match of pattern, offset 0 included, in the order of the image.
std::vector<int32_t> AllMatches(MatchFinder find, const std::vector<unsigned char>& pattern) {
    std::vector<int32_t> matches;
    const int32_t length = static_cast<int32_t>(pattern.size());
    for (int32_t at = find(pattern.data(), length, 0); at >= 0 && at < CurrentRom().size;
         at = find(pattern.data(), length, at + 1))
        matches.push_back(at);
    return matches;
}

// The bytes TEXT encodes to through the loaded table, without the terminal
// code the encoder would append.
bool EncodedPattern(const CLI::App& verb, const FindOptions& options, std::vector<unsigned char>& pattern) {
    const long font = Trelvane_LoadFont(options.table.c_str());
    if (!font) return VerbEngineError(verb), false;
    const EncodedText encoded = EncodeText(font, options.text.c_str(), UNTERMINATED_ENCODING);
    if (!encoded.bytes || encoded.length == 0)
        return VerbError(verb, "'" + options.text + "' cannot be encoded with " + options.table), false;
    pattern.assign(encoded.bytes, encoded.bytes + encoded.length);
    if (pattern.size() < 2 && (options.relative || options.wide))
        return VerbError(verb, "--relative and --wide need a text of at least two characters"), false;
    return true;
}

int RunReferences(const CLI::App& verb, const FindOptions& options) {
    if (!LoadVerbImage(verb, options.image)) return 1;
    const long font = options.table.empty() ? 0 : Trelvane_LoadFont(options.table.c_str());
    if (!options.table.empty() && !font) return VerbEngineError(verb);
    const PointerSearch search = SearchPointersTo(NumberValue(options.references), options.pointers, font);
    for (const FoundPointer& place : search.places)
        std::printf("%06Xh: %s\n", static_cast<unsigned>(place.form.table), DescribePointerForm(place.form).c_str());
    for (const PointerForm& table : search.tables) std::printf("table: %s\n", DescribePointerForm(table).c_str());
    if (search.places.empty()) return VerbError(verb, "no pointer to " + options.references);
    return 0;
}

int RunFind(const CLI::App& verb, const FindOptions& options) {
    if (!options.references.empty()) return RunReferences(verb, options);
    if (options.text.empty() || options.table.empty()) return VerbError(verb, "give TEXT and --table, or --references");
    std::vector<unsigned char> pattern;
    if (!LoadVerbImage(verb, options.image) || !EncodedPattern(verb, options, pattern)) return 1;
    const std::vector<int32_t> matches = AllMatches(FinderFor(options), pattern);
    for (const int32_t at : matches) std::printf("%06Xh\n", static_cast<unsigned>(at));
    if (matches.empty()) return VerbError(verb, "no match for '" + options.text + "'");
    return 0;
}

}  // namespace

Verb AddFindVerb(CLI::App& app) {
    CLI::App* verb = app.add_subcommand("find", "Find text in an image through a character table");
    auto options = std::make_shared<FindOptions>();
    verb->add_option("IMAGE", options->image, "ROM image")->required();
    verb->add_option("TEXT", options->text, "Text to find, written as the table writes it");
    verb->add_option("--table", options->table, "Character table (.tbl thingy table or Trelvane table)");
    verb->add_option("--references", options->references, "List the pointers to the string at this offset")
        ->check(NumberArgument());
    AddPointerOptions(*verb, options->pointers, false);
    CLI::Option* relative =
        verb->add_flag("--relative", options->relative, "Match the rises and falls between letters (unknown encoding)");
    verb->add_flag("--wide", options->wide, "Match one letter in every second byte")->excludes(relative);
    return Verb{verb, [verb, options] { return RunFind(*verb, *options); }};
}
