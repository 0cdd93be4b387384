// What the common-syntax assembler refuses, with the line, column and message
// of each refusal; a refused source changes no byte of the image.
#include <gtest/gtest.h>

#include <algorithm>

#include "source_run.h"

namespace {

struct Case {
    const char* source;  // assembled after "lorom" and "org $808000" (lines 1 and 2)
    const char* errors;
};

void ExpectErrors(const Case& c) {
    const SourceRun run = AssembleText(std::string("lorom\norg $808000\n") + c.source + "\n");
    EXPECT_FALSE(run.ok) << c.source;
    EXPECT_EQ(run.errors, c.errors) << c.source;
}

TEST(SourceErrorsTest, ValuesThatDoNotFitTheirWidthAreNeverCut) {
    for (const Case& c : std::initializer_list<Case>{
             {"lda.b #$1234", "3:1: #$1234 does not fit an 8-bit immediate\n"},
             {"lda #$12345", "3:1: #$12345 does not fit a 16-bit immediate\n"},
             {"lda.l #5", "3:1: a .l suffix does not apply to an immediate\n"},
             {"lda.b $0123", "3:1: $0123 ($123) does not fit the direct-page operand of lda\n"},
             {"rep #$0030", "3:1: rep takes an 8-bit immediate; #$0030 is written with 2 bytes\n"},
             {"db 256", "3:1: 256 ($100) does not fit 8 bits\n"},
             {"dw $12345", "3:1: $12345 ($12345) does not fit 16 bits\n"},
             {"mvn $7F0000,$7E", "3:1: bank $7F0000 of mvn does not fit 8 bits\n"},
         })
        ExpectErrors(c);
}

TEST(SourceErrorsTest, FormsAMnemonicDoesNotHave) {
    for (const Case& c : std::initializer_list<Case>{
             {"jmp $123456", "3:1: jmp has no long form\n"},
             {"lda $123456,y", "3:1: lda has no long,y form\n"},
             {"jml.w $1234", "3:1: jml has no absolute form\n"},
             {"sta #$12", "3:1: sta has no immediate form\n"},
             {"lda ($1234),y", "3:1: $1234 does not fit the (dp),y operand of lda\n"},
             {"nop.w", "3:1: a width suffix does not apply to nop without an operand\n"},
             {"lda.d $12", "3:1: unknown width suffix '.d' (write .b, .w or .l)\n"},
             {"lda", "3:1: lda needs an operand\n"},
         })
        ExpectErrors(c);
}

TEST(SourceErrorsTest, BranchesOutOfReach) {
    const SourceRun run = AssembleText("lorom\norg $808000\nloop:\nfill 210\nnop : bne loop\n");
    EXPECT_FALSE(run.ok);
    EXPECT_EQ(run.errors, "5:7: branch to loop is 213 bytes away; bne reaches -128 to +127\n");
    const SourceRun forward = AssembleText("lorom\norg $808000\nbra far\nfill 128\nfar:\n");
    EXPECT_EQ(forward.errors, "3:1: branch to far is 128 bytes away; bra reaches -128 to +127\n");
}

TEST(SourceErrorsTest, LabelsDefinesAndMacros) {
    for (const Case& c : std::initializer_list<Case>{
             {"lda Missing", "3:1: label Missing is not defined\n"},
             {"A: nop\nA: nop", "4:1: label A is already defined\n"},
             {"db !nothing", "3:1: !nothing is not defined\n"},
             {"%nothing()", "3:1: macro nothing is not defined\n"},
             {"macro m(a)\nendmacro\n%m(1, 2)", "5:1: macro m takes 1 arguments, not 2\n"},
             {"macro m()\nnop", "5:1: macro m has no endmacro\n"},
             {"macro m()\nendmacro\nmacro m()\nendmacro", "6:1: macro m is already defined\n"},
             {"bne -", "3:1: no - label precedes this line\n"},
             {"!a += 1", "3:1: the define form += is not supported\n"},
         })
        ExpectErrors(c);
}

TEST(SourceErrorsTest, ConditionalsAndStatements) {
    for (const Case& c : std::initializer_list<Case>{
             {"if 1", "4:1: if without endif\n"},
             {"endif", "3:1: endif without if\n"},
             {"if 1\nelse\nelse\nendif", "5:1: else after else\n"},
             {"frobnicate 1", "3:1: unknown statement 'frobnicate'\n"},
             {"freespace ram", "3:1: freespace is not supported by this assembler\n"},
             {"namespace foo", "3:1: namespace is not supported by this assembler\n"},
             {"db 0x12", "3:1: '0x12' is not a number (write $ for hexadecimal)\n"},
             {"db $1G", "3:1: 'G' is no digit of a base-16 number\n"},
             {"db 1/0", "3:1: division by zero\n"},
             {"db 'ab'", "3:1: a character literal holds one character\n"},
             {"nop : frob", "3:7: unknown statement 'frob'\n"},
         })
        ExpectErrors(c);
}

TEST(SourceErrorsTest, PlacementOutsideTheImageOrTheMapping) {
    for (const Case& c : std::initializer_list<Case>{
             {"org $7E0000\ndb 1", "4:1: $7E0000 holds no image byte in the LoROM mapping\n"},
             {"org $008000-1\ndb 1", "4:1: $007FFF holds no image byte in the LoROM mapping\n"},
             {"org $82FFFF\ndb 1,2", "4:1: 2 bytes at $82FFFF cross into bank $83\n"},
             {"org $828000\ndb 1", "4:1: $828000 (image offset $10000) lies beyond the end of the image ($10000 bytes)\n"},
             {"db 1,2\nwarnpc $808001", "4:1: the code has reached $808002, past the warnpc limit $808001\n"},
             {"org $1000000", "3:1: org $1000000 is outside $000000-$FFFFFF\n"},
         })
        ExpectErrors(c);
}

// The hundredth error ends the pass, so that a macro that calls itself more
// than once fails at once instead of running out its ten million lines.
TEST(SourceErrorsTest, AHundredErrorsStopTheSource) {
    std::string source, expected;
    for (int line = 3; line < 153; ++line) source += "frob\n";
    for (int line = 3; line < 103; ++line) expected += std::to_string(line) + ":1: unknown statement 'frob'\n";
    expected += "102:1: too many errors: the rest is not assembled\n";
    EXPECT_EQ(AssembleText("lorom\norg $808000\n" + source).errors, expected);

    const SourceRun bomb = AssembleText("lorom\norg $808000\nmacro m()\nfrob\n%m()\n%m()\nendmacro\n%m()\n");
    EXPECT_EQ(std::count(bomb.errors.begin(), bomb.errors.end(), '\n'), 101);
    EXPECT_TRUE(bomb.errors.ends_with(": too many errors: the rest is not assembled\n")) << bomb.errors;
}

TEST(SourceErrorsTest, AFileThatCannotBeRead) {
    TempDir dir;
    const SourceRun run = AssembleText("lorom\norg $808000\nincbin \"none.bin\"\n", Bytes(0x10000, 0),
                                       SnesMapping::LoRom, &dir);
    EXPECT_EQ(run.errors, "3:1: cannot read " + (dir / "none.bin") + "\n");
}

}  // namespace
