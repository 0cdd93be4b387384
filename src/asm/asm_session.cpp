#include "asm/asm_session.h"

namespace {

constexpr size_t MAX_REPORTS = 100;

}  // namespace

bool AsmSession::Error(const std::string& text, int columnOffset) {
    if (errors.size() < MAX_REPORTS) {
        SourcePlace at = place;
        at.column += columnOffset;
        errors.push_back({at, text});
    }
    return false;
}

void AsmSession::Warning(const std::string& text) {
    if (warnings.size() < MAX_REPORTS) warnings.push_back({place, text});
}
