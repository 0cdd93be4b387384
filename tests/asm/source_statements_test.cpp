// The statements of the common syntax, each assembled into a blank LoROM
// image at $808000 (image offset 0) and compared byte for byte.
#include <gtest/gtest.h>

#include <algorithm>

#include "source_run.h"

namespace {

struct Case {
    const char* source;
    const char* bytes;  // from image offset 0
};

void ExpectBytes(const Case& c) {
    const SourceRun run = AssembleText(std::string("lorom\norg $808000\n") + c.source + "\n");
    ASSERT_TRUE(run.ok) << c.source << "\n" << run.errors;
    const size_t count = (std::string(c.bytes).size() + 1) / 3;
    EXPECT_EQ(HexBytes(run.image, count + 1), std::string(c.bytes) + " 00") << c.source;
}

TEST(SourceStatementsTest, StatementsSeparatedByColons) {
    for (const Case& c : std::initializer_list<Case>{
             {"lda #$01 : sta $02", "A9 01 85 02"},
             {"nop : : nop", "EA EA"},
             {"{ : nop : }", "EA"},
             {"db ':', ' ' : nop", "3A 20 EA"},
             {"db \" : \"", "20 3A 20"},
         })
        ExpectBytes(c);
}

TEST(SourceStatementsTest, CommentsAndContinuations) {
    for (const Case& c : std::initializer_list<Case>{
             {"nop ; rts", "EA"},
             {"db ';', \";\" ; comment", "3B 3B"},
             {"db 1,\n2", "01 02"},
             {"db 1\\\n,2", "01 02"},
         })
        ExpectBytes(c);
}

TEST(SourceStatementsTest, Expressions) {
    for (const Case& c : std::initializer_list<Case>{
             {"db 2+3*4", "0E"},
             {"db (2+3)*4", "14"},
             {"db 7/2, 7%3, -7/2", "03 01 FD"},
             {"db $F0&$3C, $F0|$0F, $FF^$0F", "30 FF F0"},
             {"db 1<<4, $80>>3", "10 10"},
             {"dd ~0", "FF FF FF FF"},
             {"db -1, %1010, 'A'+1", "FF 0A 42"},
             {"dw $1234>>4", "23 01"},
         })
        ExpectBytes(c);
}

TEST(SourceStatementsTest, LabelsAndSublabels) {
    for (const Case& c : std::initializer_list<Case>{
             {"Main: dl Main, .end\n.end:", "00 80 80 06 80 80"},
             {"dw Later\nLater:", "02 80"},
             {"First:\n.a: db 1\nSecond:\n.a: dw .a, First_a", "01 01 80 00 80"},
             {"Top:\n.sub:\n..deep: dw Top_sub_deep", "00 80"},
             {"Ram = $7E0100\nlda Ram", "AF 00 01 7E"},
             {"Lo = $40\nlda Lo : lda.b Lo", "AF 40 00 00 A5 40"},
             {"Buf = $7F2000\nlda #Buf>>16 : lda #Buf&$FFFF", "A9 7F A9 00 20"},
             {"jsr Sub : jml Sub\nSub: rts", "20 07 80 5C 07 80 80 60"},
         })
        ExpectBytes(c);
}

TEST(SourceStatementsTest, PlusAndMinusLabels) {
    for (const Case& c : std::initializer_list<Case>{
             {"- : dex : bne -", "CA D0 FD"},
             {"-- dex\n- dey\nbne -\nbne --", "CA 88 D0 FD D0 FA"},
             {"bra +\nnop\n+ rts", "80 01 EA 60"},
             {"bra ++\n+ nop\n++ rts", "80 01 EA 60"},
             {"-\ndw +, -\n+", "04 80 00 80"},
         })
        ExpectBytes(c);
}

TEST(SourceStatementsTest, Defines) {
    for (const Case& c : std::initializer_list<Case>{
             {"!dp = $10\nlda (!dp),y", "B1 10"},
             {"!bank = $01\ndl !{bank}8000", "00 80 01"},
             {"!a = $05\n!b = !a\ndb !b", "05"},
             {"!push = \"pha : phx\"\n!push", "48 DA"},
             {"!t = \"x\"\ndb \"!t\\!\"", "78 21"},
             {"!v = 1\n!v = 2\ndb !v", "02"},
         })
        ExpectBytes(c);
}

TEST(SourceStatementsTest, Macros) {
    for (const Case& c : std::initializer_list<Case>{
             {"macro put(v, a)\nlda #<v>\nsta <a>\nendmacro\n%put($05, $0010)", "A9 05 8D 10 00"},
             {"!dp = $10\nmacro put(v, a)\nlda #<v>\nsta <a>\nendmacro\n%put(\"!dp\", $10)", "A9 10 85 10"},
             {"macro none()\nnop\nendmacro\n%none() : %none()", "EA EA"},
             {"macro inner(x)\ndb <x>\nendmacro\nmacro outer(y)\n%inner(<y>+1)\nendmacro\n%outer(4)", "05"},
             {"macro shift(v)\ndb <v><<1\nendmacro\n%shift(3)", "06"},
         })
        ExpectBytes(c);
}

TEST(SourceStatementsTest, Conditionals) {
    for (const Case& c : std::initializer_list<Case>{
             {"if 1\ndb 1\nelse\ndb 2\nendif", "01"},
             {"if 0\ndb 1\nelse\ndb 2\nendif", "02"},
             {"!mode = 2\nif !mode == 2 : db $FF : endif", "FF"},
             {"if 1 < 2 && 3 >= 3\ndb 1\nendif\nif 0 || 2 != 2\ndb 2\nendif", "01"},
             {"if 0\nif 1\ndb 1\nelse\ndb 2\nendif\nelse\ndb 3\nendif", "03"},
             {"if 0\ndb 1\nelseif 1\ndb 2\nelse\ndb 3\nendif", "02"},
             {"if -1\ndb 1\nendif\ndb 4", "04"},
             {"if 0\nmacro m()\ndb 1\nendmacro\n!x = 1\nendif\ndb 9", "09"},
         })
        ExpectBytes(c);
}

TEST(SourceStatementsTest, Data) {
    for (const Case& c : std::initializer_list<Case>{
             {"db \"Hi\",0,'!'+1", "48 69 00 22"},
             {"dw \"AB\"", "41 00 42 00"},
             {"dl $123456, 1", "56 34 12 01 00 00"},
             {"dd $12345678", "78 56 34 12"},
             {"db \"a\"\"b\"", "61 22 62"},
             {"db -128, 255", "80 FF"},
             {"Tbl: dw Tbl", "00 80"},
         })
        ExpectBytes(c);
}

TEST(SourceStatementsTest, FillPadAndWarnpc) {
    for (const Case& c : std::initializer_list<Case>{
             {"fillbyte $AB : fill 2", "AB AB"},
             {"db 1\npadbyte $CC : pad $808004", "01 CC CC CC"},
             {"db 1\npad $808000\ndb 2", "01 02"},
             {"db 1, 2\nwarnpc $808002", "01 02"},
         })
        ExpectBytes(c);
}

TEST(SourceStatementsTest, OrgMovesTheProgramCounter) {
    const SourceRun run = AssembleText("lorom\norg $808000\ndb 1\norg $818000\ndb 2\norg $00FFFF\ndb 3\n");
    ASSERT_TRUE(run.ok) << run.errors;
    EXPECT_EQ(run.image[0], 1);
    EXPECT_EQ(run.image[0x8000], 2);
    EXPECT_EQ(run.image[0x7FFF], 3);
}

TEST(SourceStatementsTest, CodeBeforeAnyOrgIsAssembledAt8000WithAWarning) {
    const SourceRun run = AssembleText("nop\n");
    ASSERT_TRUE(run.ok) << run.errors;
    EXPECT_EQ(run.image[0], 0xEA);
    EXPECT_EQ(run.warnings, "1:1: no org before the first write: assembling at $008000\n");
}

TEST(SourceStatementsTest, PrintWritesItsItemsOnThePassThatCounts) {
    const SourceRun run = AssembleText("lorom\norg $008053\nprint \"at \",pc,\" v=\",hex(10,4),\" \",bin(5,4),\" \",dec(Later)\nLater:\n");
    ASSERT_TRUE(run.ok) << run.errors;
    EXPECT_EQ(run.prints, std::vector<std::string>{"at 008053 v=000A 0101 32851"});
}

TEST(SourceStatementsTest, IncsrcAndIncbinFromTheIncludingFilesFolder) {
    TempDir dir;
    std::filesystem::create_directories(dir.path() / "sub");
    WriteFile(dir / "sub/part.asm", "db 7\nincbin \"data.bin\":2..5\nincbin data.bin:$E..0\n");
    Bytes data(16);
    for (size_t i = 0; i < data.size(); ++i) data[i] = static_cast<unsigned char>(i);
    WriteFile(dir / "sub/data.bin", data);
    const SourceRun run = AssembleText("lorom\norg $808000\nincsrc \"sub/part.asm\"\nincsrc sub/part.asm\n",
                                       Bytes(0x10000, 0), SnesMapping::LoRom, &dir);
    ASSERT_TRUE(run.ok) << run.errors;
    EXPECT_EQ(HexBytes(run.image, 13), "07 02 03 04 0E 0F 07 02 03 04 0E 0F 00");
}

TEST(SourceStatementsTest, TableEncodesStringsThroughTheToolkitsTable) {
    TempDir dir;
    WriteFile(dir / "game.tbl", "; Trelvane table\r\n\r\n[10]   \"A\"\r\n[11]   \"B\"\r\n[90]   \"<hero>\"\r\n"
                                "[FF]   terminal\r\n");
    const SourceRun run = AssembleText("lorom\norg $808000\ntable \"game.tbl\"\ndb \"AB<hero>\",'B'\n",
                                       Bytes(0x10000, 0), SnesMapping::LoRom, &dir);
    ASSERT_TRUE(run.ok) << run.errors;
    EXPECT_EQ(HexBytes(run.image, 5), "10 11 90 11 00");
}

// The same org in each mapping lands at the offset that mapping gives it; the source's mapping
// line applies when the caller gives none.
TEST(SourceStatementsTest, EachMappingPlacesTheBytes) {
    const struct {
        const char* source;
        size_t offset;
    } cases[] = {
        {"lorom\norg $018000\ndb $11", 0x8000},     {"lorom\norg $C08000\ndb $11", 0x200000},
        {"hirom\norg $C12345\ndb $11", 0x12345},    {"hirom\norg $018000\ndb $11", 0x18000},
        {"exlorom\norg $008000\ndb $11", 0x400000}, {"exhirom\norg $400000\ndb $11", 0x400000},
        {"exhirom\norg $C00010\ndb $11", 0x10},     {"sa1rom\norg $208000\ndb $11", 0x100000},
        {"sa1rom\norg $E00000\ndb $11", 0x200000},
    };
    for (const auto& c : cases) {
        const SourceRun run = AssembleText(std::string(c.source) + "\n", Bytes(0x800000, 0), std::nullopt);
        ASSERT_TRUE(run.ok) << c.source << "\n" << run.errors;
        EXPECT_EQ(run.image[c.offset], 0x11) << c.source;
        EXPECT_EQ(std::count(run.image.begin(), run.image.end(), 0x11), 1) << c.source;
    }
}

TEST(SourceStatementsTest, TheCallersMappingWinsOverTheSourcesLine) {
    const SourceRun run = AssembleText("lorom\norg $C08000\ndb $11\n", Bytes(0x10000, 0), SnesMapping::HiRom);
    ASSERT_TRUE(run.ok) << run.errors;
    EXPECT_EQ(run.image[0x8000], 0x11);
    EXPECT_EQ(run.warnings, "1:1: the source asks for LoROM; assembling as HiROM\n");
}

}  // namespace
