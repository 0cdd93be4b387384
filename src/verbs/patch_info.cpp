#include "verbs/patch_info.h"

#include <cinttypes>
#include <cstdio>
#include <fstream>

#include "core/file_view.h"
#include "core/last_error.h"
#include "core/rom_formats.h"
#include "patches/patch_description.h"
#include "trelvane.h"
#include "verbs/json_text.h"

namespace {

struct Line {
    std::string label;
    std::string key;
    std::string text;
    std::string json;
};

std::string Hex(uint64_t value, int digits) {
    char text[24];
    std::snprintf(text, sizeof text, "%0*" PRIX64, digits, value);
    return text;
}

Line Number(const char* label, const char* key, uint64_t value, const std::string& unit = " bytes") {
    return {label, key, std::to_string(value) + unit, std::to_string(value)};
}

Line Crc(const char* label, const char* key, uint32_t crc) { return {label, key, Hex(crc, 8), JsonString(Hex(crc, 8))}; }

Line Ranges(const std::vector<ChangedRange>& ranges) {
    std::string text, json;
    for (const ChangedRange& range : ranges) {
        text += (text.empty() ? "" : ", ") + Hex(range.start, 1) + "h-" + Hex(range.end - 1, 1) + "h";
        json += (json.empty() ? "" : ",") + std::string("[") + std::to_string(range.start) + "," +
                std::to_string(range.end) + "]";
    }
    return {"Ranges", "ranges", text.empty() ? "none" : text, "[" + json + "]"};
}

std::vector<Line> DescriptionLines(const std::string& path, const PatchDescription& patch) {
    std::vector<Line> lines = {{"File", "file", path, JsonString(path)},
                               {"Format", "format", PatchKindName(patch.kind), JsonString(PatchKindName(patch.kind))},
                               Number("Patch size", "patchSize", patch.patchSize)};
    if (patch.kind == PatchKind::Ips) {
        lines.push_back(Number("Records", "records", patch.records, ""));
        lines.push_back(Number("Run-length records", "runRecords", patch.runRecords, ""));
        lines.push_back(patch.truncates ? Number("Truncates to", "truncatedLength", patch.truncatedLength)
                                        : Line{"Truncates to", "truncatedLength", "no", "null"});
    } else {
        lines.push_back(Crc("Patch CRC-32", "patchCrc32", patch.patchCrc));
        lines.push_back(Number("Source size", "sourceSize", patch.sourceSize));
        lines.push_back(Crc("Source CRC-32", "sourceCrc32", patch.sourceCrc));
        lines.push_back(Number("Target size", "targetSize", patch.targetSize));
        lines.push_back(Crc("Target CRC-32", "targetCrc32", patch.targetCrc));
    }
    if (patch.kind == PatchKind::Bps) lines.push_back({"Metadata", "metadata", patch.metadata.empty() ? "none" : patch.metadata,
                         JsonString(patch.metadata)});
    lines.push_back(Number("Bytes changed", "changedBytes", patch.changedBytes));
    lines.push_back(Ranges(patch.ranges));
    return lines;
}

const char* FitText(PatchFit fit) {
    switch (fit) {
        case PatchFit::Fits: return "fits";
        case PatchFit::FitsToUndo: return "fits to undo: it is the patch's target";
        case PatchFit::WrongImage: return "does not fit: its size or CRC-32 differs from the patch's source";
        case PatchFit::NeedsHeader:
            return "the patch expects a 512-byte copier header the image lacks (apply --add-header)";
        case PatchFit::NeedsNoHeader:
            return "the patch expects no copier header, the image has one (apply --remove-header)";
    }
    return "";
}

bool AddFitLines(const std::string& image, const PatchDescription& patch, std::vector<Line>& lines) {
    FileView bytes;
    if (!bytes.Open(image.c_str(), false)) return SetError(TLERR_FILE_NOREAD, image.c_str(), 0, 0);
    const RomFormat* format = RomFormatOfPath(image.c_str(), ExtensionDot::Last);
    PatchFit fit = JudgeFit(patch, bytes.data(), bytes.size(), format && format->type == ROM_SNES);
    lines.push_back({"Image", "image", image, JsonString(image)});
    lines.push_back({"Fits", "fits", FitText(fit), fit == PatchFit::Fits || fit == PatchFit::FitsToUndo ? "true" : "false"});
    lines.push_back({"Fit", "fit", FitText(fit), JsonString(FitText(fit))});
    return true;
}

void PrintLines(const std::vector<Line>& lines, bool json) {
    if (!json) {
        for (const Line& line : lines)
            if (line.key != "fits") std::printf("%s: %s\n", line.label.c_str(), line.text.c_str());
        return;
    }
    std::vector<JsonMember> members;
    for (const Line& line : lines) members.emplace_back(line.key, line.json);
    std::printf("%s\n", JsonObject(members).c_str());
}

}  // namespace

bool LooksLikePatch(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    unsigned char magic[5] = {};
    file.read(reinterpret_cast<char*>(magic), sizeof magic);
    return PatchKindOf(magic, static_cast<size_t>(file.gcount())) != PatchKind::None;
}

int RunPatchInfo(const CLI::App& verb, const std::string& path, bool json, const std::string& image) {
    FileView bytes;
    if (!bytes.Open(path.c_str(), false)) {
        SetError(TLERR_FILE_NOREAD, path.c_str(), 0, 0);
        return VerbEngineError(verb);
    }
    PatchDescription patch;
    if (!DescribePatch(bytes.data(), bytes.size(), path.c_str(), patch)) return VerbEngineError(verb);
    std::vector<Line> lines = DescriptionLines(path, patch);
    if (!image.empty() && !AddFitLines(image, patch, lines)) return VerbEngineError(verb);
    PrintLines(lines, json);
    return 0;
}
