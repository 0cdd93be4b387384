#include "text/source_reader.h"

#include <algorithm>
#include <cctype>
#include <climits>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <new>

#include "core/blank.h"
#include "core/byte_order_mark.h"
#include "core/file_bytes.h"
#include "core/hex_digit.h"
#include "core/path_names.h"
#include "core/system_path.h"

namespace {

// The name handed to the file system. Windows opens "script." as "script"; elsewhere the
// trailing dot that an empty default extension leaves is dropped to find the same file.
std::string SystemName(const std::string& name) {
#ifdef _WIN32
    return name;
#else
    const size_t n = name.size();
    if (n >= 2 && name[n - 1] == '.' && name[n - 2] != '.' && !IsFolderSeparator(name[n - 2])) return name.substr(0, n - 1);
    return name;
#endif
}

// The whole file as zero-terminated text with every CR LF pair read as LF.
bool ReadSourceText(const std::string& path, std::vector<char>& text) {
    std::error_code error;
    const auto size = std::filesystem::file_size(SystemPath(path.c_str()), error);
    if (error || size >= static_cast<uintmax_t>(INT32_MAX)) return false;  // positions are 32-bit
    std::vector<unsigned char> bytes;
    if (!ReadFileBytes(path.c_str(), bytes)) return false;
    try {
        text.clear();
        text.reserve(bytes.size() + 1);
    } catch (const std::bad_alloc&) {
        return false;
    }
    for (size_t i = ByteOrderMarkLength(bytes.data(), bytes.size()); i < bytes.size(); ++i) {
        if (bytes[i] == '\r' && i + 1 < bytes.size() && bytes[i + 1] == '\n') continue;
        text.push_back(static_cast<char>(bytes[i]));
    }
    text.push_back('\0');
    return true;
}

const char* CurrentPosition(const SourceFrame& frame) {
    return frame.lineStart ? frame.lineStart + frame.column - 1 : nullptr;
}

char CharAt(const SourceFrame& frame) { return frame.lineStart ? frame.lineStart[frame.column - 1] : '\0'; }

bool AtTextEnd(const SourceFrame& frame) { return !frame.lineStart || CurrentPosition(frame) >= frame.textEnd; }

bool AtZeroByte(const SourceFrame& frame) { return CharAt(frame) == '\0' && !AtTextEnd(frame); }

// Consumes the current character of frame: see SourceReader::Advance.
char AdvanceIn(SourceFrame& frame) {
    if (AtTextEnd(frame)) return '\0';
    char c = CharAt(frame);
    if (c == '\r' && CurrentPosition(frame)[1] == '\n') ++frame.column;  // CR LF is one line end
    if (c == '\r') c = '\n';                                             // and so is a lone CR
    if (c == '\n') {
        frame.lineStart = CurrentPosition(frame) + 1;
        frame.column = 1;
        ++frame.line;
    } else {
        ++frame.column;
    }
    return c;
}

bool IsWordCharacter(char c) { return std::isalnum(static_cast<unsigned char>(c)) || c == '_'; }

void SkipSpaceIn(SourceFrame& frame) {
    while (IsWhiteSpace(CharAt(frame))) AdvanceIn(frame);
}

// Makes the look-ahead match the zero byte that stopped a scan which accepted nothing: the
// token covers the scanned characters and the zero byte, and stands at the zero byte.
void MatchZeroByte(SourceFrame& frame, int32_t scanned) {
    frame.matchKind = TOKEN_UNKNOWN;
    frame.matchLength = scanned + 1;
    frame.matchLine = frame.line;
    frame.matchText = ZERO_BYTE_SHOWN;
    frame.matchColumn = frame.column + static_cast<int32_t>(frame.matchText.size());
}

// Holds the result of Substring until the next call.
std::string substringResult;

}  // namespace

SourceReader::SourceReader(uint32_t options) : options_(options) { PushFrame(); }

void SourceReader::PushFrame() { frames_.push_back(std::make_unique<SourceFrame>()); }

bool SourceReader::PopFrame() {
    if (frames_.empty()) return false;
    frames_.pop_back();
    return !frames_.empty();
}

bool SourceReader::Open(const char* name, const char* defaultExtension) {
    if (frames_.empty()) PushFrame();
    SourceFrame& frame = *Top();
    std::string path = name ? name : "";
    if (!LastDotOfBaseName(path.c_str())) path.append(".").append(defaultExtension ? defaultExtension : "");
    frame.fileName = path;
    std::vector<char> text;
    if (!ReadSourceText(SystemName(path), text)) return false;
    frame.textBuffer = std::move(text);
    frame.textEnd = frame.textBuffer.data() + frame.textBuffer.size() - 1;
    frame.fileName = BaseName(path.c_str());
    frame.lineStart = frame.textBuffer.data();
    frame.line = 1;
    frame.column = 1;
    return true;
}

bool SourceReader::OpenText(const char* name, const char* text) {
    if (frames_.empty()) PushFrame();
    SourceFrame& frame = *Top();
    frame.textBuffer = std::vector<char>();
    frame.fileName = BaseName(name ? name : "");
    frame.lineStart = text ? text : "";
    frame.textEnd = frame.lineStart + std::strlen(frame.lineStart);
    frame.line = 1;
    frame.column = 1;
    return true;
}

void SourceReader::SetAutomaton(const Fsa* automaton) {
    if (automaton == owned_.get()) return;
    owned_.reset();
    shared_ = automaton;
}

bool SourceReader::AddPattern(int32_t kind, const char* pattern) {
    if (!owned_) owned_ = std::make_unique<Fsa>(shared_ ? shared_->OwnedCopy() : Fsa(FSA_OWNED));
    shared_ = nullptr;
    return owned_->AddPattern(kind, pattern, (options_ & READER_CASE_SENSITIVE) != 0);
}

char SourceReader::CurrentChar() const { return Top() ? CharAt(*Top()) : '\0'; }

char SourceReader::Advance() { return Top() ? AdvanceIn(*Top()) : '\0'; }
void SourceReader::AddWord(int32_t kind, std::string_view word) { words_[WordKey(word)] = kind; }

std::string SourceReader::WordKey(std::string_view text) const {
    std::string key(text);
    if (!(options_ & READER_CASE_SENSITIVE))
        for (char& c : key) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return key;
}

void SourceReader::MatchWord(SourceFrame& frame, const char* start, int32_t startColumn) const {
    int32_t run = 0;
    while (start + run < frame.textEnd && IsWordCharacter(start[run])) ++run;
    for (int32_t length = run; length > 0 && length >= frame.matchLength; --length) {
        const auto word = words_.find(WordKey(std::string_view(start, static_cast<size_t>(length))));
        if (word == words_.end()) continue;
        frame.matchKind = word->second;
        frame.matchLength = length;
        frame.matchColumn = std::max(frame.matchColumn, startColumn + length);
        return;
    }
}

int32_t SourceReader::Match() {
    SourceFrame* frame = Top();
    const Fsa* fsa = Automaton();
    if (!frame || !fsa) return TOKEN_END;
    const int32_t line = frame->line;
    const int32_t column = frame->column;
    const char* lineStart = frame->lineStart;
    if (options_ & READER_SKIP_SPACE) SkipSpaceIn(*frame);
    frame->matchKind = TOKEN_UNKNOWN;
    frame->matchLength = 0;
    frame->matchLine = frame->line;
    frame->matchColumn = frame->column;
    const char* start = CurrentPosition(*frame);
    const int32_t startColumn = frame->column;
    if (AtTextEnd(*frame)) return TOKEN_END;
    int state = 0;
    int32_t scanned = 0;
    while (CharAt(*frame) != '\0' && CharAt(*frame) != '\r') {  // no token takes in a zero byte or a line end
        state = fsa->Next(state, static_cast<unsigned char>(CharAt(*frame)));
        if (state < 0) break;
        AdvanceIn(*frame);
        ++scanned;
        ++frame->matchColumn;
        if (fsa->Accept(state) != TOKEN_UNKNOWN) {
            frame->matchKind = fsa->Accept(state);
            frame->matchLength = scanned;
        }
    }
    if (!words_.empty()) MatchWord(*frame, start, startColumn);
    if (frame->matchLength == 0 && AtZeroByte(*frame))
        MatchZeroByte(*frame, scanned);
    else
        frame->matchText.assign(start, static_cast<size_t>(frame->matchLength));
    frame->line = line;
    frame->column = column;
    frame->lineStart = lineStart;
    return frame->matchKind;
}

int32_t SourceReader::NextToken() {
    SourceFrame* frame = Top();
    if (!frame || !Automaton()) return TOKEN_END;
    if (options_ & READER_SKIP_SPACE) SkipSpaceIn(*frame);
    const bool atEnd = Match() == TOKEN_END;
    frame->tokenKind = atEnd ? TOKEN_END : frame->matchKind;
    frame->tokenLength = frame->matchLength;
    frame->tokenLine = frame->matchLine;
    frame->tokenEndColumn = frame->matchColumn;
    frame->tokenText.clear();
    if (atEnd) return TOKEN_END;
    frame->tokenText.swap(frame->matchText);
    if (frame->tokenLength == 0) {
        frame->tokenLength = 1;
        const char c = AdvanceIn(*frame);
        if (c != '\0') frame->tokenText.assign(1, c);
    } else {
        for (int32_t i = 0; i < frame->tokenLength; ++i) AdvanceIn(*frame);
    }
    return frame->tokenKind;
}

void SourceReader::SkipLine() {
    SourceFrame* frame = Top();
    if (!frame) return;
    while (!AtTextEnd(*frame) && AdvanceIn(*frame) != '\n') {
    }
}

const char* SourceReader::LineText() {
    SourceFrame* frame = Top();
    if (!frame) return "";
    frame->tokenText.clear();
    for (const char* c = frame->lineStart; c && c < frame->textEnd && *c != '\n' && *c != '\r'; ++c)
        frame->tokenText += *c;
    return frame->tokenText.c_str();
}

const char* SourceReader::FileName() const { return Top() ? Top()->fileName.c_str() : ""; }

const char* SourceReader::TokenText() const { return Top() ? Top()->tokenText.c_str() : ""; }

const std::string& SourceReader::TokenString() const {
    static const std::string none;
    return Top() ? Top()->tokenText : none;
}

int32_t SourceReader::TokenKind() const { return Top() ? Top()->tokenKind : 0; }

int32_t SourceReader::TokenLine() const { return Top() ? Top()->tokenLine : 0; }

int32_t SourceReader::TokenColumn() const {
    return Top() ? Top()->tokenEndColumn - static_cast<int32_t>(Top()->tokenText.size()) : 0;
}

int32_t SourceReader::TokenEndColumn() const { return Top() ? Top()->tokenEndColumn : 0; }

int32_t ParseDecimal(const char* text) {
    if (!text) return 0;
    const bool negative = text[0] == '-';
    uint32_t value = 0;
    for (const char* c = text; *c; ++c)
        if (*c >= '0' && *c <= '9') value = value * 10 + static_cast<uint32_t>(*c - '0');
    return static_cast<int32_t>(negative ? 0u - value : value);
}

int32_t ParseHex(const char* text) {
    if (!text) return 0;
    uint32_t value = 0;
    for (const char* c = text; *c; ++c) {
        value <<= 4;
        if (IsHexDigit(*c)) value += static_cast<uint32_t>(HexDigitValue(*c));
        else if (*c == 'h' || *c == 'H') value = static_cast<uint32_t>(static_cast<int32_t>(value) >> 4);
    }
    return static_cast<int32_t>(value);
}

bool ExactNumber(const char* text, bool hex, uint32_t& value) {
    uint64_t exact = 0;
    for (const char* c = text ? text : ""; *c; ++c) {
        if (hex && *c != 'h' && *c != 'H') exact = exact * 16 + static_cast<uint64_t>(std::max(HexDigitValue(*c), 0));
        if (!hex && *c >= '0' && *c <= '9') exact = exact * 10 + static_cast<uint64_t>(*c - '0');
        if (exact > UINT32_MAX) return false;
    }
    value = static_cast<uint32_t>(exact);
    return true;
}

const char* Substring(const char* text, int32_t start, int32_t length) {
    const int64_t size = text ? static_cast<int64_t>(std::strlen(text)) : 0;
    int64_t first = start < 0 ? size + start : start;
    first = std::clamp<int64_t>(first, 0, size);
    int64_t count = length < 0 ? size - first + length : length;
    count = std::clamp<int64_t>(count, 0, size - first);
    substringResult.assign(text ? text + first : "", static_cast<size_t>(count));
    return substringResult.c_str();
}
