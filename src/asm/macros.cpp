#include "asm/macros.h"

#include <algorithm>
#include <array>
#include <memory>
#include <string>
#include <vector>

#include "core/blank.h"
#include "asm/operands.h"
#include "asm/patch_file.h"
#include "asm/patch_messages.h"
#include "asm/statement_kinds.h"
#include "asm/patch_lexicon.h"

namespace {

// What each label slot of the pending block means, for storing it with a macro body.
std::array<MacroLabel, LABEL_SLOT_COUNT> DescribeLabels(const PatchFile& patch) {
    std::array<bool, LABEL_SLOT_COUNT> defined{};
    const auto entries = patch.block.Entries();
    for (int i = 0; i < static_cast<int>(entries.size()); i = NextEntryIndex(entries, i)) {
        const CodeEntry entry = entries[static_cast<size_t>(i)];
        if (IsLabelDefinition(entry)) defined[static_cast<size_t>(EntrySlot(entry))] = true;
    }
    std::array<MacroLabel, LABEL_SLOT_COUNT> labels;
    const LabelTable& table = patch.labels;
    for (int slot = 0; slot < LABEL_SLOT_COUNT; ++slot) {
        MacroLabel& label = labels[static_cast<size_t>(slot)];
        if (table.IsNumeric(slot)) {
            label.use = MacroLabel::NUMERIC;
            label.value = table.Value(slot);
        } else if (table.IsNamed(slot)) {
            label.use = defined[static_cast<size_t>(slot)] ? MacroLabel::DEFINED : MacroLabel::REFERENCED;
            label.name = table.Name(slot);
        }
    }
    return labels;
}

// The parameters written behind a call's name, cut as the language defines: separated by
// commas or tabs, spaces around them ignored, a ";" ending the list.
class ParameterCutter {
public:
    ParameterCutter(const std::string& line, size_t at) : line_(line), at_(at) {}

    // Fills parameters; false with the reason appended to the message.
    bool Cut(PatchFile& patch, std::vector<std::string>& parameters) {
        if (!AtEnd()) {
            ++at_;
            SkipSpaces();
        }
        while (!AtEnd() && Current() != ';') {
            const size_t start = at_;
            while (!AtEnd() && !IsBlank(Current()) && Current() != ',') ++at_;
            if (parameters.size() >= static_cast<size_t>(MAX_MACRO_PARAMETERS))
                return AppendMessage(patch.error, MSG_TOO_MANY, TABLE_PARAMETERS, MAX_MACRO_PARAMETERS);
            parameters.push_back(line_.substr(start, at_ - start));
            if (!AtEnd() && Current() == ' ') {
                while (!AtEnd() && IsBlank(Current())) ++at_;
                if (AtEnd() || Current() == ';') return true;
                if (Current() != ',') return AppendMessage(patch.error, MSG_COMMA_EXPECTED);
                ++at_;
            } else if (!AtEnd()) {
                ++at_;  // a tab separates like a comma
            }
            SkipSpaces();
        }
        return true;
    }

private:
    bool AtEnd() const { return at_ >= line_.size(); }
    char Current() const { return line_[at_]; }
    void SkipSpaces() {
        while (!AtEnd() && Current() == ' ') ++at_;
    }

    const std::string& line_;
    size_t at_;
};

// Gives the body's label slots their meaning in the calling block: fresh private labels for
// the labels the body defines, the caller's labels for those it only branches to, fresh
// numeric slots for its numeric targets.
class SlotMapper {
public:
    SlotMapper(PatchFile& patch, const MacroBody& body) : patch_(patch), body_(body) { map_.fill(-1); }

    // The calling block's slot for the body's slot; -1 when the label table is full.
    int Map(int slot) {
        int& mapped = map_[static_cast<size_t>(slot)];
        if (mapped >= 0) return mapped;
        const MacroLabel& label = body_.labels[static_cast<size_t>(slot)];
        LabelTable& labels = patch_.labels;
        switch (label.use) {
        case MacroLabel::NUMERIC: mapped = labels.NewNumericTarget(label.value); break;
        case MacroLabel::DEFINED: mapped = labels.AddHidden(label.name); break;
        default:
            mapped = labels.Lookup(label.name);
            if (mapped < 0) mapped = labels.Add(label.name);
        }
        return mapped;
    }

private:
    PatchFile& patch_;
    const MacroBody& body_;
    std::array<int, LABEL_SLOT_COUNT> map_;
};

// The call's name as written: the line up to the end of the name, without leading blanks.
std::string CallName(const std::string& line, size_t end) {
    return std::string(TrimStart(std::string_view(line).substr(0, end)));
}

// Assembles the instruction of a macro-parameter entry with the parameter's text as its operand.
bool AssembleWithParameter(PatchFile& patch, const std::string& name, const std::string& parameter, int mnemonic) {
    patch.reader.PushFrame();
    patch.reader.OpenText(name.c_str(), parameter.c_str());
    const bool assembled = AssembleInstruction(patch, mnemonic) != 0;
    patch.reader.PopFrame();
    return assembled;
}

int32_t CopyBody(PatchFile& patch, const MacroBody& body, const std::string& name,
                 const std::vector<std::string>& parameters) {
    SlotMapper slots(patch, body);
    const std::span<const CodeEntry> entries(body.entries);
    for (int i = 0; i < static_cast<int>(entries.size()); i = NextEntryIndex(entries, i)) {
        const CodeEntry entry = entries[static_cast<size_t>(i)];
        if (IsMacroParameterEntry(entry)) {
            const size_t parameter = static_cast<size_t>(EntryParameter(entry));
            if (parameter >= parameters.size()) return AppendMessage(patch.error, MSG_NOT_ENOUGH_PARAMETERS, name.c_str());
            if (!AssembleWithParameter(patch, name, parameters[parameter], EntryLow(entry))) return 0;
            continue;
        }
        std::vector<CodeEntry> copied(entries.begin() + i, entries.begin() + NextEntryIndex(entries, i));
        if (entry & ENTRY_LABEL) {
            const int slot = slots.Map(EntrySlot(entry));
            if (slot < 0) return AppendMessage(patch.error, MSG_TOO_MANY, TABLE_LABELS, LABEL_SLOT_COUNT);
            copied[0] = static_cast<CodeEntry>((entry & 0x80FF) | slot << 8);
        }
        if (!patch.block.Append(copied))
            return AppendMessage(patch.error, MSG_TOO_MANY, TABLE_CODE_ENTRIES, MAX_CODE_ENTRIES);
    }
    return TOKEN_UNDERSCORE_NAME;
}

}  // namespace

int32_t BeginMacro(PatchFile& patch, std::string_view name) {
    const std::string macroName = std::string("_").append(name);
    if (patch.definingMacro)
        return Report(patch.error, MSG_MACRO_IN_MACRO, macroName.c_str(), patch.macroName.c_str());
    if (macroName.size() > static_cast<size_t>(MAX_MACRO_NAME))
        return Report(patch.error, MSG_NAME_TOO_LONG, macroName.c_str(), MAX_MACRO_NAME);
    patch.macroName = macroName;
    patch.definingMacro = true;
    patch.outerBlock = patch.block;
    patch.outerLabels = patch.labels;
    patch.block.Clear();
    patch.labels.Reset();
    return TOKEN_DOT_MACRO;
}

namespace {

// The code around the definition goes on where it stopped.
void ResumeOuterBlock(PatchFile& patch) {
    patch.definingMacro = false;
    patch.block = patch.outerBlock;
    patch.labels = patch.outerLabels;
    patch.outerBlock.Clear();
    patch.outerLabels.Reset();
}

bool AddMacro(PatchFile& patch) {
    if (patch.macros.size() >= static_cast<size_t>(MAX_MACROS)) return ReportTooMany(patch.error, TABLE_MACROS, MAX_MACROS);
    auto body = std::make_unique<MacroBody>();
    const auto entries = patch.block.Entries();
    body->entries.assign(entries.begin(), entries.end());
    body->labels = DescribeLabels(patch);
    const int index = static_cast<int>(patch.macros.size());
    patch.reader.AddWord(TOKEN_MACRO_BASE + index, patch.macroName);
    patch.macros.push_back(std::move(body));
    return true;
}

}  // namespace

int32_t StoreMacro(PatchFile& patch) {
    if (!patch.definingMacro) return Report(patch.error, MSG_ENDM_WITHOUT_MACRO);
    const bool added = AddMacro(patch);  // or the body is dropped with the refused definition
    ResumeOuterBlock(patch);
    return added ? TOKEN_DOT_ENDM : 0;
}

bool AbandonMacro(PatchFile& patch) {
    Report(patch.error, MSG_MACRO_NOT_ENDED, patch.macroName.c_str());
    ResumeOuterBlock(patch);
    return false;
}

int32_t ExpandMacro(PatchFile& patch, int index) {
    SourceReader& reader = patch.reader;
    const size_t nameEnd = static_cast<size_t>(reader.TokenEndColumn() - 1);
    SetMessagePrefix(patch.error, reader.FileName(), reader.TokenLine(), reader.TokenEndColumn());
    reader.LineText();
    const std::string line = reader.TokenString();  // zero bytes included
    reader.SkipLine();
    if (index < 0 || index >= static_cast<int>(patch.macros.size())) return AppendMessage(patch.error, MSG_UNKNOWN_COMMAND, "");
    const size_t zero = line.find('\0', nameEnd);
    if (zero < line.find(';', nameEnd))
        return ReportAt(patch.error, reader.FileName(), reader.TokenLine(), static_cast<int>(zero) + 1, MSG_ZERO_BYTE);
    std::vector<std::string> parameters;
    if (!ParameterCutter(line, nameEnd).Cut(patch, parameters)) return 0;
    const int start = patch.block.Size();
    const int32_t result = CopyBody(patch, *patch.macros[static_cast<size_t>(index)],
                                    CallName(line, std::min(nameEnd, line.size())), parameters);
    if (result == 0) patch.block.Truncate(start);  // a call that fails appends nothing
    return result;
}
