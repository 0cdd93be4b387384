// The error of the statement that failed last: its position (file, line and
// column), the complaint, and the listing of a block refused for its size.
#pragma once

#include <vector>

#include "asm/patch_limits.h"
#include "text/source_reader.h"

class StatementError {
public:
    // Positions are taken from reader's current token.
    explicit StatementError(const SourceReader& reader) : reader_(reader) {}

    const char* Text() const { return text_; }
    const SourceReader& Reader() const { return reader_; }
    // The compiled bytes of a block that was refused for its size; empty otherwise.
    const std::vector<unsigned char>& RefusedBlock() const { return refusedBlock_; }
    void SetRefusedBlock(std::vector<unsigned char> bytes) { refusedBlock_ = std::move(bytes); }
    // No error: done at the start of every statement.
    void Clear();

private:
    friend int ReportAt(StatementError&, const char*, int, int, const char*, ...);
    friend int Report(StatementError&, const char*, ...);
    friend void SetMessagePrefix(StatementError&, const char*, int, int);
    friend int AppendMessage(StatementError&, const char*, ...);

    const SourceReader& reader_;
    char text_[PATCH_MESSAGE_SIZE] = {};
    std::vector<unsigned char> refusedBlock_;
};

// The reporters: each composes the message (the position, then the complaint, cut safely at
// the message size) and returns 0, the result of a failed statement.
int ReportAt(StatementError& error, const char* file, int line, int column, const char* format, ...);
int Report(StatementError& error, const char* format, ...);  // at the current token
int ReportExpected(StatementError& error, const char* expected);
int ReportInvalidOperand(StatementError& error);
int ReportAlreadyDefined(StatementError& error, const char* kind, const char* name);
int ReportNotImplemented(StatementError& error, const char* first, const char* second);
int ReportTooMany(StatementError& error, const char* table, int limit);
// Sets the message to the position prefix alone; AppendMessage adds the complaint later.
void SetMessagePrefix(StatementError& error, const char* file, int line, int column);
int AppendMessage(StatementError& error, const char* format, ...);
