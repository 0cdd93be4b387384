#include "script/literal_string_text.h"

#include <cstdio>
#include <cstring>

#include "script/script_lines.h"
#include "table/text_decoder.h"
#include "table/text_encoder.h"

namespace {

// One code of the string: its bytes, its decoded text, and whether it is
// written as raw bytes.
struct CodePiece {
    int32_t at = 0;
    int32_t length = 0;
    std::string text;
    bool raw = false;
};

std::string RawText(const unsigned char* bytes, const CodePiece& piece) {
    std::string text;
    char raw[8];
    for (int32_t i = 0; i < piece.length; ++i) {
        std::snprintf(raw, sizeof raw, "<$%02X>", bytes[piece.at + i]);
        text += raw;
    }
    if (!piece.text.empty() && piece.text.back() == '\n') text += '\n';
    return text;
}

std::vector<CodePiece> CodePieces(long fontId, const Font& font, const unsigned char* bytes, int32_t length) {
    std::vector<CodePiece> pieces;
    for (int32_t at = 0; at < length;) {
        CodePiece piece;
        piece.at = at;
        piece.length = CodeLength(font, bytes + at, bytes + length);
        const DecodedText decoded = DecodeText(fontId, bytes + at, bytes + at + piece.length);
        if (decoded.text) piece.text = decoded.text;
        else piece.raw = true;
        pieces.push_back(piece);
        at += piece.length;
    }
    return pieces;
}

std::string Compose(const unsigned char* bytes, const std::vector<CodePiece>& pieces) {
    std::string text;
    for (const CodePiece& piece : pieces) text += piece.raw ? RawText(bytes, piece) : piece.text;
    return text;
}

// The encoding of text as a literal script gives it back: null when the
// table cannot encode it.
EncodedText EncodeAsWritten(long fontId, const std::string& text) {
    return EncodeText(fontId, TextOfLiteralLines(LiteralLinesOf(text)).c_str(), LITERAL_ENCODING);
}

// Marks raw the codes that cannot be written at all; false when none is left
// to mark.
bool MarkUnencodable(long fontId, std::vector<CodePiece>& pieces) {
    bool marked = false;
    for (CodePiece& piece : pieces)
        if (!piece.raw && !EncodeAsWritten(fontId, piece.text).bytes) piece.raw = marked = true;
    for (CodePiece& piece : pieces) {
        if (marked) break;
        if (!piece.raw) piece.raw = marked = true;
    }
    return marked;
}

// Marks raw the code where the encoding first parts from the bytes, or the
// nearest code before it still written as text.
bool MarkDifference(const EncodedText& encoded, const unsigned char* bytes, int32_t length,
                    std::vector<CodePiece>& pieces) {
    int32_t differs = 0;
    while (differs < length && differs < encoded.length && encoded.bytes[differs] == bytes[differs]) ++differs;
    size_t k = pieces.size() - 1;
    while (k > 0 && pieces[k].at > differs) --k;
    for (size_t i = k + 1; i-- > 0;) {
        if (pieces[i].raw) continue;
        pieces[i].raw = true;
        return true;
    }
    return false;
}

}  // namespace

std::string LiteralTextOfString(long fontId, const unsigned char* bytes, int32_t length) {
    const Font* font = FindFont(fontId);
    if (!font || length <= 0) return std::string();
    std::vector<CodePiece> pieces = CodePieces(fontId, *font, bytes, length);
    while (true) {
        std::string text = Compose(bytes, pieces);
        const EncodedText encoded = EncodeAsWritten(fontId, text);
        bool same = encoded.bytes && encoded.length == length && std::memcmp(encoded.bytes, bytes, length) == 0;
        if (same) return text;
        bool marked = encoded.bytes ? MarkDifference(encoded, bytes, length, pieces)
                                    : MarkUnencodable(fontId, pieces);
        if (!marked) return text;
    }
}

std::vector<std::string> LiteralLinesOf(const std::string& text) {
    std::vector<std::string> lines;
    size_t start = 0;
    while (true) {
        size_t end = text.find('\n', start);
        lines.push_back(LiteralTextLine(text.substr(start, end == std::string::npos ? end : end - start)));
        if (end == std::string::npos) return lines;
        start = end + 1;
    }
}

std::string TextOfLiteralLines(const std::vector<std::string>& lines) {
    std::string text;
    for (const std::string& line : lines) AppendTextPiece(text, TextOfLine(line, LineRules::Literal));
    EndStringText(text);
    return text;
}
