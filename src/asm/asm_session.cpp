#include "asm/asm_session.h"

namespace {

constexpr size_t MAX_REPORTS = 100;

}  // namespace

bool AsmSession::Error(const std::string& text, int columnOffset) {
    if (TooManyErrors()) return false;
    SourcePlace at = place;
    at.column += columnOffset;
    errors.push_back({at, text});
    if (TooManyErrors()) errors.push_back({place, "too many errors: the rest is not assembled"});
    return false;
}

bool AsmSession::TooManyErrors() const { return errors.size() >= MAX_REPORTS; }

void AsmSession::Warning(const std::string& text) {
    if (warnings.size() < MAX_REPORTS) warnings.push_back({place, text});
}
