#include "verbs/json_text.h"

#include <cstdio>

namespace {

// The length of the well-formed UTF-8 sequence of letters beyond ASCII at
// text[at], or 0 when the bytes there are not one.
size_t Utf8SequenceLength(const std::string& text, size_t at) {
    const unsigned char lead = static_cast<unsigned char>(text[at]);
    const size_t length = lead >= 0xF0 && lead <= 0xF4 ? 4 : lead >= 0xE0 ? 3 : lead >= 0xC2 && lead <= 0xDF ? 2 : 0;
    if (length == 0 || at + length > text.size()) return 0;
    for (size_t i = 1; i < length; ++i)
        if ((static_cast<unsigned char>(text[at + i]) & 0xC0) != 0x80) return 0;
    return length;
}

std::string Escape(unsigned char byte) {
    char escape[8];
    std::snprintf(escape, sizeof escape, "\\u%04x", byte);
    return escape;
}

}  // namespace

std::string JsonString(const std::string& text) {
    std::string json = "\"";
    for (size_t at = 0; at < text.size(); ++at) {
        const unsigned char byte = static_cast<unsigned char>(text[at]);
        const size_t sequence = byte >= 0x80 ? Utf8SequenceLength(text, at) : 0;
        if (sequence > 0) {
            json.append(text, at, sequence);
            at += sequence - 1;
        } else if (byte == '"' || byte == '\\') {
            json += '\\';
            json += static_cast<char>(byte);
        } else if (byte < 0x20 || byte > 0x7E) {
            json += Escape(byte);
        } else {
            json += static_cast<char>(byte);
        }
    }
    return json + "\"";
}

std::string JsonObject(const std::vector<JsonMember>& members) {
    std::string json = "{";
    for (const JsonMember& member : members) {
        if (json.size() > 1) json += ", ";
        json += JsonString(member.first) + ": " + member.second;
    }
    return json + "}";
}
