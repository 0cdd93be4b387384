// Every one of the 256 opcodes of the 65816, written in the community's common
// syntax and assembled by the asm front end, must give the bytes that cc65's
// ca65 (with ld65) gives for the same instruction; so must the width rules.
#include <gtest/gtest.h>

#include <set>
#include <string>

#include "asm/ca65_run.h"
#include "source_run.h"

namespace {

struct Row {
    int opcode;        // the opcode the line assembles to
    const char* ours;  // common syntax
    const char* ca65;  // ca65 syntax (in 8-bit register mode)
};

// One line per opcode; branch rows aim at labels, a few mnemonics and index letters in capitals.
constexpr Row OPCODE_ROWS[] = {
    {0x00, "brk #$12", ".byte $00,$12"},
    {0x01, "ora ($01,x)", "ora ($01,x)"},
    {0x02, "cop #$12", "cop $12"},
    {0x03, "ORA $03,S", "ora $03,s"},
    {0x04, "tsb $04", "tsb z:$04"},
    {0x05, "ora $05", "ora z:$05"},
    {0x06, "asl $06", "asl z:$06"},
    {0x07, "ora [$07]", "ora [$07]"},
    {0x08, "php", "php"},
    {0x09, "ora #$09", "ora #$09"},
    {0x0A, "ASL A", "asl a"},
    {0x0B, "phd", "phd"},
    {0x0C, "tsb $0C34", "tsb a:$0C34"},
    {0x0D, "ora $0D34", "ora a:$0D34"},
    {0x0E, "asl $0E34", "asl a:$0E34"},
    {0x0F, "ora $0F3456", "ora f:$0F3456"},
    {0x10, "L10: bpl L10", "L10: bpl L10"},
    {0x11, "ORA ($11),Y", "ora ($11),y"},
    {0x12, "ora ($12)", "ora ($12)"},
    {0x13, "ora ($13,S),y", "ora ($13,s),y"},
    {0x14, "trb $14", "trb z:$14"},
    {0x15, "ora $15,x", "ora z:$15,x"},
    {0x16, "asl $16,x", "asl z:$16,x"},
    {0x17, "ora [$17],y", "ora [$17],y"},
    {0x18, "CLC", "clc"},
    {0x19, "ora $1934,y", "ora a:$1934,y"},
    {0x1A, "inc a", "inc a"},
    {0x1B, "tcs", "tcs"},
    {0x1C, "trb $1C34", "trb a:$1C34"},
    {0x1D, "ora $1D34,x", "ora a:$1D34,x"},
    {0x1E, "asl $1E34,x", "asl a:$1E34,x"},
    {0x1F, "ORA $1F3456,X", "ora f:$1F3456,x"},
    {0x20, "jsr $2034", "jsr $2034"},
    {0x21, "and ($21,x)", "and ($21,x)"},
    {0x22, "jsl $223456", "jsl $223456"},
    {0x23, "and $23,s", "and $23,s"},
    {0x24, "bit $24", "bit z:$24"},
    {0x25, "and $25", "and z:$25"},
    {0x26, "ROL $26", "rol z:$26"},
    {0x27, "and [$27]", "and [$27]"},
    {0x28, "plp", "plp"},
    {0x29, "and #$29", "and #$29"},
    {0x2A, "rol a", "rol a"},
    {0x2B, "pld", "pld"},
    {0x2C, "bit $2C34", "bit a:$2C34"},
    {0x2D, "AND $2D34", "and a:$2D34"},
    {0x2E, "rol $2E34", "rol a:$2E34"},
    {0x2F, "and $2F3456", "and f:$2F3456"},
    {0x30, "L30: bmi L30", "L30: bmi L30"},
    {0x31, "and ($31),y", "and ($31),y"},
    {0x32, "and ($32)", "and ($32)"},
    {0x33, "and ($33,S),y", "and ($33,s),y"},
    {0x34, "BIT $34,X", "bit z:$34,x"},
    {0x35, "and $35,x", "and z:$35,x"},
    {0x36, "rol $36,x", "rol z:$36,x"},
    {0x37, "and [$37],y", "and [$37],y"},
    {0x38, "sec", "sec"},
    {0x39, "and $3934,y", "and a:$3934,y"},
    {0x3A, "dec a", "dec a"},
    {0x3B, "TSC", "tsc"},
    {0x3C, "bit $3C34,x", "bit a:$3C34,x"},
    {0x3D, "and $3D34,x", "and a:$3D34,x"},
    {0x3E, "rol $3E34,x", "rol a:$3E34,x"},
    {0x3F, "and $3F3456,x", "and f:$3F3456,x"},
    {0x40, "rti", "rti"},
    {0x41, "eor ($41,x)", "eor ($41,x)"},
    {0x42, "wdm #$12", ".byte $42,$12"},
    {0x43, "eor $43,s", "eor $43,s"},
    {0x44, "mvp $7F,$7E", "mvp #$7E,#$7F"},
    {0x45, "eor $45", "eor z:$45"},
    {0x46, "lsr $46", "lsr z:$46"},
    {0x47, "eor [$47]", "eor [$47]"},
    {0x48, "pha", "pha"},
    {0x49, "eor #$49", "eor #$49"},
    {0x4A, "lsr a", "lsr a"},
    {0x4B, "phk", "phk"},
    {0x4C, "jmp $4C34", "jmp $4C34"},
    {0x4D, "eor $4D34", "eor a:$4D34"},
    {0x4E, "lsr $4E34", "lsr a:$4E34"},
    {0x4F, "eor $4F3456", "eor f:$4F3456"},
    {0x50, "L50: bvc L50", "L50: bvc L50"},
    {0x51, "eor ($51),y", "eor ($51),y"},
    {0x52, "eor ($52)", "eor ($52)"},
    {0x53, "eor ($53,S),y", "eor ($53,s),y"},
    {0x54, "mvn $7F,$7E", "mvn #$7E,#$7F"},
    {0x55, "eor $55,x", "eor z:$55,x"},
    {0x56, "lsr $56,x", "lsr z:$56,x"},
    {0x57, "EOR [$57],Y", "eor [$57],y"},
    {0x58, "cli", "cli"},
    {0x59, "eor $5934,y", "eor a:$5934,y"},
    {0x5A, "phy", "phy"},
    {0x5B, "tcd", "tcd"},
    {0x5C, "jml $5C3456", "jml $5C3456"},
    {0x5D, "eor $5D34,x", "eor a:$5D34,x"},
    {0x5E, "LSR $5E34,X", "lsr a:$5E34,x"},
    {0x5F, "eor $5F3456,x", "eor f:$5F3456,x"},
    {0x60, "rts", "rts"},
    {0x61, "adc ($61,x)", "adc ($61,x)"},
    {0x62, "per L62\nnop\nL62:", "per L62\nnop\nL62:"},
    {0x63, "adc $63,s", "adc $63,s"},
    {0x64, "stz $64", "stz z:$64"},
    {0x65, "ADC $65", "adc z:$65"},
    {0x66, "ror $66", "ror z:$66"},
    {0x67, "adc [$67]", "adc [$67]"},
    {0x68, "pla", "pla"},
    {0x69, "adc #$69", "adc #$69"},
    {0x6A, "ror a", "ror a"},
    {0x6B, "rtl", "rtl"},
    {0x6C, "JMP ($6C34)", "jmp ($6C34)"},
    {0x6D, "adc $6D34", "adc a:$6D34"},
    {0x6E, "ror $6E34", "ror a:$6E34"},
    {0x6F, "adc $6F3456", "adc f:$6F3456"},
    {0x70, "L70: bvs L70", "L70: bvs L70"},
    {0x71, "adc ($71),y", "adc ($71),y"},
    {0x72, "adc ($72)", "adc ($72)"},
    {0x73, "ADC ($73,S),Y", "adc ($73,s),y"},
    {0x74, "stz $74,x", "stz z:$74,x"},
    {0x75, "adc $75,x", "adc z:$75,x"},
    {0x76, "ror $76,x", "ror z:$76,x"},
    {0x77, "adc [$77],y", "adc [$77],y"},
    {0x78, "sei", "sei"},
    {0x79, "adc $7934,y", "adc a:$7934,y"},
    {0x7A, "PLY", "ply"},
    {0x7B, "tdc", "tdc"},
    {0x7C, "jmp ($7C34,x)", "jmp ($7C34,x)"},
    {0x7D, "adc $7D34,x", "adc a:$7D34,x"},
    {0x7E, "ror $7E34,x", "ror a:$7E34,x"},
    {0x7F, "adc $7F3456,x", "adc f:$7F3456,x"},
    {0x80, "bra L80\nnop\nL80:", "bra L80\nnop\nL80:"},
    {0x81, "STA ($81,X)", "sta ($81,x)"},
    {0x82, "brl L82\nnop\nL82:", "brl L82\nnop\nL82:"},
    {0x83, "sta $83,s", "sta $83,s"},
    {0x84, "sty $84", "sty z:$84"},
    {0x85, "sta $85", "sta z:$85"},
    {0x86, "stx $86", "stx z:$86"},
    {0x87, "sta [$87]", "sta [$87]"},
    {0x88, "DEY", "dey"},
    {0x89, "bit #$89", "bit #$89"},
    {0x8A, "txa", "txa"},
    {0x8B, "phb", "phb"},
    {0x8C, "sty $8C34", "sty a:$8C34"},
    {0x8D, "sta $8D34", "sta a:$8D34"},
    {0x8E, "stx $8E34", "stx a:$8E34"},
    {0x8F, "STA $8F3456", "sta f:$8F3456"},
    {0x90, "L90: bcc L90", "L90: bcc L90"},
    {0x91, "sta ($91),y", "sta ($91),y"},
    {0x92, "sta ($92)", "sta ($92)"},
    {0x93, "sta ($93,S),y", "sta ($93,s),y"},
    {0x94, "sty $94,x", "sty z:$94,x"},
    {0x95, "sta $95,x", "sta z:$95,x"},
    {0x96, "STX $96,Y", "stx z:$96,y"},
    {0x97, "sta [$97],y", "sta [$97],y"},
    {0x98, "tya", "tya"},
    {0x99, "sta $9934,y", "sta a:$9934,y"},
    {0x9A, "txs", "txs"},
    {0x9B, "txy", "txy"},
    {0x9C, "stz $9C34", "stz a:$9C34"},
    {0x9D, "STA $9D34,X", "sta a:$9D34,x"},
    {0x9E, "stz $9E34,x", "stz a:$9E34,x"},
    {0x9F, "sta $9F3456,x", "sta f:$9F3456,x"},
    {0xA0, "ldy #$A0", "ldy #$A0"},
    {0xA1, "lda ($A1,x)", "lda ($A1,x)"},
    {0xA2, "ldx #$A2", "ldx #$A2"},
    {0xA3, "lda $A3,s", "lda $A3,s"},
    {0xA4, "LDY $A4", "ldy z:$A4"},
    {0xA5, "lda $A5", "lda z:$A5"},
    {0xA6, "ldx $A6", "ldx z:$A6"},
    {0xA7, "lda [$A7]", "lda [$A7]"},
    {0xA8, "tay", "tay"},
    {0xA9, "lda #$A9", "lda #$A9"},
    {0xAA, "tax", "tax"},
    {0xAB, "PLB", "plb"},
    {0xAC, "ldy $AC34", "ldy a:$AC34"},
    {0xAD, "lda $AD34", "lda a:$AD34"},
    {0xAE, "ldx $AE34", "ldx a:$AE34"},
    {0xAF, "lda $AF3456", "lda f:$AF3456"},
    {0xB0, "LB0: bcs LB0", "LB0: bcs LB0"},
    {0xB1, "lda ($B1),y", "lda ($B1),y"},
    {0xB2, "LDA ($B2)", "lda ($B2)"},
    {0xB3, "lda ($B3,S),y", "lda ($B3,s),y"},
    {0xB4, "ldy $B4,x", "ldy z:$B4,x"},
    {0xB5, "lda $B5,x", "lda z:$B5,x"},
    {0xB6, "ldx $B6,Y", "ldx z:$B6,y"},
    {0xB7, "lda [$B7],y", "lda [$B7],y"},
    {0xB8, "clv", "clv"},
    {0xB9, "LDA $B934,Y", "lda a:$B934,y"},
    {0xBA, "tsx", "tsx"},
    {0xBB, "tyx", "tyx"},
    {0xBC, "ldy $BC34,x", "ldy a:$BC34,x"},
    {0xBD, "lda $BD34,x", "lda a:$BD34,x"},
    {0xBE, "ldx $BE34,y", "ldx a:$BE34,y"},
    {0xBF, "lda $BF3456,x", "lda f:$BF3456,x"},
    {0xC0, "cpy #$C0", "cpy #$C0"},
    {0xC1, "cmp ($C1,x)", "cmp ($C1,x)"},
    {0xC2, "rep #$30", "rep #$30"},
    {0xC3, "cmp $C3,s", "cmp $C3,s"},
    {0xC4, "cpy $C4", "cpy z:$C4"},
    {0xC5, "cmp $C5", "cmp z:$C5"},
    {0xC6, "dec $C6", "dec z:$C6"},
    {0xC7, "CMP [$C7]", "cmp [$C7]"},
    {0xC8, "iny", "iny"},
    {0xC9, "cmp #$C9", "cmp #$C9"},
    {0xCA, "dex", "dex"},
    {0xCB, "wai", "wai"},
    {0xCC, "cpy $CC34", "cpy a:$CC34"},
    {0xCD, "cmp $CD34", "cmp a:$CD34"},
    {0xCE, "DEC $CE34", "dec a:$CE34"},
    {0xCF, "cmp $CF3456", "cmp f:$CF3456"},
    {0xD0, "LD0: bne LD0", "LD0: bne LD0"},
    {0xD1, "cmp ($D1),y", "cmp ($D1),y"},
    {0xD2, "cmp ($D2)", "cmp ($D2)"},
    {0xD3, "cmp ($D3,S),y", "cmp ($D3,s),y"},
    {0xD4, "pei ($D4)", "pei ($D4)"},
    {0xD5, "CMP $D5,X", "cmp z:$D5,x"},
    {0xD6, "dec $D6,x", "dec z:$D6,x"},
    {0xD7, "cmp [$D7],y", "cmp [$D7],y"},
    {0xD8, "cld", "cld"},
    {0xD9, "cmp $D934,y", "cmp a:$D934,y"},
    {0xDA, "phx", "phx"},
    {0xDB, "stp", "stp"},
    {0xDC, "JML [$DC34]", "jml [$DC34]"},
    {0xDD, "cmp $DD34,x", "cmp a:$DD34,x"},
    {0xDE, "dec $DE34,x", "dec a:$DE34,x"},
    {0xDF, "cmp $DF3456,x", "cmp f:$DF3456,x"},
    {0xE0, "cpx #$E0", "cpx #$E0"},
    {0xE1, "sbc ($E1,x)", "sbc ($E1,x)"},
    {0xE2, "sep #$30", "sep #$30"},
    {0xE3, "SBC $E3,S", "sbc $E3,s"},
    {0xE4, "cpx $E4", "cpx z:$E4"},
    {0xE5, "sbc $E5", "sbc z:$E5"},
    {0xE6, "inc $E6", "inc z:$E6"},
    {0xE7, "sbc [$E7]", "sbc [$E7]"},
    {0xE8, "inx", "inx"},
    {0xE9, "sbc #$E9", "sbc #$E9"},
    {0xEA, "NOP", "nop"},
    {0xEB, "xba", "xba"},
    {0xEC, "cpx $EC34", "cpx a:$EC34"},
    {0xED, "sbc $ED34", "sbc a:$ED34"},
    {0xEE, "inc $EE34", "inc a:$EE34"},
    {0xEF, "sbc $EF3456", "sbc f:$EF3456"},
    {0xF0, "LF0: beq LF0", "LF0: beq LF0"},
    {0xF1, "SBC ($F1),Y", "sbc ($F1),y"},
    {0xF2, "sbc ($F2)", "sbc ($F2)"},
    {0xF3, "sbc ($F3,S),y", "sbc ($F3,s),y"},
    {0xF4, "pea $F434", "pea $F434"},
    {0xF5, "sbc $F5,x", "sbc z:$F5,x"},
    {0xF6, "inc $F6,x", "inc z:$F6,x"},
    {0xF7, "sbc [$F7],y", "sbc [$F7],y"},
    {0xF8, "SED", "sed"},
    {0xF9, "sbc $F934,y", "sbc a:$F934,y"},
    {0xFA, "plx", "plx"},
    {0xFB, "xce", "xce"},
    {0xFC, "jsr ($FC34,x)", "jsr ($FC34,x)"},
    {0xFD, "sbc $FD34,x", "sbc a:$FD34,x"},
    {0xFE, "inc $FE34,x", "inc a:$FE34,x"},
    {0xFF, "SBC $FF3456,X", "sbc f:$FF3456,x"},
};

// The width rules: digits written, suffixes, and the next wider form where no narrower exists.
constexpr Row WIDTH_ROWS[] = {
    {0xAD, "lda $0012", "lda a:$0012"},
    {0xAF, "lda $000012", "lda f:$000012"},
    {0xA9, "lda.w #5", ".a16\nlda #5\n.a8"},
    {0xA9, "lda #$000F", ".a16\nlda #$000F\n.a8"},
    {0xA2, "ldx #300", ".i16\nldx #300\n.i8"},
    {0xA9, "lda #-1", "lda #$FF"},
    {0xA9, "lda #%111111111", ".a16\nlda #$01FF\n.a8"},
    {0xBF, "lda.l $12,x", "lda f:$000012,x"},
    {0xA5, "lda.b $12", "lda z:$12"},
    {0x4C, "jmp $12", "jmp a:$0012"},
    {0xB9, "lda $12,y", "lda a:$0012,y"},
    {0x22, "jsl $12", "jsl f:$000012"},
    {0xAD, "lda $10+$0100", "lda a:$0110"},
    {0xB2, "lda ($20+4)", "lda ($24)"},
    {0xA5, "lda ($20)+4", "lda z:$24"},
    {0x54, "mvn $01,$02", "mvn #$02,#$01"},
};

std::string JoinLines(const Row* rows, size_t count, bool ca65) {
    std::string text;
    for (size_t i = 0; i < count; ++i) text += std::string(ca65 ? rows[i].ca65 : rows[i].ours) + "\n";
    return text;
}

void ExpectSameAsCa65(const Row* rows, size_t count) {
    TempDir dir;
    const Bytes expected = AssembleWithCa65(dir, ".p816\n.a8\n.i8\n" + JoinLines(rows, count, true));
    ASSERT_FALSE(expected.empty());
    const SourceRun ours = AssembleText("lorom\norg $808000\n" + JoinLines(rows, count, false));
    ASSERT_TRUE(ours.ok) << ours.errors;
    EXPECT_EQ(HexBytes(ours.image, expected.size()), HexBytes(expected, expected.size()));
    EXPECT_EQ(ours.image[expected.size()], 0) << "more bytes than ca65 wrote";
}

TEST(CommonSyntaxCrossCheckTest, TheRowsCoverEveryOpcodeOnce) {
    std::set<int> opcodes;
    for (const Row& row : OPCODE_ROWS) EXPECT_TRUE(opcodes.insert(row.opcode).second) << row.opcode;
    EXPECT_EQ(opcodes.size(), 256u);
}

TEST(CommonSyntaxCrossCheckTest, EveryOpcodeAssemblesAsCa65Does) {
    ExpectSameAsCa65(OPCODE_ROWS, std::size(OPCODE_ROWS));
}

TEST(CommonSyntaxCrossCheckTest, EachRowStartsWithItsOpcode) {
    for (const Row& row : OPCODE_ROWS) {
        const SourceRun run = AssembleText("lorom\norg $808000\n" + std::string(row.ours) + "\n");
        ASSERT_TRUE(run.ok) << row.ours << "\n" << run.errors;
        EXPECT_EQ(run.image[0], row.opcode) << row.ours;
    }
}

TEST(CommonSyntaxCrossCheckTest, WidthRulesAssembleAsCa65Does) {
    ExpectSameAsCa65(WIDTH_ROWS, std::size(WIDTH_ROWS));
    for (const Row& row : WIDTH_ROWS) {
        const SourceRun run = AssembleText("lorom\norg $808000\n" + std::string(row.ours) + "\n");
        EXPECT_EQ(run.image[0], row.opcode) << row.ours;
    }
}

}  // namespace
