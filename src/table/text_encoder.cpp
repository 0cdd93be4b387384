#include "table/text_encoder.h"

#include <cstring>
#include <vector>

#include "core/last_error.h"
#include "table/encoder_matches.h"
#include "table/font_set.h"
#include "trelvane.h"

namespace {

// Where every encode writes its bytes; they stay there until the next encode.
unsigned char encoderArea[ENCODER_AREA_SIZE];

class EncodeOutput {
public:
    bool Put(unsigned char byte) {
        if (length_ >= kMaxLength) return false;
        area_[length_++] = byte;
        return true;
    }
    // Two-byte codes are written high byte first.
    bool PutCode(const Font& font, int entry) {
        if (entry < TWO_BYTE_FIRST_ENTRY) return Put(static_cast<unsigned char>(entry));
        uint16_t code = TwoByteCodeOf(font, entry);
        return Put(static_cast<unsigned char>(code >> 8)) && Put(static_cast<unsigned char>(code));
    }
    EncodedText Finish() {
        area_[length_] = 0;
        return {area_, static_cast<int32_t>(length_)};
    }

private:
    // One byte of the area stays free for the zero byte behind the output.
    static constexpr size_t kMaxLength = ENCODER_AREA_SIZE - 1;
    unsigned char* area_ = encoderArea;
    size_t length_ = 0;
};

}  // namespace

EncodedText EncodeText(long fontId, const char* text, EncodeRules rules) {
    const Font* font = FindFont(fontId);
    if (!font) return {};
    std::vector<EncoderMatch> matches;
    size_t consumed = 0;
    while (text[consumed]) {
        EncoderMatch match = LongestMatchAt(*font, text, consumed, rules);
        if (match.entry < 0) return {};
        matches.push_back(match);
        consumed += match.length + LineBreakOfCode(*font, text + consumed, match, rules);
    }
    return EncodeMatches(*font, matches, rules);
}

EncodedText EncodeMatches(const Font& font, const std::vector<EncoderMatch>& matches, EncodeRules rules) {
    EncodeOutput out;
    int lastEntry = TWO_BYTE_FIRST_ENTRY;  // never has flags
    for (const EncoderMatch& match : matches) {
        if (!out.PutCode(font, match.entry)) return {};
        for (int i = 0; i < match.parameterCount; ++i)
            if (!out.Put(match.parameters[i])) return {};
        lastEntry = match.entry;
    }
    if (rules.appendTerminal && !(font.flags[lastEntry] & ENTRY_TERMINAL)) {
        int terminal = font.index.terminalEntry;
        if (terminal < 0 || !out.PutCode(font, terminal)) return {};
    }
    return out.Finish();
}

extern "C" char* Trelvane_Encode(long id, const char* text, long* length) {
    if (!text) text = "";
    if (length) *length = 0;
    if (!FindFont(id)) return nullptr;
    const EncodedText encoded = EncodeText(id, text);
    if (!encoded.bytes) {
        SetError(TLERR_NOENCODE, "", 0, 0, text);
        return nullptr;
    }
    if (length) *length = encoded.length;
    return reinterpret_cast<char*>(const_cast<unsigned char*>(encoded.bytes));
}
