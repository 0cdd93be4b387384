#include "asm/statement_error.h"

#include <cstdarg>
#include <cstdio>
#include <cstring>

#include "asm/patch_messages.h"

namespace {

// Writes the formatted text at the message's end, cut at its size.
void AppendFormatted(char* text, const char* format, va_list values) {
    const size_t used = std::strlen(text);
    std::vsnprintf(text + used, PATCH_MESSAGE_SIZE - used, format, values);
}

}  // namespace

void StatementError::Clear() {
    text_[0] = '\0';
    refusedBlock_.clear();
}

void SetMessagePrefix(StatementError& error, const char* file, int line, int column) {
    std::snprintf(error.text_, sizeof error.text_, PATCH_POSITION, file, line, column);
}

int AppendMessage(StatementError& error, const char* format, ...) {
    va_list values;
    va_start(values, format);
    AppendFormatted(error.text_, format, values);
    va_end(values);
    return 0;
}

int ReportAt(StatementError& error, const char* file, int line, int column, const char* format, ...) {
    SetMessagePrefix(error, file, line, column);
    va_list values;
    va_start(values, format);
    AppendFormatted(error.text_, format, values);
    va_end(values);
    return 0;
}

int Report(StatementError& error, const char* format, ...) {
    const SourceReader& reader = error.Reader();
    SetMessagePrefix(error, reader.FileName(), reader.TokenLine(), reader.TokenColumn());
    va_list values;
    va_start(values, format);
    AppendFormatted(error.text_, format, values);
    va_end(values);
    return 0;
}

int ReportExpected(StatementError& error, const char* expected) {
    return Report(error, MSG_EXPECTED, expected, error.Reader().TokenText());
}

int ReportInvalidOperand(StatementError& error) { return Report(error, MSG_INVALID_OPERAND, error.Reader().TokenText()); }

int ReportAlreadyDefined(StatementError& error, const char* kind, const char* name) {
    return Report(error, MSG_ALREADY_DEFINED, kind, name);
}

int ReportNotImplemented(StatementError& error, const char* first, const char* second) {
    return Report(error, MSG_NOT_IMPLEMENTED, first, second);
}

int ReportTooMany(StatementError& error, const char* table, int limit) {
    return Report(error, MSG_TOO_MANY, table, limit);
}
