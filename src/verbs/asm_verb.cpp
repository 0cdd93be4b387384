// trelvane asm IMAGE SOURCE: assembles a source in the Super NES community's
// common syntax into the image, or into an IPS/BPS patch for it.
#include <cstdio>
#include <map>

#include "asm/asm_session.h"
#include "asm/snes_checksum.h"
#include "asm/source_assembler.h"
#include "core/file_bytes.h"
#include "core/output_file.h"
#include "core/snes_header.h"
#include "patches/bps_create.h"
#include "patches/ips_format.h"
#include "verbs/verb_list.h"

namespace {

constexpr size_t COPIER_HEADER = 512;

struct AsmArguments {
    std::string image, source, output, mapName, ips, bps, symbols;
    std::vector<std::string> defines;
    bool noChecksum = false;
};

void PrintDiagnostics(const AsmSession& session, bool assembled) {
    if (assembled)
        for (const std::string& line : session.prints) std::printf("%s\n", line.c_str());
    for (const AsmDiagnostic& warning : session.warnings)
        std::fprintf(stderr, "%s:%d:%d: warning: %s\n", warning.place.file.c_str(), warning.place.line,
                     warning.place.column, warning.text.c_str());
    for (const AsmDiagnostic& error : session.errors)
        std::fprintf(stderr, "%s:%d:%d: error: %s\n", error.place.file.c_str(), error.place.line, error.place.column,
                     error.text.c_str());
}

// "[labels]" and one "BB:AAAA name" line per address label, by address then name.
std::string SymbolFile(const AsmSession& session) {
    std::multimap<uint32_t, std::string> sorted;
    for (const auto& [name, entry] : session.labels.All())
        if (!entry.constant) sorted.emplace(entry.value, name);
    std::string text = "[labels]\n";
    char line[16];
    for (const auto& [address, name] : sorted) {
        std::snprintf(line, sizeof line, "%02X:%04X ", address >> 16 & 0xFF, address & 0xFFFF);
        text += line + name + "\n";
    }
    return text;
}

bool WriteResult(const CLI::App& verb, const AsmArguments& args, const std::vector<unsigned char>& original,
                 const std::vector<unsigned char>& result) {
    std::vector<unsigned char> patch;
    std::string target = args.output.empty() ? args.image : args.output;
    const std::vector<unsigned char>* bytes = &result;
    if (!args.ips.empty()) {
        const IpsBuild built = BuildIpsPatch(original.data(), original.size(), result.data(), result.size(), patch);
        if (built == IpsBuild::OffsetTooLarge) return VerbError(verb, "the image is too large for an IPS patch") == 0;
        if (built == IpsBuild::Identical) patch = {'P', 'A', 'T', 'C', 'H', 'E', 'O', 'F'};
        target = args.ips;
        bytes = &patch;
    } else if (!args.bps.empty()) {
        BuildBpsPatch(original.data(), original.size(), result.data(), result.size(), patch);
        target = args.bps;
        bytes = &patch;
    }
    if (!WriteOutputFile(target.c_str(), bytes->data(), bytes->size()))
        return VerbError(verb, "cannot write " + target) == 0;
    return true;
}

int RunAsm(const CLI::App& verb, const AsmArguments& args) {
    std::vector<unsigned char> original;
    if (!ReadFileBytes(args.image.c_str(), original)) return VerbError(verb, "cannot read " + args.image);
    const size_t header = original.size() % 1024 == COPIER_HEADER ? COPIER_HEADER : 0;
    AsmSession session;
    session.image.assign(original.begin() + static_cast<long>(header), original.end());
    session.options.mapping = args.mapName.empty() ? DetectSnesMapping(session.image.data(), session.image.size())
                                                   : SnesMappingFromName(args.mapName.c_str());
    for (const std::string& define : args.defines) {
        const size_t equals = define.find('=');
        std::string name = define.substr(0, equals);
        if (!name.empty() && name[0] == '!') name.erase(0, 1);
        session.options.defines.emplace_back(name, equals == std::string::npos ? "" : define.substr(equals + 1));
    }
    const bool assembled = AssembleSource(session, args.source);
    PrintDiagnostics(session, assembled);
    if (!assembled) return 1;
    if (!args.noChecksum && !FixSnesChecksum(session.image, session.Mapping()))
        std::fprintf(stderr, "trelvane asm: warning: the image is too small to hold a checksum; left as it is\n");
    std::vector<unsigned char> result(original.begin(), original.begin() + static_cast<long>(header));
    result.insert(result.end(), session.image.begin(), session.image.end());
    if (!WriteResult(verb, args, original, result)) return 1;
    if (args.symbols.empty()) return 0;
    const std::string symbols = SymbolFile(session);
    if (!WriteOutputFile(args.symbols.c_str(), symbols.data(), symbols.size()))
        return VerbError(verb, "cannot write " + args.symbols);
    return 0;
}

}  // namespace

Verb AddAsmVerb(CLI::App& app) {
    CLI::App* command = app.add_subcommand("asm", "Assemble 65816 source in the community's common syntax into an image");
    auto args = std::make_shared<AsmArguments>();
    command->add_option("IMAGE", args->image, "Super NES image")->required();
    command->add_option("SOURCE", args->source, "source file")->required();
    CLI::Option* output = command->add_option("-o,--output", args->output, "write the assembled image here instead of IMAGE");
    command->add_option("--map", args->mapName, "address mapping")
        ->check(CLI::IsMember({"lorom", "hirom", "exlorom", "exhirom", "sa1"}, CLI::ignore_case));
    CLI::Option* ips = command->add_option("--ips", args->ips, "write an IPS patch instead of changing the image");
    CLI::Option* bps = command->add_option("--bps", args->bps, "write a BPS patch instead of changing the image");
    ips->excludes(bps);
    output->excludes(ips)->excludes(bps);
    command->add_option("--symbols", args->symbols, "write the labels as a WLA symbol file");
    command->add_option("-D,--define", args->defines, "define !NAME as VALUE (NAME=VALUE)");
    command->add_flag("--no-checksum", args->noChecksum, "leave the internal checksum as it is");
    return Verb{command, [command, args] { return RunAsm(*command, *args); }};
}
