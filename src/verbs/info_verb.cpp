// trelvane info FILE [--json] [--image IMAGE]: what a ROM image is (system,
// header, the cartridge's own header, digests), or what a patch does.
#include <cstdio>
#include <memory>

#include "core/game_boy_header.h"
#include "trelvane.h"
#include "verbs/json_text.h"
#include "verbs/patch_info.h"
#include "verbs/verb_image.h"
#include "verbs/verb_list.h"

namespace {

struct InfoOptions {
    std::string path;
    bool json = false;
    std::string image;
};

// One line of the description: its label in text, its name in JSON, and
// its value in each form.
struct Field {
    const char* label;
    const char* key;
    std::string text;
    std::string json;
};

std::string Hex(unsigned long long value, int digits) {
    char text[24];
    std::snprintf(text, sizeof text, "%0*llX", digits, value);
    return text;
}

std::string JsonBool(bool value) { return value ? "true" : "false"; }

Field TextField(const char* label, const char* key, const std::string& value) {
    return {label, key, value, JsonString(value)};
}

Field NumberField(const char* label, const char* key, long long value, const std::string& text) {
    return {label, key, text, std::to_string(value)};
}

Field ChecksumField(const char* label, const char* key, unsigned stored, unsigned expected, int digits) {
    const bool holds = stored == expected;
    const std::string text = "0x" + Hex(stored, digits) + (holds ? " (holds)" : " (does not hold: 0x" + Hex(expected, digits) + " expected)");
    return {label, key, text, "{\"value\": " + std::to_string(stored) + ", \"expected\": " + std::to_string(expected) +
                                  ", \"holds\": " + JsonBool(holds) + "}"};
}

const char* SystemName(int type) {
    if (type == ROM_NES) return "NES";
    if (type == ROM_SNES) return "Super NES";
    return "Game Boy";
}

void AddSnesFields(const TrelvaneImageInfo& info, std::vector<Field>& fields) {
    if (!info.hasInternalHeader) {
        fields.push_back(TextField("Mapping", "mapping", "unknown (no internal header found)"));
        return;
    }
    fields.push_back(TextField("Mapping", "mapping", info.mapping));
    fields.push_back(TextField("Title", "title", info.title));
    fields.push_back(ChecksumField("Checksum", "checksum", info.checksum, info.computedChecksum, 4));
    fields.push_back(ChecksumField("Complement", "complement", info.complement, info.checksum ^ 0xFFFFu, 4));
}

void AddNesFields(const TrelvaneImageInfo& info, std::vector<Field>& fields) {
    if (!info.hasInternalHeader) {
        fields.push_back(TextField("Format", "format", "unknown (no iNES header)"));
        return;
    }
    fields.push_back(TextField("Format", "format", info.nes2 ? "NES 2.0" : "iNES"));
    fields.push_back(NumberField("Mapper", "mapper", info.mapper, std::to_string(info.mapper)));
    fields.push_back(NumberField("PRG ROM", "prgSize", info.prgSize, std::to_string(info.prgSize) + " bytes"));
    fields.push_back(NumberField("CHR ROM", "chrSize", info.chrSize, std::to_string(info.chrSize) + " bytes"));
}

void AddGameBoyFields(const TrelvaneImageInfo& info, std::vector<Field>& fields) {
    if (!info.hasInternalHeader) {
        fields.push_back(TextField("Title", "title", "unknown (the image is too short for a cartridge header)"));
        return;
    }
    const char* name = GameBoyCartridgeName(static_cast<uint8_t>(info.cartridgeType));
    fields.push_back(TextField("Title", "title", info.title));
    fields.push_back({"Cartridge type", "cartridgeType", "0x" + Hex(info.cartridgeType, 2) + " " + name,
                      "{\"code\": " + std::to_string(info.cartridgeType) + ", \"name\": " + JsonString(name) + "}"});
    fields.push_back(NumberField("ROM size", "romSize", info.romSize, std::to_string(info.romSize) + " bytes"));
    fields.push_back(
        ChecksumField("Header checksum", "headerChecksum", info.headerChecksum, info.computedHeaderChecksum, 2));
    fields.push_back(
        ChecksumField("Global checksum", "globalChecksum", info.globalChecksum, info.computedGlobalChecksum, 4));
}

std::vector<Field> ImageFields(const std::string& path, const TrelvaneImageInfo& info) {
    std::vector<Field> fields = {
        TextField("File", "file", path),
        TextField("System", "system", SystemName(info.type)),
        NumberField("File size", "fileSize", info.fileSize, std::to_string(info.fileSize) + " bytes"),
        NumberField("Header", "headerLength", info.headerLength,
                    HeaderDescription(info.type, info.headerLength, info.fileSize)),
    };
    if (info.type == ROM_SNES) AddSnesFields(info, fields);
    if (info.type == ROM_NES) AddNesFields(info, fields);
    if (info.type == ROM_GB) AddGameBoyFields(info, fields);
    fields.push_back({"CRC-32", "crc32", Hex(info.crc32, 8), JsonString(Hex(info.crc32, 8))});
    fields.push_back(TextField("MD5", "md5", info.md5));
    fields.push_back(TextField("SHA-1", "sha1", info.sha1));
    return fields;
}

void PrintFields(const std::vector<Field>& fields, bool json) {
    if (!json) {
        for (const Field& field : fields) std::printf("%s: %s\n", field.label, field.text.c_str());
        return;
    }
    std::vector<JsonMember> members;
    for (const Field& field : fields) members.emplace_back(field.key, field.json);
    std::printf("%s\n", JsonObject(members).c_str());
}

int RunInfo(const CLI::App& verb, const InfoOptions& options) {
    if (LooksLikePatch(options.path)) return RunPatchInfo(verb, options.path, options.json, options.image);
    if (!options.image.empty()) return VerbError(verb, "--image goes with a patch, and " + options.path + " is none");
    TrelvaneImageInfo info;
    if (!Trelvane_GetImageInfo(options.path.c_str(), &info)) return VerbEngineError(verb);
    PrintFields(ImageFields(options.path, info), options.json);
    return 0;
}

}  // namespace

Verb AddInfoVerb(CLI::App& app) {
    CLI::App* verb = app.add_subcommand("info", "Describe a ROM image (system, header, checksums, hashes) or a patch");
    auto options = std::make_shared<InfoOptions>();
    verb->add_option("FILE", options->path, "ROM image (.nes .smc .sfc .swc .fig .gb .gbc) or IPS/BPS/UPS patch")
        ->required();
    verb->add_flag("--json", options->json, "Print the description as one JSON object");
    verb->add_option("--image", options->image, "With a patch: the image it is meant for");
    return Verb{verb, [verb, options] { return RunInfo(*verb, *options); }};
}
