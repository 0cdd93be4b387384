// Assembling common-syntax text in a test: the source goes to a file in a
// temporary folder, the image is blank unless given.
#pragma once

#include <optional>
#include <string>

#include "asm/asm_session.h"
#include "asm/source_assembler.h"
#include "support/test_support.h"

struct SourceRun {
    bool ok = false;
    Bytes image;
    std::string errors;    // "line:column: text" lines
    std::string warnings;  // likewise
    std::vector<std::string> prints;
    std::vector<std::pair<std::string, uint32_t>> labels;
};

inline std::string DiagnosticLines(const std::vector<AsmDiagnostic>& list) {
    std::string text;
    for (const AsmDiagnostic& d : list)
        text += std::to_string(d.place.line) + ":" + std::to_string(d.place.column) + ": " + d.text + "\n";
    return text;
}

inline SourceRun AssembleText(const std::string& source, Bytes image = Bytes(0x10000, 0),
                              std::optional<SnesMapping> mapping = SnesMapping::LoRom, const TempDir* folder = nullptr) {
    TempDir own;
    const TempDir& dir = folder ? *folder : own;
    WriteFile(dir / "main.asm", source);
    AsmSession session;
    session.image = std::move(image);
    session.options.mapping = mapping;
    SourceRun run;
    run.ok = AssembleSource(session, dir / "main.asm");
    run.image = session.image;
    run.errors = DiagnosticLines(session.errors);
    run.warnings = DiagnosticLines(session.warnings);
    run.prints = session.prints;
    for (const auto& [name, entry] : session.labels.All()) run.labels.emplace_back(name, entry.value);
    return run;
}

// The bytes from image offset 0 to count, as "A9 05 ..." text.
inline std::string HexBytes(const Bytes& bytes, size_t count, size_t from = 0) {
    std::string text;
    char pair[4];
    for (size_t i = from; i < from + count && i < bytes.size(); ++i) {
        std::snprintf(pair, sizeof pair, i + 1 < from + count ? "%02X " : "%02X", bytes[i]);
        text += pair;
    }
    return text;
}
