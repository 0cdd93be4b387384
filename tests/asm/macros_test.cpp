// Macros: definitions, calls, the cutting of parameters and their failures.
#include <gtest/gtest.h>

#include <cstring>

#include "asm/script_run.h"

namespace {

using Errors = std::vector<std::string>;

// 27 lines: calls start on line 28.
const char* const kMacros =
    ".ADDRESS 8000h\n"
    ".ASSUME dbr: 7E0000h\n"
    "$v 7E0010h\n"
    "store .MACRO\n sta ?0\n.ENDM\n"
    "add .MACRO\n lda ?0\n adc ?1\n.ENDM\n"
    "plain .MACRO\n lda 0\n rts\n.ENDM\n"
    "jump .MACRO\n bra ?0\n.ENDM\n"
    "wait .MACRO\nw: dex\n bne w\n.ENDM\n"
    "back .MACRO\n bra top\n.ENDM\n"
    "go .MACRO\n bne 8010h\n.ENDM\n";

ScriptRun RunWithMacros(const std::string& calls) { return RunScript(std::string(kMacros) + calls); }

TEST(MacrosTest, CallsAppendTheBody) {
    const struct {
        const char* calls;
        Bytes bytes;
    } cases[] = {
        {"_store [10h]", {0x85, 0x10}},
        {"_STORE [0010h]", {0x8D, 0x10, 0x00}},
        {"_plain", {0xA9, 0x00, 0x00, 0x60}},
        {"_add 1, 2", {0xA9, 0x01, 0x00, 0x69, 0x02, 0x00}},
        {"_add 1 ,2", {0xA9, 0x01, 0x00, 0x69, 0x02, 0x00}},
        {"_add 1 , 2", {0xA9, 0x01, 0x00, 0x69, 0x02, 0x00}},
        {"_add 1\t2", {0xA9, 0x01, 0x00, 0x69, 0x02, 0x00}},
        {"_add 1,2,3", {0xA9, 0x01, 0x00, 0x69, 0x02, 0x00}},
        {"_store [10h] ; note", {0x85, 0x10}},
        {"_store [10h], nop", {0x85, 0x10}},  // the rest of the line is never a statement
        {"_store v+x", {0x9D, 0x10, 0x00}},
        {"loop: nop\n_jump loop", {0xEA, 0x80, 0xFD}},
        {"_wait\n_wait", {0xCA, 0xD0, 0xFD, 0xCA, 0xD0, 0xFD}},  // each call has its own label
        {"top: nop\n_back", {0xEA, 0x80, 0xFD}},                 // a label the body only branches to
        {"_go", {0xD0, 0x0E}},
        {"  _store [10h]", {0x85, 0x10}},
        {"store .MACRO\nstz ?0\n.ENDM\n_store [10h]", {0x64, 0x10}},  // the newest definition wins
    };
    for (const auto& c : cases) {
        const ScriptRun run = RunWithMacros(c.calls);
        EXPECT_EQ(run.errors, Errors{}) << c.calls;
        Bytes expected = c.bytes;
        expected.push_back(0);
        EXPECT_EQ(run.At(0x8000, static_cast<int>(expected.size())), expected) << c.calls;
    }
}

TEST(MacrosTest, FailedCalls) {
    const struct {
        const char* calls;
        Errors errors;
    } cases[] = {
        {"_store", {"t.asm:28,7:Not enough parameters to macro _store."}},
        {"_add 1 2", {"t.asm:28,5:Comma expected between macro parameters"}},
        {"_store 5", {"_store:1,1:Invalid operand: 5"}},
        {"_store [10h] [12h]", {"t.asm:28,7:Comma expected between macro parameters"}},
        {"_store 1,2,3,4,5,6,7,8,9,10,11,12,13,14,15,16,17", {"t.asm:28,7:Too many macro parameters (at most 16)."}},
        {"_store ?1", {"t.asm:30,1:Attempt to compile unevaluated macro failed.\n"}},
    };
    for (const auto& c : cases) {
        const ScriptRun run = RunWithMacros(std::string(c.calls) + "\n.BYTE 1\n");
        EXPECT_EQ(run.errors, c.errors) << c.calls;
    }
    // A call that fails appends nothing, not even the entries before the missing parameter; the
    // next line is read as usual.
    const ScriptRun run = RunWithMacros("two .MACRO\nnop\nsta ?1\n.ENDM\n_two [10h]\n.BYTE 7");
    EXPECT_EQ(run.errors, Errors({"t.asm:32,5:Not enough parameters to macro _two."}));
    EXPECT_EQ(run.At(0x8000, 2), Bytes({0x07, 0x00}));
}

TEST(MacrosTest, NamesAndTables) {
    EXPECT_EQ(RunScript(std::string(30, 'n') + " .MACRO .ENDM").errors, Errors{});
    EXPECT_EQ(RunScript(std::string(31, 'n') + " .MACRO .ENDM").errors,
              Errors({"t.asm:1,33:Name _nnnnnnnnnnnnnnnnnnnnnnnnnnnnnnn is longer than 31 characters.",
                      "t.asm:1,40:.ENDM without .MACRO"}));
    std::string many;
    for (int i = 0; i <= 1000; ++i) many.append("m").append(std::to_string(i)).append(" .MACRO\n.ENDM\n");
    const ScriptRun run = RunScript(many);
    EXPECT_EQ(run.errors, Errors({"t.asm:2002,1:Too many macros (at most 1000)."}));
}

TEST(MacrosTest, LongTextsAreCutAtTheMessageSize) {
    const std::string name(300, 'q');
    const ScriptRun run = RunScript(name + " " + name);
    ASSERT_EQ(run.errors.size(), 1u);
    EXPECT_EQ(run.errors[0].size(), static_cast<size_t>(PATCH_MESSAGE_SIZE - 1));
    EXPECT_TRUE(run.errors[0].rfind("t.asm:1,302:Expected .MACRO, found: qqq", 0) == 0);
}

}  // namespace
