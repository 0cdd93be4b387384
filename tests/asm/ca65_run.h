// Assembling 65816 source with ca65 and linking it with ld65, the
// independent assembler the opcode tests compare against.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "support/test_support.h"

// The bytes that ca65 and ld65 make of source (with its own .p816 and width
// lines), placed at $8000.
inline Bytes AssembleWithCa65(const TempDir& dir, const std::string& source) {
    WriteFile(dir / "rows.s", source);
    WriteFile(dir / "rows.cfg",
              "MEMORY { ROM: start = $8000, size = $8000, file = %O, fill = no; }\n"
              "SEGMENTS { CODE: load = ROM, type = ro; }\n");
    RunResult assembled = RunProgram(dir.path(), "ca65", {"rows.s", "-o", "rows.o"});
    EXPECT_EQ(assembled.status, 0) << assembled.output;
    RunResult linked = RunProgram(dir.path(), "ld65", {"-C", "rows.cfg", "-o", "rows.bin", "rows.o"});
    EXPECT_EQ(linked.status, 0) << linked.output;
    return ReadFile(dir / "rows.bin");
}
