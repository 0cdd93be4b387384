// Statements of patch scripts: their kinds, effects and exact messages.
#include <gtest/gtest.h>

#include "asm/patch_lexicon.h"
#include "asm/script_run.h"

namespace {

using Errors = std::vector<std::string>;

TEST(StatementsTest, KindsOfEachStatement) {
    const struct {
        const char* text;
        std::vector<int> kinds;
    } cases[] = {
        {"; only a comment\n\n", {TOKEN_END}},
        {".BYTE 1 .WORD 2", {STATEMENT_DATA, STATEMENT_DATA, TOKEN_END}},
        {"here: nop", {STATEMENT_LABEL, 48, TOKEN_END}},
        {"blt 8010h cpa 5", {4, 22, TOKEN_END}},  // aliases report the canonical mnemonic
        {"bra there\nthere:", {STATEMENT_LABEL, STATEMENT_LABEL, TOKEN_END}},
        {"mac .MACRO lda ?0 .ENDM _mac 5", {TOKEN_DOT_MACRO, TOKEN_UNDERSCORE_NAME, TOKEN_DOT_ENDM, TOKEN_UNDERSCORE_NAME,
                                        TOKEN_END}},
        {".PATCH 10h: 01\n.POINTER 2 @ 10h .ADDRESS 8000h", {TOKEN_DOT_PATCH, TOKEN_DOT_POINTER, TOKEN_DOT_ADDRESS,
                                                             TOKEN_END}},
        {"$v 10h k .EQL 5", {TOKEN_VARIABLE, TOKEN_VARIABLE, TOKEN_END}},
        {".ASSUME dbr: 7E0000h .BYTE 1", {STATEMENT_DATA, TOKEN_END}},  // .ASSUME runs on to the next
    };
    for (const auto& c : cases) {
        std::vector<int> kinds = c.kinds;
        kinds.insert(kinds.begin(), TOKEN_DOT_ADDRESS);
        EXPECT_EQ(RunScript(std::string(".ADDRESS 8000h\n") + c.text).kinds, kinds) << c.text;
    }
}

TEST(StatementsTest, FailureMessages) {
    const struct {
        const char* text;
        Errors errors;
    } cases[] = {
        {".BYTE 1,\nlda 5", {"t.asm:2,1:Expected Byte value, found: lda", "t.asm:2,5:Unknown command: 5"}},
        {"$count 12", {"t.asm:1,8:Expected memory location, found: 12"}},
        {"foo .EQL 1000000h", {"t.asm:1,10:1000000h does not fit into 24 bits."}},
        {"foo .EQL 5\nfoo .EQL 6", {"t.asm:2,1:Variable foo already defined.", "t.asm:2,5:Unknown command: .EQL",
                                    "t.asm:2,10:Unknown command: 6"}},
        {".ADDRESS 0h loop: loop:", {"t.asm:1,23:Label loop already defined."}},
        {"foo bar", {"t.asm:1,5:Expected .MACRO, found: bar"}},
        {".CHARSET", {"t.asm:1,1:Unknown command: .CHARSET"}},
        {".string", {"t.asm:1,1:Unknown command: .string"}},
        {".FOO", {"t.asm:1,1:Unknown command: .FOO"}},
        {"\"name.asm\"", {"t.asm:1,1:Unknown command: \"name.asm\""}},
        {"_undefined 1", {"t.asm:1,1:Unknown command: _undefined", "t.asm:1,12:Unknown command: 1"}},
        {"?1", {"t.asm:1,1:Unknown command: ?1"}},
        {".ASSUME x: 0h", {"t.asm:1,9:Expected DBR, found: x", "t.asm:1,10:Unknown command: :",
                           "t.asm:1,12:Unknown command: 0h"}},
        {".ASSUME dbr 0h", {"t.asm:1,13:Expected colon, found: 0h"}},
        {".ASSUME dbr: 12", {"t.asm:1,14:Expected memory address, found: 12"}},
        {".INCLUDE name", {"t.asm:1,10:Expected filename, found: name"}},
        {".INCLUDE \"missing.asm\"", {"t.asm:1,10:Error opening: missing.asm"}},
        {".POINTER 2 10h", {"t.asm:1,12:Expected @, found: 10h"}},
        {".POINTER x", {"t.asm:1,10:Expected number, found: x"}},
        {"k .EQL 5 (8", {"t.asm:1,12:Expected ), found: "}},
        {".ADDRESS 8000h (4 nop", {"t.asm:1,19:Expected ), found: nop"}},
        {".PATCH 10h 01", {"t.asm:1,12:Expected colon, found: 01"}},
        {"???", {"t.asm:1,1:???  not implemented."}},
        {"jmp 8000h", {"t.asm:1,1:jmp  not implemented.", "t.asm:1,5:Unknown command: 8000h"}},
        {"tad", {"t.asm:1,1:tad  not implemented."}},
        {".ENDM", {"t.asm:1,1:.ENDM without .MACRO"}},
        {"outer .MACRO inner .MACRO .ENDM", {"t.asm:1,20:Macro _inner cannot be defined inside macro _outer."}},
        {"outer .MACRO nop", {"t.asm:1,17:Macro _outer has no .ENDM."}},
    };
    for (const auto& c : cases) EXPECT_EQ(RunScript(c.text).errors, c.errors) << c.text;
}

TEST(StatementsTest, DataAndRedefinitions) {
    const struct {
        const char* text;
        Bytes bytes;
    } cases[] = {
        {".BYTE 300, 1", {0x2C, 0x01}},
        {".WORD 1234h, 70000", {0x34, 0x12, 0x70, 0x11}},
        {".BYTE 1 ,2,\n3", {1, 2, 3}},
        {"$foo 10h $foo 20h lda foo", {0xA5, 0x20, 0x00}},  // a variable may be defined again
        {"foo .EQL 10 (8) pea foo", {0xF4, 0x0A, 0x00, 0x00}},
        {"$lda 10h .BYTE 7", {0x07, 0x00}},  // the name takes the mnemonic's word over
        {"loop: nop\n.ADDRESS 8010h\nloop: nop", {0xEA, 0x00}},
    };
    for (const auto& c : cases) {
        const ScriptRun run = RunScript(std::string(".ADDRESS 8000h\n") + std::string(c.text));
        EXPECT_EQ(run.errors, Errors{}) << c.text;
        EXPECT_EQ(run.At(0x8000, static_cast<int>(c.bytes.size())), c.bytes) << c.text;
    }
    EXPECT_EQ(RunScript("$lda 10h\nlda 5").errors, Errors({"t.asm:2,1:Variable lda already defined.",
                                                          "t.asm:2,5:Unknown command: 5"}));
}

TEST(StatementsTest, PatchWritesStraightIntoTheImage) {
    const struct {
        const char* text;
        int position;
        Bytes bytes;
        Errors errors;
    } cases[] = {
        {".PATCH 8000h: A9 00 8D", 0x8000, {0xA9, 0x00, 0x8D, 0x00}, {}},
        {".PATCH 8000h: A9008D", 0x8000, {0xA9, 0x00, 0x8D, 0x00}, {}},
        {".PATCH C08000h: EA", 0x8000, {0xEA}, {}},  // the address keeps its low 22 bits
        {".PATCH 10: 1 2", 10, {0, 0}, {"t.asm:1,11:mismatched hex pair"}},
        {".PATCH 10: 41 42 ; note\n.PATCH 12: 43", 10, {0x41, 0x42, 0x43, 0}, {}},
        {".PATCH 10: 4;", 10, {0}, {"t.asm:1,11:mismatched hex pair"}},
        // A statement that fails writes none of its bytes.
        {".PATCH 10: 12 3", 10, {0, 0}, {"t.asm:1,11:mismatched hex pair"}},
        {".PATCH 10: zz", 10, {0}, {"t.asm:1,12:Not a pair of hexadecimal digits: zz"}},
        {".PATCH 808000h: 2G OO 1,", 0x8000, {0, 0, 0}, {"t.asm:1,17:Not a pair of hexadecimal digits: 2G"}},
        {".PATCH 10: 41 4\x01", 10, {0, 0}, {"t.asm:1,15:Not a pair of hexadecimal digits: 4\x01"}},
        {".PATCH 1FFFFh: 01 02 03", 0x1FFFF, {0x00}, {"t.asm:1,15:Address 020000 lies outside the image"}},
        {".PATCH 3FFFFFh: 01 02", 0, {0x00}, {"t.asm:1,16:Address 3FFFFF lies outside the image"}},
        {".PATCH 10: 4\n.PATCH 20: 55", 20, {0x55}, {"t.asm:1,11:mismatched hex pair"}},
    };
    for (const auto& c : cases) {
        const ScriptRun run = RunScript(c.text);
        EXPECT_EQ(run.errors, c.errors) << c.text;
        EXPECT_EQ(run.At(c.position, static_cast<int>(c.bytes.size())), c.bytes) << c.text;
    }
}

TEST(StatementsTest, AddressCompilesThePendingBlock) {
    // The limit and the address of the next block are read after the compile.
    const ScriptRun run = RunScript(".ADDRESS 8000h (2)\nnop nop\n.ADDRESS 9000h (1)\nnop\n.ADDRESS A000h\nnop nop");
    EXPECT_EQ(run.errors, Errors{});
    EXPECT_EQ(run.At(0x8000, 3), Bytes({0xEA, 0xEA, 0x00}));
    EXPECT_EQ(run.At(0x9000, 2), Bytes({0xEA, 0x00}));
    EXPECT_EQ(run.At(0xA000, 2), Bytes({0xEA, 0xEA}));
}

TEST(StatementsTest, GoesOnAfterTheTokenThatFailed) {
    const ScriptRun run = RunScript(".ADDRESS 8000h\n.BYTE 1, foo 2\n.BYTE 3");
    EXPECT_EQ(run.errors, Errors({"t.asm:2,10:Expected Byte value, found: foo", "t.asm:2,14:Unknown command: 2"}));
    EXPECT_EQ(run.kinds, std::vector<int>({TOKEN_DOT_ADDRESS, 0, 0, STATEMENT_DATA, TOKEN_END}));
}

TEST(StatementsTest, NameAndSymbolLimits) {
    const std::string name25(25, 's');
    EXPECT_EQ(RunScript(std::string("$") + name25 + " 10h").errors,
              Errors({std::string("t.asm:1,1:Name ") + name25 + " is longer than 24 characters.", "t.asm:1,28:Unknown command: 10h"}));
    EXPECT_EQ(RunScript(name25 + " .EQL 5").errors,
              Errors({std::string("t.asm:1,32:Name ") + name25 + " is longer than 24 characters."}));
    EXPECT_EQ(RunScript(std::string("$") + std::string(24, 's') + " 10h").errors, Errors{});
    const ScriptRun include = RunScript(std::string(".INCLUDE \"") + std::string(128, 'f') + "\"");
    ASSERT_EQ(include.errors.size(), 1u);
    EXPECT_EQ(include.errors[0], (std::string("t.asm:1,10:Name ") + std::string(128, 'f')).substr(0, PATCH_MESSAGE_SIZE - 1));
    std::string script;
    for (int i = 0; i <= MAX_SYMBOLS; ++i) script.append("$v").append(std::to_string(i)).append(" 10h\n");
    EXPECT_EQ(RunScript(script).errors, Errors({"t.asm:10001,9:Too many symbols (at most 10000)."}));
}

TEST(StatementsTest, NumbersWiderThan32BitsAreRefused) {
    const struct {
        const char* text;
        Errors errors;
    } cases[] = {
        {"c0 .EQL 1000000000h", {"t.asm:2,9:1000000000h does not fit into 32 bits."}},
        {"lda 4294967297", {"t.asm:2,5:4294967297 does not fit into 32 bits."}},
        {"jsl 100000000h", {"t.asm:2,5:100000000h does not fit into 32 bits."}},
        {".BYTE 1, 4294967296", {"t.asm:2,10:4294967296 does not fit into 32 bits."}},
        {"$v 100000000h", {"t.asm:2,4:100000000h does not fit into 32 bits."}},
        {".POINTER 2 @ 100000000h", {"t.asm:2,14:100000000h does not fit into 32 bits."}},
        {".PATCH 100000010h: 01",
         {"t.asm:2,8:100000010h does not fit into 32 bits.", "t.asm:2,18:Unknown command: :", "t.asm:2,20:Unknown command: 01"}},
    };
    for (const auto& c : cases) {
        const ScriptRun run = RunScript(std::string(".ADDRESS 8000h\n") + c.text);
        EXPECT_EQ(run.errors, c.errors) << c.text;
        EXPECT_EQ(run.image, Bytes(SCRIPT_IMAGE_SIZE, 0)) << c.text;
    }
    const ScriptRun widest = RunScript(".ADDRESS 8000h\n.BYTE 4294967295\n.WORD 0FFFFFFFFh");
    EXPECT_EQ(widest.errors, Errors{});
    EXPECT_EQ(widest.At(0x8000, 4), Bytes({0xFF, 0xFF, 0xFF, 0x00}));
}

TEST(StatementsTest, CodeBeforeTheFirstAddressIsRefused) {
    const ScriptRun run = RunScript("mac .MACRO\nnop\n.ENDM\nnop\n.BYTE 1, 2\n  here:\n.POINTER 2 @ 10h\n_mac\n"
                                    "k .EQL 5\n.PATCH 20h: 77\n.ADDRESS 8000h\n_mac");
    EXPECT_EQ(run.errors, Errors({"t.asm:4,1:Code needs an .ADDRESS before it.", "t.asm:5,1:Code needs an .ADDRESS before it.",
                                  "t.asm:6,3:Code needs an .ADDRESS before it.", "t.asm:7,1:Code needs an .ADDRESS before it.",
                                  "t.asm:8,1:Code needs an .ADDRESS before it."}));
    Bytes expected(SCRIPT_IMAGE_SIZE, 0);
    expected[0x20] = 0x77;
    expected[0x8000] = 0xEA;
    EXPECT_EQ(run.image, expected);
}

// Names unlike each other from their first letters on, as real scripts have them.
std::string VariedName(int i) {
    std::string name;
    for (unsigned n = static_cast<unsigned>(i) * 2654435761u + 12345u; name.size() < static_cast<size_t>(8 + i % 12); n = n * 1103515245u + 12345u)
        name += static_cast<char>('a' + (n >> 16) % 26);
    return name + std::to_string(i);
}

TEST(StatementsTest, TenThousandSymbolsOfAnyNames) {
    std::string script = ".ADDRESS 8000h\n";
    for (int i = 0; i < MAX_SYMBOLS - 1; ++i) script += VariedName(i) + " .EQL " + std::to_string(i) + "\n";
    script += "$last 7E0010h\nlda " + VariedName(9998) + "\nsta last\n$extra 10h\n";
    const ScriptRun run = RunScript(script);
    EXPECT_EQ(run.errors, Errors({"t.asm:10004,8:Too many symbols (at most 10000)."}));
    EXPECT_EQ(run.At(0x8000, 7), Bytes({0xA9, 0x0E, 0x27, 0x8F, 0x10, 0x00, 0x7E}));
}

TEST(StatementsTest, GenericImagesHaveNoInstructions) {
    const ScriptRun run = RunScript(".ADDRESS 100h\n.BYTE 1\nlda 5\n.PATCH 200h: 77", ROM_GB);
    EXPECT_EQ(run.errors, Errors({"t.asm:3,5:Expected .MACRO, found: 5"}));
    EXPECT_EQ(run.At(0x100, 1), Bytes({1}));
    EXPECT_EQ(run.At(0x200, 1), Bytes({0x77}));
}

}  // namespace
