#include "asm/source_assembler.h"

#include "asm/asm_session.h"
#include "asm/source_statements.h"
#include "core/last_error.h"
#include "trelvane.h"

namespace {

constexpr int MAX_PASSES = 8;

void StartPass(AsmSession& session, const std::vector<unsigned char>& original, int pass) {
    session.image = original;
    session.finalPass = pass > 1;
    session.mapping = session.options.mapping;
    session.pc = 0x008000;
    session.pcSet = false;
    session.fillByte = session.padByte = 0;
    session.tableFont = 0;
    session.labels.StartPass();
    session.defines.Clear();
    for (const auto& [name, value] : session.options.defines) session.defines.Set(name, value);
    session.macros.Clear();
    session.conditions.Clear();
    session.place = {};
    session.linesRun = 0;
    session.errors.clear();
    session.warnings.clear();
    session.prints.clear();
}

}  // namespace

bool AssembleSource(AsmSession& session, const std::string& path) {
    const std::vector<unsigned char> original = session.image;
    for (int pass = 1; pass <= MAX_PASSES; ++pass) {
        StartPass(session, original, pass);
        AssembleSourceFile(session, path);
        session.labels.FinishPass();
        if (session.labels.Settled() || (pass >= 3 && !session.errors.empty())) break;
        if (pass == MAX_PASSES) session.Error("the labels do not settle: their widths change from pass to pass");
    }
    if (session.errors.empty()) return true;
    const AsmDiagnostic& first = session.errors.front();
    return SetError(TLERR_ASM_SOURCE, first.place.file.c_str(), first.place.line, first.place.column, first.text.c_str());
}
