// The look-ups that choose an opcode for a mnemonic and an operand template.
// Every row itself is checked against ca65 (ca65_cross_check_test.cpp).
#include <gtest/gtest.h>

#include <cstring>

#include "asm/instruction_set.h"
#include "asm/patch_lexicon.h"

namespace {

int Mnemonic(const char* name) {
    for (int index = 0; index < MNEMONIC_COUNT; ++index)
        if (std::strcmp(MNEMONIC_NAMES[index], name) == 0) return index;
    ADD_FAILURE() << "no mnemonic " << name;
    return -1;
}

TEST(InstructionSetTest, LookupsTakeTheLowestMatchingOpcode) {
    const InstructionSet& set = Instructions65816();
    const int lda = Mnemonic("lda");
    const struct {
        const char* what;
        int found, expected;
    } cases[] = {
        {"first lda", FirstOpcode(set, lda), 0xA3},
        {"first bra", FirstOpcode(set, Mnemonic("bra")), 0x4C},
        {"bra XXXXh", FindOpcode(set, Mnemonic("bra"), "XXXXh"), 0x4C},
        {"asl a", FindRegisterOpcode(set, Mnemonic("asl"), FIRST_REGISTER_MODE), 0x0A},
        {"lda a", FindRegisterOpcode(set, lda, FIRST_REGISTER_MODE), -1},
        {"lda [xxXXh+X]", FindOpcode(set, lda, "[xxXXh+X]"), 0xBD},  // letters in either case
        {"lda XXh", FindOpcode(set, lda, "XXh"), -1},
        {"sta [XXh+x]", FindOpcode(set, Mnemonic("sta"), "[XXh+x]"), -1},
        {"lda no pattern", FindOpcode(set, lda, nullptr), -1},
        {"mnemonic 0", FirstOpcode(set, 0), -1},
        {"mnemonic 111", FirstOpcode(set, 111), -1},
        {"mnemonic 300", FindOpcode(set, 300, ""), -1},
    };
    for (const auto& c : cases) EXPECT_EQ(c.found, c.expected) << c.what;
}

TEST(InstructionSetTest, AliasesMapOnlyInThe65816Set) {
    EXPECT_EQ(MapAlias(Instructions65816(), Mnemonic("blt")), Mnemonic("bcc"));
    EXPECT_EQ(MapAlias(Instructions65816(), Mnemonic("lda")), Mnemonic("lda"));
    EXPECT_EQ(MapAlias(NoInstructions(), Mnemonic("blt")), Mnemonic("blt"));
    for (int m = 0; m < MNEMONIC_COUNT; ++m) EXPECT_EQ(FirstOpcode(NoInstructions(), m), -1) << m;
}

}  // namespace
