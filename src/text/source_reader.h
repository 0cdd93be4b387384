// The source reader: a stack of open texts (files or memory), each with its own
// position, cut into tokens by a pattern automaton, with file, line and column.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "text/fsa.h"

// Reader options.
inline constexpr uint32_t READER_SKIP_SPACE = 1;      // skip spaces, tabs and line ends before each token
inline constexpr uint32_t READER_CASE_SENSITIVE = 2;  // patterns added later match letters in one case only

// How the token text and errors show a zero byte found inside a text.
inline constexpr char ZERO_BYTE_SHOWN[] = "\\0";

// One open source. Lines and columns are 1-based; a tab is one column. A zero byte
// inside a file's text is no character of any token: it comes back as a token of
// its own (see NextToken), so that it is reported where it lies instead of ending
// the text or the line early.
struct SourceFrame {
    int32_t tokenLine = 0;       // line on which the current token starts
    int32_t tokenEndColumn = 0;  // column reached by the scan that produced the current token
    int32_t tokenLength = 0;     // characters the current token consumed
    int32_t tokenKind = 0;
    int32_t matchLine = 0;    // where the last look-ahead match began
    int32_t matchColumn = 0;  // its start column, plus one for every character it scanned
    int32_t matchLength = 0;  // characters up to its last accepting state
    int32_t matchKind = 0;    // kind of that state, TOKEN_UNKNOWN if none
    int32_t line = 0;
    int32_t column = 0;
    std::vector<char> textBuffer;       // text read from a file (zero-terminated); empty for a memory text
    const char* textEnd = nullptr;      // the zero byte that ends the text; zero bytes before it are read
    const char* lineStart = nullptr;    // first character of the current line
    std::string fileName;               // base name once open
    std::string tokenText;              // text of the current token, or of the line after LineText
    std::string matchText;              // text accepted by the last match
};

class SourceReader {
public:
    // A reader with the given options, no automaton and one fresh (empty) frame.
    explicit SourceReader(uint32_t options);
    SourceReader(const SourceReader&) = delete;
    SourceReader& operator=(const SourceReader&) = delete;

    // Puts a fresh frame on top of the stack (an included source is read in it).
    void PushFrame();
    // Releases the top frame; true when a frame remains to go on reading.
    bool PopFrame();
    // Reads a file into the top frame (pushing one if the stack is empty). A name without an
    // extension gets "." and defaultExtension. The file name becomes the base name and CR LF
    // reads as LF. False when the file cannot be read: the frame keeps its text and position
    // and its file name is the name that was tried.
    bool Open(const char* name, const char* defaultExtension);
    // Makes the top frame read text, which stays the caller's and must outlive the reading.
    bool OpenText(const char* name, const char* text);
    // Installs a shared constant automaton (or none), releasing a private one.
    void SetAutomaton(const Fsa* automaton);
    // Adds a pattern to the reader's automaton, creating a private one first or copying the
    // shared one, which stays untouched. False (and nothing changed) for a refused pattern.
    bool AddPattern(int32_t kind, const char* pattern);
    const Fsa* Automaton() const { return owned_ ? owned_.get() : shared_; }
    // Adds a word (letters, digits and "_") that scans as kind wherever the text holds it and no
    // pattern accepts a longer token there; a word added again takes the new kind. Letters match
    // in either case unless READER_CASE_SENSITIVE. Any number of words, each found in constant time.
    void AddWord(int32_t kind, std::string_view word);

    // The character at the current position; zero at the end of the text or with no frame.
    char CurrentChar() const;
    // Consumes the current character and returns it. A line feed, a carriage return and the
    // pair CR LF each end a line: the next line starts and a line feed comes back.
    // At the end of the text nothing moves and zero comes back; a zero byte before it is passed.
    char Advance();
    // Looks ahead without moving: records the longest accepted text at the current position
    // in the top frame's match fields and returns its kind, TOKEN_UNKNOWN or TOKEN_END.
    int32_t Match();
    // Reads the next token and returns its kind. Unrecognised text gives a one-character
    // TOKEN_UNKNOWN token; the end of the text gives TOKEN_END with an empty token text.
    // A zero byte before the end gives a TOKEN_UNKNOWN token with the text ZERO_BYTE_SHOWN
    // at the zero byte's own line and column; when no pattern accepted the text before it,
    // that text is passed with it.
    int32_t NextToken();
    // Consumes characters up to and including the next line feed, or to the end of the text;
    // zero bytes on the way are passed like any other character.
    void SkipLine();
    // The whole current line, without its line end; it also becomes the token text, which
    // keeps any zero byte of the line (the result, read as a C string, stops at it).
    const char* LineText();

    // Accessors: with an empty stack they give "" or 0.
    const char* FileName() const;
    const char* TokenText() const;
    const std::string& TokenString() const;  // the token text with any zero byte it holds
    int32_t TokenKind() const;
    int32_t TokenLine() const;
    int32_t TokenColumn() const;  // column of the token's first character
    int32_t TokenEndColumn() const;
    SourceFrame* Top() const { return frames_.empty() ? nullptr : frames_.back().get(); }

private:
    std::string WordKey(std::string_view text) const;
    // Lets the longest word at start win over the automaton's match.
    void MatchWord(SourceFrame& frame, const char* start, int32_t startColumn) const;

    uint32_t options_;
    const Fsa* shared_ = nullptr;
    std::unique_ptr<Fsa> owned_;
    std::vector<std::unique_ptr<SourceFrame>> frames_;
    std::unordered_map<std::string, int32_t> words_;
};

// Decimal digits of text; a leading "-" negates, every other character is ignored. Wraps at 32 bits.
int32_t ParseDecimal(const char* text);
// Hexadecimal digits of text: every character shifts in a digit (others count as 0) and an
// "h" or "H" takes its shift back, so "1Fh", "1F" and "$1F" all give 0x1F.
int32_t ParseHex(const char* text);
// The number that the digits of text give, computed exactly: decimal digits (every other
// character ignored) or, with hex, hexadecimal digits with "h" and "H" ignored and every other
// character a zero digit. False when the value needs more than 32 bits.
bool ExactNumber(const char* text, bool hex, uint32_t& value);
// length characters of text from start; a negative start counts from the end, a negative length
// drops that many characters from the end. The result lives until the next call.
const char* Substring(const char* text, int32_t start, int32_t length);
