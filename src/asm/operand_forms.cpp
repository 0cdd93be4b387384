#include "asm/operand_forms.h"

#include <string>

#include "asm/source_text.h"
#include "core/text_compare.h"

namespace {

// The index of the bracket closing the one at text[0], or npos.
size_t ClosingBracket(std::string_view text) {
    const char open = text[0], close = open == '(' ? ')' : ']';
    int depth = 0;
    for (size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\'' && i + 2 < text.size()) {
            i += 2;
            continue;
        }
        depth += text[i] == open ? 1 : text[i] == close ? -1 : 0;
        if (depth == 0) return i;
    }
    return std::string_view::npos;
}

// Splits a trailing ",x" / ",y" / ",s" (any case, blanks allowed after the comma) off text.
char IndexSuffix(std::string_view& text) {
    const size_t comma = text.rfind(',');
    if (comma == std::string_view::npos) return 0;
    const std::string_view index = TrimBlanks(text.substr(comma + 1));
    if (index.size() != 1) return 0;
    const char letter = static_cast<char>(index[0] | 0x20);
    if (letter != 'x' && letter != 'y' && letter != 's') return 0;
    text = text.substr(0, comma);
    return letter;
}

OperandShape BracketShape(std::string_view text, size_t close) {
    std::string_view inner = text.substr(1, close - 1);
    std::string_view rest = text.substr(close + 1);
    const bool square = text[0] == '[';
    const char innerIndex = IndexSuffix(inner);
    const char outerIndex = IndexSuffix(rest);
    if (!rest.empty()) return {OperandForm::Plain, text, {}};
    if (square) {
        if (innerIndex) return {OperandForm::Plain, text, {}};
        return {outerIndex == 'y' ? OperandForm::LongIndirectY : outerIndex ? OperandForm::Plain : OperandForm::LongIndirect, inner, {}};
    }
    if (outerIndex == 'y' && innerIndex == 's') return {OperandForm::StackIndirectY, inner, {}};
    if (outerIndex == 'y' && !innerIndex) return {OperandForm::IndirectY, inner, {}};
    if (outerIndex) return {OperandForm::Plain, text, {}};
    if (innerIndex == 'x') return {OperandForm::IndirectX, inner, {}};
    if (!innerIndex) return {OperandForm::Indirect, inner, {}};
    return {OperandForm::Plain, text, {}};
}

}  // namespace

OperandShape ReadOperandShape(std::string_view text) {
    if (text.empty() || SameTextIgnoringCase(std::string(text).c_str(), "a")) return {};
    if (text[0] == '#') return {OperandForm::Immediate, text.substr(1), {}};
    if (text[0] == '(' || text[0] == '[') {
        const size_t close = ClosingBracket(text);
        if (close != std::string_view::npos) {
            const OperandShape shape = BracketShape(text, close);
            if (shape.form != OperandForm::Plain) return shape;
        }
    }
    std::string_view expression = text;
    switch (IndexSuffix(expression)) {
    case 'x': return {OperandForm::IndexX, expression, {}};
    case 'y': return {OperandForm::IndexY, expression, {}};
    case 's': return {OperandForm::Stack, expression, {}};
    default: break;
    }
    const size_t comma = text.find(',');
    if (comma != std::string_view::npos) return {OperandForm::Pair, text.substr(0, comma), text.substr(comma + 1)};
    return {OperandForm::Plain, text, {}};
}

std::array<std::optional<CpuMode>, 3> ModesOfForm(OperandForm form) {
    using M = CpuMode;
    switch (form) {
    case OperandForm::Plain: return {M::Direct, M::Absolute, M::Long};
    case OperandForm::IndexX: return {M::DirectX, M::AbsoluteX, M::LongX};
    case OperandForm::IndexY: return {M::DirectY, M::AbsoluteY, std::nullopt};
    case OperandForm::Stack: return {M::Stack, std::nullopt, std::nullopt};
    case OperandForm::Indirect: return {M::DirectIndirect, M::AbsoluteIndirect, std::nullopt};
    case OperandForm::IndirectX: return {M::DirectXIndirect, M::AbsoluteXIndirect, std::nullopt};
    case OperandForm::IndirectY: return {M::DirectIndirectY, std::nullopt, std::nullopt};
    case OperandForm::LongIndirect: return {M::DirectLong, M::AbsoluteLongIndirect, std::nullopt};
    case OperandForm::LongIndirectY: return {M::DirectLongY, std::nullopt, std::nullopt};
    case OperandForm::StackIndirectY: return {M::StackIndirectY, std::nullopt, std::nullopt};
    default: return {};
    }
}

const char* FormName(OperandForm form, int width) {
    static constexpr const char* PLAIN[] = {"direct-page", "absolute", "long"};
    static constexpr const char* INDEX_X[] = {"dp,x", "abs,x", "long,x"};
    static constexpr const char* INDEX_Y[] = {"dp,y", "abs,y", "long,y"};
    static constexpr const char* INDIRECT[] = {"(dp)", "(abs)", "(long)"};
    static constexpr const char* INDIRECT_X[] = {"(dp,x)", "(abs,x)", "(long,x)"};
    static constexpr const char* LONG_INDIRECT[] = {"[dp]", "[abs]", "[long]"};
    const int w = width < 1 ? 0 : width > 3 ? 2 : width - 1;
    switch (form) {
    case OperandForm::None: return "operand-less";
    case OperandForm::Immediate: return "immediate";
    case OperandForm::Plain: return PLAIN[w];
    case OperandForm::IndexX: return INDEX_X[w];
    case OperandForm::IndexY: return INDEX_Y[w];
    case OperandForm::Stack: return "stack-relative (e,s)";
    case OperandForm::Indirect: return INDIRECT[w];
    case OperandForm::IndirectX: return INDIRECT_X[w];
    case OperandForm::IndirectY: return "(dp),y";
    case OperandForm::LongIndirect: return LONG_INDIRECT[w];
    case OperandForm::LongIndirectY: return "[dp],y";
    case OperandForm::StackIndirectY: return "(e,s),y";
    case OperandForm::Pair: return "two-value";
    }
    return "";
}
