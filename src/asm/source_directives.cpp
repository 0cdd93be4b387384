#include "asm/source_directives.h"

#include <cstdio>

#include "asm/asm_session.h"
#include "asm/snes_image_writer.h"
#include "asm/source_expression.h"
#include "asm/source_paths.h"
#include "asm/source_text.h"
#include "core/file_bytes.h"
#include "table/table_reader.h"
#include "table/text_encoder.h"

namespace {

bool Evaluate(AsmSession& session, std::string_view text, ExpressionValue& value) {
    ExpressionError error;
    if (EvaluateExpression(session, text, value, error)) return true;
    return session.Error(error.text);
}

// A value the pass cannot know yet (a label defined later) gives no error before the final pass.
bool EvaluateConstant(AsmSession& session, std::string_view text, int64_t& value) {
    ExpressionValue result;
    if (!Evaluate(session, text, result)) return false;
    value = result.value;
    return true;
}

bool Org(AsmSession& session, std::string_view operand) {
    int64_t address = 0;
    if (!EvaluateConstant(session, operand, address)) return false;
    if (address < 0 || address > 0xFFFFFF) return session.Error("org " + std::string(operand) + " is outside $000000-$FFFFFF");
    session.pc = static_cast<uint32_t>(address);
    session.pcSet = true;
    return true;
}

bool Mapping(AsmSession& session, const std::string& word, std::string_view operand) {
    const std::optional<SnesMapping> named = SnesMappingFromName(word == "sa1rom" ? "sa1" : word.c_str());
    if (!TrimBlanks(operand).empty() && TrimBlanks(operand) != "0,1,2,3")
        return session.Error("sa1rom with another block layout than 0,1,2,3 is not supported");
    if (session.options.mapping) {
        if (*session.options.mapping != *named)
            session.Warning(std::string("the source asks for ") + SnesMappingTitle(*named) + "; assembling as " +
                            SnesMappingTitle(*session.options.mapping));
        return true;
    }
    if (session.mapping && *session.mapping != *named)
        return session.Error(std::string("the mapping was already set to ") + SnesMappingTitle(*session.mapping));
    session.mapping = named;
    return true;
}

// The codes of a string's characters: through the table when one is loaded, else ASCII.
bool StringCodes(AsmSession& session, const std::string& text, std::vector<int64_t>& codes) {
    if (!session.tableFont) {
        for (char c : text) codes.push_back(static_cast<unsigned char>(c));
        return true;
    }
    const EncodedText encoded = EncodeText(session.tableFont, text.c_str(), UNTERMINATED_ENCODING);
    if (!encoded.bytes) return session.Error("\"" + text + "\" cannot be encoded with the table");
    for (int32_t i = 0; i < encoded.length; ++i) codes.push_back(encoded.bytes[i]);
    return true;
}

bool FitsData(const AsmSession& session, const ExpressionValue& value, int size) {
    if (size == 4) return value.value >= -(int64_t{1} << 31) && value.value <= 0xFFFFFFFF;
    const int64_t limit = int64_t{1} << (8 * size);
    if (value.value >= -(limit / 2) && value.value < limit) return true;
    return size == 2 && value.hasLabel && value.value >= 0 && (value.value >> 16) == (session.pc >> 16);
}

bool Data(AsmSession& session, std::string_view operand, int size) {
    std::vector<unsigned char> bytes;
    bool ok = true;
    for (std::string_view item : SplitOperandList(operand)) {
        std::string text;
        std::vector<int64_t> codes;
        if (ReadQuotedText(item, text)) {
            ok = StringCodes(session, text, codes) && ok;
        } else {
            ExpressionValue value;
            const bool evaluated = Evaluate(session, item, value);
            if (evaluated && !FitsData(session, value, size)) {
                char hex[24];
                std::snprintf(hex, sizeof hex, "$%llX", static_cast<unsigned long long>(value.value));
                session.Error(std::string(item) + " (" + hex + ") does not fit " + std::to_string(8 * size) + " bits");
            }
            ok = ok && evaluated && FitsData(session, value, size);
            codes.push_back(value.value);
        }
        for (int64_t code : codes)
            for (int i = 0; i < size; ++i) bytes.push_back(static_cast<unsigned char>(code >> (8 * i)));
    }
    return WriteAtProgramCounter(session, bytes.data(), bytes.size()) && ok;
}

bool Fill(AsmSession& session, std::string_view operand, uint8_t byte) {
    int64_t count = 0;
    if (!EvaluateConstant(session, operand, count)) return false;
    if (count < 0 || count > 0x10000) return session.Error("fill " + std::string(operand) + " is no count of 0 to 65536 bytes");
    const std::vector<unsigned char> bytes(static_cast<size_t>(count), byte);
    return WriteAtProgramCounter(session, bytes.data(), bytes.size());
}

bool Pad(AsmSession& session, std::string_view operand) {
    int64_t address = 0;
    if (!EvaluateConstant(session, operand, address)) return false;
    if (address <= session.pc) return true;
    return Fill(session, std::to_string(address - session.pc), session.padByte);
}

bool SetByte(AsmSession& session, std::string_view operand, uint8_t& byte) {
    int64_t value = 0;
    if (!EvaluateConstant(session, operand, value)) return false;
    if (value < -128 || value > 255) return session.Error(std::string(operand) + " does not fit a byte");
    byte = static_cast<uint8_t>(value);
    return true;
}

bool Warnpc(AsmSession& session, std::string_view operand) {
    int64_t limit = 0;
    if (!EvaluateConstant(session, operand, limit)) return false;
    if (session.pc > limit)
        return session.Error("the code has reached " + AddressText(session.pc) + ", past the warnpc limit " + AddressText(static_cast<uint32_t>(limit)));
    return true;
}

bool Incbin(AsmSession& session, std::string_view operand) {
    const size_t close = operand.size() > 1 && operand[0] == '"' ? operand.find('"', 1) : std::string_view::npos;
    std::string_view name = close != std::string_view::npos ? operand.substr(1, close - 1) : operand;
    std::string_view range = close != std::string_view::npos ? operand.substr(close + 1) : std::string_view();
    if (close == std::string_view::npos && operand.find(':') != std::string_view::npos) {
        name = operand.substr(0, operand.find(':'));
        range = operand.substr(operand.find(':'));
    }
    const std::vector<unsigned char>* bytes = LoadSourceFileBytes(session, std::string(name));
    if (!bytes) return false;
    int64_t start = 0, end = static_cast<int64_t>(bytes->size());
    if (!TrimBlanks(range).empty()) {
        const size_t dots = range.find("..");
        if (range[0] != ':' || dots == std::string_view::npos)
            return session.Error("an incbin range is written \"file\":start..end");
        if (!EvaluateConstant(session, range.substr(1, dots - 1), start) || !EvaluateConstant(session, range.substr(dots + 2), end))
            return false;
        if (end == 0) end = static_cast<int64_t>(bytes->size());
    }
    if (start < 0 || start > end || end > static_cast<int64_t>(bytes->size()))
        return session.Error("the range " + std::to_string(start) + ".." + std::to_string(end) + " is outside " +
                             std::string(name) + " (" + std::to_string(bytes->size()) + " bytes)");
    return WriteAtProgramCounter(session, bytes->data() + start, static_cast<size_t>(end - start));
}

bool Table(AsmSession& session, std::string_view operand) {
    std::string name;
    if (!ReadQuotedText(operand, name)) name = std::string(TrimBlanks(operand));
    const std::string path = ResolveSourcePath(session, name);
    const auto loaded = session.tables.find(path);
    if (loaded != session.tables.end()) {
        session.tableFont = loaded->second;
        return true;
    }
    const long font = ReadTableFile(path.c_str());
    if (!font) return session.Error("the table " + name + " cannot be loaded");
    session.tables[path] = font;
    session.tableFont = font;
    return true;
}

// "hex(e[,digits])", "dec(e)", "bin(e[,digits])": the value written in that base.
bool PrintNumber(AsmSession& session, std::string_view item, std::string& out) {
    const size_t open = item.find('(');
    const std::string_view function = item.substr(0, open);
    const int base = function == "hex" ? 16 : function == "dec" ? 10 : function == "bin" ? 2 : 0;
    if (!base || item.back() != ')') return session.Error("print cannot write " + std::string(item));
    const std::vector<std::string_view> arguments = SplitOperandList(item.substr(open + 1, item.size() - open - 2));
    int64_t value = 0, digits = 1;
    if (arguments.empty() || arguments.size() > 2 || !EvaluateConstant(session, arguments[0], value)) return false;
    if (arguments.size() == 2 && !EvaluateConstant(session, arguments[1], digits)) return false;
    std::string text;
    uint64_t magnitude = static_cast<uint64_t>(value < 0 ? -value : value);
    do {
        text.insert(text.begin(), "0123456789ABCDEF"[magnitude % static_cast<unsigned>(base)]);
        magnitude /= static_cast<unsigned>(base);
    } while (magnitude);
    while (static_cast<int64_t>(text.size()) < digits && text.size() < 64) text.insert(text.begin(), '0');
    out += (value < 0 ? "-" : "") + text;
    return true;
}

bool Print(AsmSession& session, std::string_view operand) {
    std::string out;
    for (std::string_view item : SplitOperandList(operand)) {
        std::string text;
        if (ReadQuotedText(item, text)) out += text;
        else if (item == "pc") out += AddressText(session.pc).substr(1);
        else if (item.find('(') == std::string_view::npos || !PrintNumber(session, item, out))
            return item.find('(') == std::string_view::npos ? session.Error("print cannot write " + std::string(item)) : false;
    }
    session.prints.push_back(out);
    return true;
}

}  // namespace

bool ReadQuotedText(std::string_view text, std::string& out) {
    text = TrimBlanks(text);
    if (text.size() < 2 || text.front() != '"' || text.back() != '"') return false;
    out.clear();
    for (size_t i = 1; i + 1 < text.size(); ++i) {
        if (text[i] == '"' && text[i + 1] == '"') ++i;
        else if (text[i] == '"') return false;
        out += text[i];
    }
    return true;
}

DirectiveResult RunSourceDirective(AsmSession& session, const std::string& word, std::string_view operand) {
    static constexpr const char* DATA[] = {"db", "dw", "dl", "dd"};
    bool ok = true;
    if (word == "org") ok = Org(session, operand);
    else if (word == "lorom" || word == "hirom" || word == "exlorom" || word == "exhirom" || word == "sa1rom")
        ok = Mapping(session, word, operand);
    else if (word == "db" || word == "dw" || word == "dl" || word == "dd") {
        int size = 1;
        while (word != DATA[size - 1]) ++size;
        ok = Data(session, operand, size);
    } else if (word == "incbin") ok = Incbin(session, operand);
    else if (word == "fillbyte") ok = SetByte(session, operand, session.fillByte);
    else if (word == "fill") ok = Fill(session, operand, session.fillByte);
    else if (word == "padbyte") ok = SetByte(session, operand, session.padByte);
    else if (word == "pad") ok = Pad(session, operand);
    else if (word == "warnpc") ok = Warnpc(session, operand);
    else if (word == "table") ok = Table(session, operand);
    else if (word == "print") ok = Print(session, operand);
    else return DirectiveResult::NotDirective;
    return ok ? DirectiveResult::Done : DirectiveResult::Failed;
}
