#include "script/script_document_reader.h"

#include <cstdlib>
#include <cstring>
#include <optional>

#include "core/byte_order_mark.h"
#include "core/hex_digit.h"
#include "core/last_error.h"
#include "core/snes_mapping.h"
#include "core/text_compare.h"
#include "script/pointer_form.h"
#include "script/script_header_tokens.h"
#include "script/script_lines.h"
#include "trelvane.h"

namespace {

constexpr int64_t kUnset = -1;

// What the header says before it is turned into a document.
struct HeaderValues {
    int64_t table = kUnset, high = kUnset, bank = kUnset, size = kUnset;
    int64_t base = 0, firstPointer = 0;
    bool baseGiven = false;
};

class ScriptReader {
public:
    ScriptReader(const std::string& text, const char* file, ScriptDocument& document)
        : text_(text), file_(file), document_(document), tokens_(text) {}

    bool ReadHeader();
    bool ReadStrings();

private:
    bool Fail(const std::string& why) {
        return SetError(TLERR_SCRIPT_HEADER, file_, tokens_.line(), tokens_.column(), why.c_str());
    }
    bool Command(const std::string& keyword);
    bool PointerCommand(const std::string& keyword);
    bool Number(int64_t& value, int64_t lowest = INT32_MIN, int64_t highest = INT32_MAX);
    bool Region(bool limitOptional);
    bool Load();
    bool Choice(const char* first, const char* second, bool& isFirst);
    bool Map();
    bool PointerList();
    void Finish();
    void AddEntry(const std::string& line, int32_t lineNumber);

    const std::string& text_;
    const char* file_;
    ScriptDocument& document_;
    HeaderTokens tokens_;
    HeaderValues values_;
    size_t sectionStart_ = std::string::npos;
    int32_t sectionLine_ = 0;
};

bool ScriptReader::Number(int64_t& value, int64_t lowest, int64_t highest) {
    if (tokens_.Next() != HeaderToken::Number) return Fail("Expected a number, found '" + tokens_.text() + "'");
    if (tokens_.value() < lowest || tokens_.value() > highest)
        return Fail("'" + tokens_.text() + "' is out of range (" + std::to_string(lowest) + " to " +
                    std::to_string(highest) + ")");
    value = tokens_.value();
    return true;
}

// ADDRESS ( SIZE ); classic text addresses may leave the size out, or give
// FFFFFFFFh for "no limit".
bool ScriptReader::Region(bool limitOptional) {
    TextRegion region;
    int64_t size = kUnset;
    if (!Number(region.start, 0)) return false;
    if (tokens_.Peek() == HeaderToken::Open) {
        tokens_.Next();
        if (!Number(size, 0, 0xFFFFFFFF)) return false;
        if (tokens_.Next() != HeaderToken::Close) return Fail("Expected ')', found '" + tokens_.text() + "'");
    } else if (!limitOptional) {
        return Fail("Expected '(' and the region's size");
    }
    region.size = size == 0xFFFFFFFF ? kUnset : size;
    document_.regions.push_back(region);
    return true;
}

bool ScriptReader::Load() {
    if (tokens_.Next() != HeaderToken::Quoted || tokens_.text().size() < 3)
        return Fail("Expected a table file name in quotes, found '" + tokens_.text() + "'");
    document_.tableFile = tokens_.text().substr(1, tokens_.text().size() - 2);
    return true;
}

bool ScriptReader::Choice(const char* first, const char* second, bool& isFirst) {
    tokens_.Next();
    isFirst = SameTextIgnoringCase(tokens_.text().c_str(), first);
    if (isFirst || SameTextIgnoringCase(tokens_.text().c_str(), second)) return true;
    return Fail(std::string("Expected '") + first + "' or '" + second + "', found '" + tokens_.text() + "'");
}

bool ScriptReader::Map() {
    tokens_.Next();
    std::optional<SnesMapping> mapping = SnesMappingFromName(tokens_.text().c_str());
    if (mapping == SnesMapping::LoRom) document_.form.map = POINTER_MAP_LOROM;
    else if (mapping == SnesMapping::HiRom) document_.form.map = POINTER_MAP_HIROM;
    else if (mapping == SnesMapping::ExHiRom) document_.form.map = POINTER_MAP_EXHIROM;
    else return Fail("Expected lorom, hirom or exhirom, found '" + tokens_.text() + "'");
    return true;
}

// One string's pointers: one or more offsets.
bool ScriptReader::PointerList() {
    std::vector<int64_t> places;
    do {
        int64_t place = 0;
        if (!Number(place, 0)) return false;
        places.push_back(place);
    } while (tokens_.Peek() == HeaderToken::Number);
    document_.pointerLists.push_back(places);
    return true;
}

bool ScriptReader::PointerCommand(const std::string& keyword) {
    auto is = [&keyword](const char* name) { return SameTextIgnoringCase(keyword.c_str(), name); };
    PointerForm& form = document_.form;
    int64_t value = 0;
    bool big = false;
    if (is("pointertable") || is("pointertablelow") || is("pointerlow")) return Number(values_.table, 0);
    if (is("pointertablehigh") || is("pointerhigh")) return Number(values_.high, 0);
    if (is("pointertablebank") || is("pointerbank")) return Number(values_.bank, 0);
    if (is("pointersize")) return Number(values_.size, 1, 4);
    if (is("pointerlist")) return PointerList();
    if (is("pointermap")) return Map();
    if (is("pointerorder")) return Choice("big", "little", big) && ((form.bigEndian = big), true);
    if (is("pointerbase")) return Number(value) && ((form.base = static_cast<int>(value)), values_.baseGiven = true);
    bool read = false;
    if (is("pointercount")) read = Number(value, 0), form.count = static_cast<int>(value);
    else if (is("pointerstride")) read = Number(value, 1, 0xFFFF), form.stride = static_cast<int>(value);
    else if (is("pointerfrequency")) read = Number(value, 1, 0xFFFF), document_.frequency = static_cast<int>(value);
    else return Fail("Unknown command: " + keyword);
    return read;
}

bool ScriptReader::Command(const std::string& keyword) {
    auto is = [&keyword](const char* name) { return SameTextIgnoringCase(keyword.c_str(), name); };
    bool literal = false;
    int64_t value = 0;
    if (is("load")) return Load();
    if (is("textaddress")) return Region(true);
    if (is("textregion")) return Region(false);
    if (is("textlines")) return Choice("literal", "classic", literal) && ((document_.literalLines = literal), true);
    if (is("padbyte")) return Number(value, 0, 255) && ((document_.padByte = static_cast<int32_t>(value)), true);
    if (is("firstpointer")) {
        if (tokens_.Peek() == HeaderToken::Number) return Number(values_.firstPointer, 0, 0xFFFFFFFF);
        return true;
    }
    return PointerCommand(keyword);
}

bool ScriptReader::ReadHeader() {
    while (true) {
        switch (tokens_.Next()) {
            case HeaderToken::End: return true;
            case HeaderToken::Bracket:
                sectionStart_ = tokens_.lineStart();
                sectionLine_ = tokens_.line();
                return true;
            case HeaderToken::Word:
                if (!Command(tokens_.text())) return false;
                break;
            default: return Fail("Unknown command: " + tokens_.text());
        }
    }
}

// Turns the header's pointer values into the document's form; a classic
// script's pointer values count from its first pointer, or else from its
// text address.
void ScriptReader::Finish() {
    PointerForm& form = document_.form;
    if (!document_.pointerLists.empty()) {
        document_.pointers = ScriptPointers::List;
        form.size = values_.size == kUnset ? 2 : static_cast<int>(values_.size);
    } else if (values_.table != kUnset) {
        document_.pointers = ScriptPointers::Table;
        bool split = values_.size == kUnset;
        form.size = split ? 0 : static_cast<int>(values_.size);
        (split ? form.low : form.table) = static_cast<int>(values_.table);
        if (split) form.high = static_cast<int>(values_.high);
        if (split && values_.high != kUnset) form.bank = static_cast<int>(values_.bank);
    }
    if (values_.baseGiven || form.map != POINTER_MAP_NONE || document_.regions.empty()) return;
    if (values_.firstPointer != 0) form.base = static_cast<int>(document_.regions[0].start - values_.firstPointer);
    else if (!document_.literalLines) form.base = static_cast<int>(document_.regions[0].start);
}

// "[NNNN] ; OFFSET (LENGTH)": the offset and length are those the dump found.
void ScriptReader::AddEntry(const std::string& line, int32_t lineNumber) {
    ScriptEntry entry;
    size_t close = line.find(']');
    entry.number = line.substr(1, close == std::string::npos ? std::string::npos : close - 1);
    if (entry.number.empty()) entry.number = "line " + std::to_string(lineNumber);
    size_t at = close == std::string::npos ? line.size() : line.find_first_not_of(" \t", close + 1);
    entry.null = at != std::string::npos && line.compare(at, 6, "; null") == 0;
    if (!entry.null && at != std::string::npos && at < line.size() && line[at] == ';') {
        char* end = nullptr;
        const char* offset = line.c_str() + at + 1;
        long long value = std::strtoll(offset, &end, 16);
        if (end != offset) entry.offset = value;
        const char* length = std::strchr(end, '(');
        if (entry.offset >= 0 && length) entry.length = std::strtoll(length + 1, nullptr, 10);
    }
    document_.entries.push_back(entry);
}

bool ScriptReader::ReadStrings() {
    Finish();
    if (sectionStart_ == std::string::npos) return true;
    const LineRules rules = document_.literalLines ? LineRules::Literal : LineRules::Classic;
    int32_t lineNumber = sectionLine_;
    for (size_t at = sectionStart_; at < text_.size(); ++lineNumber) {
        size_t end = text_.find('\n', at);
        if (end == std::string::npos) end = text_.size();
        std::string line = text_.substr(at, end - at);
        if (!line.empty() && line.back() == '\r') line.pop_back();
        at = end + 1;
        ScriptLine kind = ClassifyScriptLine(line, rules);
        if (kind == ScriptLine::EntryHeader || document_.entries.empty()) AddEntry(line, lineNumber);
        if (kind == ScriptLine::Text && lineNumber != sectionLine_)
            AppendTextPiece(document_.entries.back().text, TextOfLine(line, rules));
    }
    for (ScriptEntry& entry : document_.entries) EndStringText(entry.text);
    return true;
}

}  // namespace

bool ReadScriptDocument(const std::string& text, const char* file, ScriptDocument& document) {
    document = ScriptDocument{};
    document.form.table = document.form.low = document.form.high = document.form.bank = -1;
    const auto* bytes = reinterpret_cast<const unsigned char*>(text.data());
    const std::string body = text.substr(ByteOrderMarkLength(bytes, text.size()));
    ScriptReader reader(body, file, document);
    return reader.ReadHeader() && reader.ReadStrings();
}
