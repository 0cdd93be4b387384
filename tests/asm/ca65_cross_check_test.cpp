// Every opcode row of the 65816 instruction set, assembled by a patch script
// and by cc65's ca65 (with ld65), must give the same bytes.
#include <gtest/gtest.h>

#include <cstdio>
#include <string>

#include "core/rom_slots.h"
#include "asm/ca65_run.h"
#include "support/test_support.h"
#include "trelvane.h"

namespace {

struct Instruction {
    const char* ours;
    const char* ca65;
};

// One line per opcode row, in the order of the instruction set's listing, then
// a few aliases. The branch rows aim at labels, which both assemblers write alike.
constexpr Instruction INSTRUCTIONS[] = {
    {"adc [12h+s]", "adc $12,s"}, {"adc [34h]", "adc $34"}, {"adc 1234h", "adc #$1234"},
    {"adc [5678h]", "adc a:$5678"}, {"adc [(56h+s)+y]", "adc ($56,s),y"},
    {"and 0F0Fh", "and #$0F0F"}, {"and [123456h+x]", "and f:$123456,x"},
    {"asl a", "asl a"},
    {"b1: bcc b1", "b1: bcc b1"}, {"bcs b2\nb2:", "bcs b2\nb2:"}, {"beq b1", "beq b1"},
    {"bmi b2", "bmi b2"}, {"bne b3\nnop\nb3:", "bne b3\nnop\nb3:"}, {"bpl b1", "bpl b1"},
    {"bra 9ABCh", "jmp $9ABC"}, {"bra b3", "bra b3"},
    {"brl b1", "brl b1"},
    {"cmp [12h]", "cmp $12"}, {"cmp 8000h", "cmp #$8000"}, {"cmp [2345h]", "cmp a:$2345"},
    {"cmp [7E2345h]", "cmp f:$7E2345"},
    {"cpx 0FFFFh", "cpx #$FFFF"}, {"cpx [0100h]", "cpx a:$0100"},
    {"cpy 7h", "cpy #$0007"},
    {"dec a", "dec a"}, {"dec [1F00h]", "dec a:$1F00"},
    {"eor 5555h", "eor #$5555"},
    {"inc a", "inc a"}, {"inc [0ABCh]", "inc a:$0ABC"}, {"inc [FEh+x]", "inc $FE,x"},
    {"jsl 808000h", "jsl $808000"},
    {"jsr 8123h", "jsr $8123"}, {"jsr [8200h+x]", "jsr ($8200,x)"},
    {"lda [01h+s]", "lda $01,s"}, {"lda [02h]", "lda $02"}, {"lda 5", "lda #$0005"},
    {"lda [0003h]", "lda a:$0003"}, {"lda [7F0004h]", "lda f:$7F0004"}, {"lda [05h+y]", "lda ($05),y"},
    {"lda [(06h+s)+y]", "lda ($06,s),y"}, {"lda [07h+x]", "lda $07,x"}, {"lda [0808h+y]", "lda a:$0808,y"},
    {"lda [0909h+x]", "lda a:$0909,x"}, {"lda [0A0A0Ah+x]", "lda f:$0A0A0A,x"},
    {"ldx 1000h", "ldx #$1000"}, {"ldx [2000h]", "ldx a:$2000"},
    {"ldy 3000h", "ldy #$3000"}, {"ldy [4000h]", "ldy a:$4000"},
    {"lsr a", "lsr a"}, {"lsr [0042h]", "lsr a:$0042"},
    {"ora 8001h", "ora #$8001"}, {"ora [8002h]", "ora a:$8002"},
    {"pea 0BEEFh", "pea $BEEF"},
    {"rep 30h", "rep #$30"}, {"sep 20h", "sep #$20"},
    {"ror [1234h]", "ror a:$1234"},
    {"sbc 1h", "sbc #$0001"}, {"sbc [FF00h]", "sbc a:$FF00"},
    {"sta [10h]", "sta $10"}, {"sta [2100h]", "sta a:$2100"}, {"sta [7E2000h]", "sta f:$7E2000"},
    {"sta [0300h+y]", "sta a:$0300,y"}, {"sta [0400h+x]", "sta a:$0400,x"},
    {"sta [7F0000h+x]", "sta f:$7F0000,x"},
    {"stx [4016h]", "stx a:$4016"}, {"sty [4017h]", "sty a:$4017"},
    {"stz [20h]", "stz $20"}, {"stz [420Ch]", "stz a:$420C"}, {"stz [0500h+x]", "stz a:$0500,x"},
    {"tsb [2105h]", "tsb a:$2105"},
    {"clc", "clc"}, {"dex", "dex"}, {"inx", "inx"}, {"iny", "iny"}, {"nop", "nop"}, {"pha", "pha"},
    {"phb", "phb"}, {"php", "php"}, {"phx", "phx"}, {"phy", "phy"}, {"pla", "pla"}, {"plb", "plb"},
    {"plp", "plp"}, {"plx", "plx"}, {"ply", "ply"}, {"rtl", "rtl"}, {"rts", "rts"}, {"sec", "sec"},
    {"sei", "sei"}, {"tax", "tax"}, {"tay", "tay"}, {"txa", "txa"}, {"tya", "tya"}, {"xba", "xba"},
    {"b4: blt b4", "b4: bcc b4"}, {"bge b4", "bcs b4"}, {"cpa [2345h]", "cmp a:$2345"}, {"rsl", "rtl"},
    {"swa", "xba"},
};

constexpr int kBlockAddress = 0x8000;

std::string Hex(const Bytes& bytes) {
    std::string text;
    char pair[4];
    for (size_t i = 0; i < bytes.size(); ++i) {
        std::snprintf(pair, sizeof pair, "%02X%c", bytes[i], i % 16 == 15 ? '\n' : ' ');
        text += pair;
    }
    return text;
}

// The instructions as ca65 source, 16-bit registers.
std::string Ca65Source() {
    std::string source = ".p816\n.a16\n.i16\n";
    for (const Instruction& instruction : INSTRUCTIONS) source += std::string(instruction.ca65) + "\n";
    return source;
}

// The bytes that a patch script makes of the instructions in a Super NES image.
Bytes AssembleWithPatchScript(const TempDir& dir, size_t length) {
    std::string script = ".ADDRESS 8000h\n";
    for (const Instruction& instruction : INSTRUCTIONS) script += std::string(instruction.ours) + "\n";
    WriteFile(dir / "rows.txt", script);
    WriteFile(dir / "game.smc", Bytes(512 + 0x10000, 0));
    const long handle = Trelvane_LoadROM((dir / "game.smc").c_str());
    if (!handle) {
        ADD_FAILURE() << Trelvane_GetLastError();
        return {};
    }
    EXPECT_EQ(Trelvane_PatchFile_Open((dir / "rows.txt").c_str()), 1) << Trelvane_GetLastError();
    EXPECT_EQ(Trelvane_PatchFile_Process(), 1) << Trelvane_GetLastError();
    Trelvane_PatchFile_Close();
    const unsigned char* block = CurrentRom().data + kBlockAddress;
    Bytes bytes(block, block + length);
    Trelvane_FreeROM(handle);
    return bytes;
}

TEST(Ca65CrossCheckTest, EveryOpcodeRowAssemblesAsCa65Does) {
    TempDir dir;
    Bytes expected = AssembleWithCa65(dir, Ca65Source());
    ASSERT_GT(expected.size(), 200u);
    Bytes ours = AssembleWithPatchScript(dir, expected.size());
    EXPECT_EQ(Hex(ours), Hex(expected));
}

}  // namespace
