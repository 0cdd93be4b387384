#include "asm/block_compiler.h"

#include <array>
#include <cstring>
#include <map>
#include <vector>

#include "core/little_endian.h"
#include "asm/patch_lexicon.h"
#include "asm/patch_messages.h"

namespace {

// A branch reference resolves to a relative form, or to a plain value form (a jump or an
// immediate, never a memory form) of at least 2 bytes that receives the target's address.
bool TakesLabel(const AddressingMode& mode) {
    if (mode.kind == MODE_KIND_RELATIVE) return true;
    return mode.kind == MODE_KIND_VALUE && mode.size >= 2 && !std::strchr(mode.pattern, '[');
}

int FindLabelOpcode(const InstructionSet& set, int mnemonic, int size) {
    for (int opcode = 0; opcode < 256; ++opcode) {
        const AddressingMode& mode = ModeOf(set, opcode);
        if (set.opcodes[opcode].mnemonic == mnemonic && mode.size == size && TakesLabel(mode)) return opcode;
    }
    return -1;
}

const char* MnemonicName(int mnemonic) {
    return mnemonic >= 0 && mnemonic < MNEMONIC_COUNT ? MNEMONIC_NAMES[mnemonic] : "";
}

class BlockCompiler {
public:
    BlockCompiler(const CodeBlock& block, LabelTable& labels, const BlockPlace& place, const CpuDescription& cpu,
                  StatementError& error)
        : labels_(labels), entries_(block.Entries()), place_(place), cpu_(cpu), error_(error) {
        operandSizes_.fill(1);
        for (auto& sizes : labelOpcodes_) sizes.fill(UNKNOWN_OPCODE);
    }

    bool Compile() {
        PrepareSlots();
        if (!Layout()) return false;
        if (!EncodePass()) return false;
        if (widened_ && !EncodeFinal()) return false;
        return Place();
    }

private:
    // Numeric targets become relative to the block's bank; named slots are not yet placed.
    void PrepareSlots() {
        for (int slot = labels_.NumericIndex() + 1; slot < LABEL_SLOT_COUNT; ++slot)
            labels_.Value(slot) -= place_.address & 0xFFFF;
        for (int slot = 0; slot < labels_.LabelCount(); ++slot) labels_.Value(slot) = -1;
    }

    // Gives every label its offset in the block; every branch target must be a label of the block.
    bool Layout() {
        int32_t offset = 0;
        for (int i = 0; i < Count(); i = NextEntryIndex(entries_, i)) {
            const CodeEntry entry = entries_[static_cast<size_t>(i)];
            if (IsMacroParameterEntry(entry)) return Report(error_, MSG_UNEVALUATED_MACRO);
            if (IsLabelDefinition(entry)) labels_.Value(EntrySlot(entry)) = offset;
            else if (IsBranchReference(entry)) offset += 1 + operandSizes_[static_cast<size_t>(i)];
            else if (IsByteEntry(entry)) offset += 1;
        }
        for (int i = 0; i < Count(); i = NextEntryIndex(entries_, i)) {
            const CodeEntry entry = entries_[static_cast<size_t>(i)];
            if (!IsBranchReference(entry)) continue;
            const int slot = EntrySlot(entry);
            if (labels_.IsNumeric(slot) || (labels_.IsNamed(slot) && labels_.Value(slot) >= 0)) continue;
            return Report(error_, MSG_LABEL_UNDEFINED, labels_.Name(slot));
        }
        return true;
    }

    // Encodes every entry. A widened branch moves the labels behind it, and encoding goes on from
    // the first entry whose encoding that changes: the first earlier 8-bit branch that no longer
    // reaches its moved label, else the widened branch itself. Entries before that point would
    // encode exactly as before, so this gives the result of starting the pass again from the first
    // entry. Bytes of earlier 16-bit branches may be stale after a widening; EncodeFinal rewrites all.
    bool EncodePass() {
        output_.clear();
        shortBranches_.clear();
        widened_ = false;
        for (int i = 0; i < Count();) {
            const CodeEntry entry = entries_[static_cast<size_t>(i)];
            if (IsByteEntry(entry)) output_.push_back(static_cast<unsigned char>(entry));
            else if (IsPointerEntry(entry) && !WritePointer(i)) return false;
            else if (IsBranchReference(entry)) {
                positions_[static_cast<size_t>(i)] = static_cast<int32_t>(output_.size());
                const int result = EncodeBranch(i);
                if (result == BRANCH_FAILED) return false;
                if (result == BRANCH_WIDENED) {
                    i = ResumeAfterWidening(i);
                    continue;
                }
                if (operandSizes_[static_cast<size_t>(i)] == 1 && labels_.IsNamed(EntrySlot(entry)))
                    shortBranches_.push_back(i);
            }
            i = NextEntryIndex(entries_, i);
        }
        return true;
    }

    // The whole block once more with the final branch sizes, after any widening.
    bool EncodeFinal() { return EncodePass() && !widened_; }

    // The entry at which encoding goes on after the branch at index was widened.
    int ResumeAfterWidening(int index) {
        widened_ = true;
        const int32_t moved = positions_[static_cast<size_t>(index)];
        int resume = index;
        for (size_t k = 0; k < shortBranches_.size(); ++k) {
            const int i = shortBranches_[k];
            const int32_t target = labels_.Value(EntrySlot(entries_[static_cast<size_t>(i)]));
            const int32_t displacement = target - 2 - positions_[static_cast<size_t>(i)];
            if (target > moved && displacement > 127) {
                resume = i;
                shortBranches_.resize(k);
                break;
            }
        }
        output_.resize(static_cast<size_t>(positions_[static_cast<size_t>(resume)]));
        return resume;
    }

    // Notes the address of this point of the block for the pointer's location; the pointers are
    // written with the block, never without it.
    bool WritePointer(int i) {
        const int size = EntryLow(entries_[static_cast<size_t>(i)]);
        const uint32_t location = static_cast<uint32_t>(entries_[static_cast<size_t>(i) + 1]) |
                                  static_cast<uint32_t>(entries_[static_cast<size_t>(i) + 2]) << 16;
        const int bytes = size < 1 ? 1 : size > 4 ? 4 : size;
        const int32_t position = ImagePosition(location);
        if (!cpu_.Inside(position, bytes)) return Report(error_, MSG_OUTSIDE_IMAGE, location & 0xFFFFFF);
        const uint32_t value = static_cast<uint32_t>(place_.address) + static_cast<uint32_t>(output_.size());
        pointers_[i] = {position, value, bytes};
        return true;
    }

    enum { BRANCH_FAILED, BRANCH_ENCODED, BRANCH_WIDENED };

    int EncodeBranch(int i) {
        const CodeEntry entry = entries_[static_cast<size_t>(i)];
        const int slot = EntrySlot(entry), mnemonic = EntryLow(entry);
        const int size = operandSizes_[static_cast<size_t>(i)];
        const int32_t length = static_cast<int32_t>(output_.size());
        const int32_t target = labels_.Value(slot);
        const int32_t displacement = target - size - length - 1;
        if (displacement < -32768 || displacement > 32767) {
            Report(error_, MSG_TOO_FAR, labels_.Name(slot), target, MnemonicName(mnemonic), length + 2, displacement);
            return BRANCH_FAILED;
        }
        if (size == 1 && (displacement < -128 || displacement > 127)) return Widen(i);
        const InstructionSet& set = cpu_.Instructions();
        const int opcode = LabelOpcode(mnemonic, size);
        if (opcode < 0) {
            if (size < 3 && LabelOpcode(mnemonic, size + 1) >= 0) return Widen(i);
            if (size == 1 && LabelOpcode(mnemonic, 3) >= 0) return Widen(i);
            ReportNotImplemented(error_, MnemonicName(mnemonic), labels_.Name(slot));
            return BRANCH_FAILED;
        }
        // A value form takes the target's address in the block's bank; a relative form the distance.
        const uint32_t operand = ModeOf(set, opcode).kind == MODE_KIND_RELATIVE
                                     ? static_cast<uint32_t>(displacement)
                                     : static_cast<uint32_t>(place_.address) + static_cast<uint32_t>(target);
        output_.push_back(static_cast<unsigned char>(opcode));
        for (int b = 0; b < size; ++b) output_.push_back(static_cast<unsigned char>(operand >> (8 * b)));
        return BRANCH_ENCODED;
    }

    // FindLabelOpcode, remembered for the passes of this block.
    int LabelOpcode(int mnemonic, int size) {
        int16_t& known = labelOpcodes_[static_cast<size_t>(mnemonic & 0xFF)][static_cast<size_t>(size & 3)];
        if (known == UNKNOWN_OPCODE)
            known = static_cast<int16_t>(FindLabelOpcode(cpu_.Instructions(), mnemonic, size));
        return known;
    }

    // The branch grows by a byte and every label behind it moves.
    int Widen(int i) {
        const int32_t length = static_cast<int32_t>(output_.size());
        ++operandSizes_[static_cast<size_t>(i)];
        for (int slot = 0; slot < labels_.LabelCount(); ++slot)
            if (labels_.Value(slot) > length) ++labels_.Value(slot);
        return BRANCH_WIDENED;
    }

    // Copies the output into the image, within the block limit and the image.
    bool Place() {
        const int32_t length = static_cast<int32_t>(output_.size());
        if (length > place_.limit) {
            error_.SetRefusedBlock(output_);
            return Report(error_, MSG_EXCEEDS_SIZE, place_.address, length, place_.limit);
        }
        const int32_t position = ImagePosition(place_.address);
        if (!cpu_.Inside(position, length))
            return Report(error_, MSG_BLOCK_OUTSIDE_IMAGE, place_.address & 0xFFFFFF, length);
        std::copy(output_.begin(), output_.end(), cpu_.Memory() + position);
        for (const auto& [index, pointer] : pointers_)
            WriteLittleEndian(cpu_.Memory() + pointer.position, pointer.value, pointer.bytes);
        return true;
    }

    int Count() const { return static_cast<int>(entries_.size()); }

    LabelTable& labels_;
    std::span<const CodeEntry> entries_;
    const BlockPlace& place_;
    const CpuDescription& cpu_;
    StatementError& error_;
    std::array<int8_t, MAX_CODE_ENTRIES> operandSizes_{};
    std::array<int32_t, MAX_CODE_ENTRIES> positions_{};  // output length at each branch when last encoded
    std::vector<int> shortBranches_;  // encoded 8-bit branches to labels, in entry order
    std::vector<unsigned char> output_;
    struct PointerWrite {
        int32_t position;
        uint32_t value;
        int bytes;
    };
    std::map<int, PointerWrite> pointers_;  // by entry index, as last encoded; in block order
    bool widened_ = false;
    static constexpr int16_t UNKNOWN_OPCODE = -2;
    std::array<std::array<int16_t, 4>, 256> labelOpcodes_;  // by mnemonic and operand size
};

}  // namespace

bool CompileBlock(CodeBlock& block, LabelTable& labels, const BlockPlace& place, const CpuDescription& cpu,
                  StatementError& error) {
    const bool compiled = block.Empty() || BlockCompiler(block, labels, place, cpu, error).Compile();
    block.Clear();
    labels.Reset();
    return compiled;
}
