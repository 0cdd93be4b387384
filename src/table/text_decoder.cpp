#include "table/text_decoder.h"

#include <algorithm>
#include <cstring>
#include <string>
#include <string_view>

#include "core/last_error.h"
#include "core/rom_slots.h"
#include "trelvane.h"

namespace {

// A decode stops once its text passes this many characters (plain) or
// fails on reaching it (romaji).
constexpr size_t kCutLength = 1984;

// Where every decode writes its text; the text stays there until the next decode.
char decoderArea[DECODER_AREA_SIZE];

// The decoder's output area. Characters past its last byte but one are
// dropped, so that one very long entry text cannot overrun it.
class DecodeOutput {
public:
    void Put(char c) {
        if (length_ < kCapacity) area_[length_++] = c;
    }
    void Put(const char* text, size_t count) {
        count = std::min(count, kCapacity - length_);
        std::memcpy(area_ + length_, text, count);
        length_ += count;
    }
    void Put(const char* text) { Put(text, std::strlen(text)); }
    void PutRawByte(unsigned char byte) {
        Put('[');
        PutHex(byte);
        Put(']');
    }
    void PutParameter(unsigned char byte) {
        Put(' ');
        PutHex(byte);
    }
    size_t Length() const { return length_; }
    // The character `back` places before the last one written; 0 before the start.
    char Last(size_t back = 0) const { return length_ > back ? area_[length_ - 1 - back] : 0; }
    void DropLast() { --length_; }
    void ReplaceLast(char c) { area_[length_ - 1] = c; }
    DecodedText Finish(long consumed) {
        area_[length_] = 0;
        return {area_, static_cast<int32_t>(consumed)};
    }

private:
    static constexpr size_t kCapacity = DECODER_AREA_SIZE - 1;
    void PutHex(unsigned char byte) {
        static const char digits[] = "0123456789ABCDEF";
        Put(digits[byte >> 4]);
        Put(digits[byte & 15]);
    }
    char* area_ = decoderArea;
    size_t length_ = 0;
};

struct Code {
    int entry;       // the entry whose text and flags apply
    long size;       // bytes the code occupies, parameter bytes included
    bool parameter;  // a one-byte code followed by parameter bytes
};

// A byte marked ENTRY_PARAM begins a two-byte code when the pair is defined,
// and is a code with parameter bytes otherwise.
Code ReadCode(const Font& font, const unsigned char* at, const unsigned char* end) {
    unsigned first = *at;
    if (!(font.flags[first] & ENTRY_PARAM)) return {static_cast<int>(first), 1, false};
    if (end - at > 1) {
        int n = font.twoByteMap[first << 8 | at[1]];
        if (n) return {TWO_BYTE_FIRST_ENTRY + n, 2, false};
    }
    bool twoParameters = font.texts[first] && font.index.markAt[first] >= 0 && (font.flags[first] & ENTRY_PARAM2);
    return {static_cast<int>(first), twoParameters ? 3 : 2, true};
}

// The text of a code without parameters; one without a text shows its bytes.
void WriteCodeText(DecodeOutput& out, const Font& font, const Code& code, const unsigned char* at) {
    if (const char* text = font.texts[code.entry])
        out.Put(text);
    else
        for (long i = 0; i < code.size; ++i) out.PutRawByte(at[i]);
}

// A parameter code's text with its parameter bytes in hexadecimal at the mark.
void WriteParameterCode(DecodeOutput& out, const Font& font, const Code& code, const unsigned char* at) {
    const char* text = font.texts[code.entry];
    int mark = font.index.markAt[code.entry];
    if (!text) return out.PutRawByte(*at);
    if (mark < 0) return out.Put(text);
    out.Put(text, static_cast<size_t>(mark));
    for (long i = 1; i < code.size; ++i) out.PutParameter(at[i]);
    out.Put(text + mark + 1);
}

DecodedText FinishCutShort(DecodeOutput& out, const unsigned char* first, const unsigned char* at,
                           const unsigned char* end) {
    while (at < end) out.PutRawByte(*at++);
    return out.Finish(end - first);
}

DecodedText DecodePlain(const Font& font, const unsigned char* first, const unsigned char* end) {
    DecodeOutput out;
    const unsigned char* at = first;
    while (at < end) {
        Code code = ReadCode(font, at, end);
        if (code.size > end - at) return FinishCutShort(out, first, at, end);
        if (code.parameter)
            WriteParameterCode(out, font, code, at);
        else
            WriteCodeText(out, font, code, at);
        at += code.size;
        uint8_t flags = font.flags[code.entry];
        if (flags & ENTRY_NEWLINE) out.Put('\n');
        if (out.Length() > kCutLength || (flags & ENTRY_TERMINAL)) break;
    }
    return out.Finish(at - first);
}

// The text of the code that starts at `at`, or null when there is none: past
// the end, an undefined two-byte pair, or an entry without a text.
const char* NextCodeText(const Font& font, const unsigned char* at, const unsigned char* end) {
    if (at >= end) return nullptr;
    unsigned first = *at;
    if (!(font.flags[first] & ENTRY_PARAM)) return font.texts[first];
    if (end - at < 2) return nullptr;
    int n = font.twoByteMap[first << 8 | at[1]];
    return n ? font.texts[TWO_BYTE_FIRST_ENTRY + n] : nullptr;
}

// Small ya, yu, yo after an i-syllable: ki -ya gives kya, shi -ya gives sha.
void JoinSmallY(DecodeOutput& out, std::string_view joiner) {
    bool upper = joiner[1] == 'Y';
    auto cased = [upper](char lower) { return upper ? static_cast<char>(lower - 'a' + 'A') : lower; };
    if (out.Last() != cased('i')) return out.Put(joiner.data(), joiner.size());
    out.DropLast();
    char last = out.Last();
    bool softened = (last == cased('h') && (out.Last(1) == cased('s') || out.Last(1) == cased('c'))) ||
                    last == cased('j');
    if (!softened) out.Put(cased('y'));
    out.Put(joiner[2]);
}

void WriteJoiner(DecodeOutput& out, const char* joinerText, const char* next) {
    std::string_view joiner(joinerText);
    if (!next) return out.Put(joinerText);
    if (joiner == "-tsu" || joiner == "-TSU") {
        char low = joiner[1] == 't' ? 'a' : 'A';
        if (*next >= low && *next <= low + 25) return out.Put(*next);
        return out.Put(joinerText);
    }
    if (joiner == "-ya" || joiner == "-yu" || joiner == "-yo" || joiner == "-YA" || joiner == "-YU" || joiner == "-YO")
        return JoinSmallY(out, joiner);
    bool smallVowel = joiner.size() == 2 && std::string_view("AIUEO").find(joiner[1]) != std::string_view::npos;
    if (smallVowel && out.Last() == 'E' && out.Last(1) == 'D') return out.ReplaceLast(static_cast<char>(joiner[1] - 'A' + 'a'));
    out.Put(joinerText);
}

}  // namespace

DecodedText DecodeRomanji(const Font& font, const unsigned char* first, const unsigned char* end) {
    DecodeOutput out;
    const unsigned char* at = first;
    while (at < end) {
        Code code = ReadCode(font, at, end);
        if (code.size > end - at) return FinishCutShort(out, first, at, end);
        const char* text = font.texts[code.entry];
        uint8_t flags = font.flags[code.entry];
        if (code.parameter && text) {
            // A control code with its parameters: no line feed, no length check.
            WriteParameterCode(out, font, code, at);
            at += code.size;
        } else {
            if (code.parameter)
                out.PutRawByte(*at);
            else if (text && text[0] == '-')
                WriteJoiner(out, text, NextCodeText(font, at + code.size, end));
            else
                WriteCodeText(out, font, code, at);
            if (out.Length() >= kCutLength) return {};
            at += code.size;
            if (flags & ENTRY_NEWLINE) out.Put('\n');
        }
        if (flags & ENTRY_TERMINAL) break;
    }
    return out.Finish(at - first);
}

int32_t CodeLength(const Font& font, const unsigned char* at, const unsigned char* end) {
    if (at >= end) return 0;
    return static_cast<int32_t>(std::min<long>(ReadCode(font, at, end).size, end - at));
}

DecodedText DecodeText(long fontId, const unsigned char* first, const unsigned char* end) {
    const Font* font = FindFont(fontId);
    if (!font) return {};
    if (font->rule == FONT_RULE_ROMANJI) return DecodeRomanji(*font, first, end);
    return DecodePlain(*font, first, end);
}

extern "C" char* Trelvane_Decode(long id, long address, long* length) {
    if (length) *length = 0;
    if (!RequireCurrentRom()) return nullptr;
    if (address < 0 || address >= CurrentRom().size) {
        SetError(TLERR_ID_BAD, "", 0, 0, "address", std::to_string(address).c_str());
        return nullptr;
    }
    const DecodedText decoded = DecodeText(id, CurrentRom().data + address, CurrentRom().data + CurrentRom().size);
    if (decoded.text && length) *length = decoded.consumed;
    return const_cast<char*>(decoded.text);
}
