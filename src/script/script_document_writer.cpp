#include "script/script_document_writer.h"

#include <cstdio>

#include "core/snes_mapping.h"
#include "script/literal_string_text.h"
#include "script/pointer_form.h"

namespace {

std::string Hex(int64_t value, int digits = 6) {
    char text[32];
    std::snprintf(text, sizeof text, "%s%0*llXh", value < 0 ? "-" : "", digits,
                  static_cast<unsigned long long>(value < 0 ? -value : value));
    return text;
}

// A line of a keyword and its value.
void Line(std::string& out, const char* keyword, const std::string& value = std::string()) {
    out.append(keyword);
    if (!value.empty()) out.append(" ").append(value);
    out.append("\r\n");
}

const char* MapName(int map) {
    switch (map) {
        case POINTER_MAP_LOROM: return SnesMappingName(SnesMapping::LoRom);
        case POINTER_MAP_HIROM: return SnesMappingName(SnesMapping::HiRom);
        default: return SnesMappingName(SnesMapping::ExHiRom);
    }
}

void WriteTablePlace(std::string& out, const PointerForm& form) {
    if (!IsSplitForm(form)) {
        Line(out, "pointertable", Hex(form.table));
        Line(out, "pointersize", std::to_string(form.size));
        return;
    }
    Line(out, "pointerlow", Hex(form.low));
    if (form.high >= 0) Line(out, "pointerhigh", Hex(form.high));
    if (form.bank >= 0) Line(out, "pointerbank", Hex(form.bank));
}

// What every pointer form shares: byte order, stride, base or mapping.
void WriteValueForm(std::string& out, const PointerForm& form) {
    if (form.bigEndian) Line(out, "pointerorder", "big");
    if (form.stride > 0) Line(out, "pointerstride", std::to_string(form.stride));
    if (form.map != POINTER_MAP_NONE) Line(out, "pointermap", MapName(form.map));
    else Line(out, "pointerbase", Hex(form.base, 4));
}

void WritePointers(std::string& out, const ScriptDocument& document) {
    const PointerForm& form = document.form;
    if (document.pointers == ScriptPointers::Table) {
        WriteTablePlace(out, form);
        Line(out, "pointercount", std::to_string(form.count));
        Line(out, "pointerfrequency", std::to_string(document.frequency));
    } else if (document.pointers == ScriptPointers::List) {
        Line(out, "pointersize", std::to_string(form.size));
    }
    if (document.pointers != ScriptPointers::None) WriteValueForm(out, form);
    for (const std::vector<int64_t>& places : document.pointerLists) {
        std::string line;
        for (int64_t place : places) line.append(line.empty() ? "" : " ").append(Hex(place));
        Line(out, "pointerlist", line);
    }
}

void WriteEntry(std::string& out, size_t index, const ScriptEntry& entry) {
    char head[64];
    std::snprintf(head, sizeof head, "[%04zX] ; %06llX (%lld)", index, static_cast<unsigned long long>(entry.offset),
                  static_cast<long long>(entry.length));
    out += "\r\n";
    if (entry.null) std::snprintf(head, sizeof head, "[%04zX] ; null", index);
    Line(out, head);
    if (entry.null) return;
    const std::vector<std::string> lines = LiteralLinesOf(entry.text);
    for (const std::string& line : lines) out.append("; ").append(line).append("\r\n");
    for (const std::string& line : lines) out.append(line).append("\r\n");
}

}  // namespace

std::string FormatScriptDocument(const ScriptDocument& document) {
    std::string out;
    Line(out, "load", std::string("\"").append(document.tableFile).append("\""));
    Line(out, "textlines", "literal");
    WritePointers(out, document);
    for (const TextRegion& region : document.regions)
        Line(out, "textregion", Hex(region.start).append(" (").append(std::to_string(region.size)).append(")"));
    if (document.padByte >= 0) Line(out, "padbyte", Hex(document.padByte, 2));
    for (size_t i = 0; i < document.entries.size(); ++i) WriteEntry(out, i, document.entries[i]);
    return out;
}
