// The asm verb end to end: the image assembled in place or into another file,
// IPS and BPS patches that give the same image when applied, the symbol file,
// the internal checksum (each checked by an independent Python computation),
// and refusals that leave every file as it was.
#include <gtest/gtest.h>

#include "support/test_support.h"
#include "verbs/test_images.h"

namespace {

constexpr size_t kImageSize = 0x40000;  // 256 KiB, LoROM

// A program computing what the verb is checked against, run with python3.
constexpr const char* kChecksum = R"(import sys
d = bytearray(open(sys.argv[1], 'rb').read())
d = d[len(d) % 1024:]
d[0x7FDC:0x7FE0] = b'\xff\xff\x00\x00'
s = sum(d) & 0xFFFF
print('%04X %04X' % (s ^ 0xFFFF, s))
)";

constexpr const char* kHiRomChecksum = R"(import sys
d = bytearray(open(sys.argv[1], 'rb').read())
d[0xFFDC:0xFFE0] = b'\xff\xff\x00\x00'
s = sum(d) & 0xFFFF
print('%04X %04X' % (s ^ 0xFFFF, s))
)";

constexpr const char* kApplyIps = R"(import sys
out = bytearray(open(sys.argv[1], 'rb').read()); p = open(sys.argv[2], 'rb').read(); i = 5
while p[i:i + 3] != b'EOF':
    at = int.from_bytes(p[i:i + 3], 'big'); size = int.from_bytes(p[i + 3:i + 5], 'big'); i += 5
    if size == 0:
        n = int.from_bytes(p[i:i + 2], 'big'); out[at:at + n] = bytes([p[i + 2]]) * n; i += 3
    else:
        out[at:at + size] = p[i:i + size]; i += size
open(sys.argv[3], 'wb').write(out)
)";

constexpr const char* kApplyBps = R"(import sys
def number(d, i):
    value, shift = 0, 1
    while True:
        x = d[i]; i += 1; value += (x & 0x7F) * shift
        if x & 0x80: return value, i
        shift <<= 7; value += shift
src = open(sys.argv[1], 'rb').read(); p = open(sys.argv[2], 'rb').read()
assert p[:4] == b'BPS1'
_, i = number(p, 4); size, i = number(p, i); meta, i = number(p, i); i += meta
out = bytearray(size); o = s = t = 0
while i < len(p) - 12:
    d, i = number(p, i); kind = d & 3; n = (d >> 2) + 1
    if kind == 0: out[o:o + n] = src[o:o + n]; o += n
    elif kind == 1: out[o:o + n] = p[i:i + n]; i += n; o += n
    else:
        v, i = number(p, i); step = -(v >> 1) if v & 1 else v >> 1
        if kind == 2: s += step; out[o:o + n] = src[s:s + n]; s += n; o += n
        else:
            t += step
            for _ in range(n): out[o] = out[t]; o += 1; t += 1
open(sys.argv[3], 'wb').write(out)
)";

Bytes Image() {
    Bytes image(kImageSize);
    for (size_t i = 0; i < image.size(); ++i) image[i] = static_cast<unsigned char>(i * 7 + (i >> 9));
    return image;
}

constexpr const char* kHook =
    "lorom\n"
    "org $808000\n"
    "Start:\n"
    "  jml Hook\n"
    "org $838000\n"
    "Hook:\n"
    "  lda #$0F : sta $2100\n"
    ".loop: dex : bne .loop\n"
    "  jml $808004\n"
    "Text: db \"Hi\", 0\n";

class AsmVerbTest : public ::testing::Test {
protected:
    TempDir dir;
    void SetUp() override {
        WriteFile(dir / "game.sfc", Image());
        WriteFile(dir / "hook.asm", kHook);
    }
    RunResult Run(const std::vector<std::string>& args) { return RunTrelvane(dir.path(), args); }
    std::string Python(const char* program, const std::vector<std::string>& args) {
        std::vector<std::string> line = {"-c", program};
        line.insert(line.end(), args.begin(), args.end());
        const RunResult run = RunProgram(dir.path(), "python3", line);
        EXPECT_EQ(run.status, 0);
        return run.output;
    }
    // Everything the verb printed on standard error as well (not for the Windows build).
    std::string ErrorText(const std::vector<std::string>& args) {
        std::string command;
        for (const std::string& word : {TrelvaneExecutable().string()}) command.append("'").append(word).append("'");
        for (const std::string& arg : args) command.append(" '").append(arg).append("'");
        return RunProgram(dir.path(), "sh", {"-c", command + " 2>&1"}).output;
    }
};

TEST_F(AsmVerbTest, AssemblesInPlaceAndCorrectsTheChecksum) {
    ASSERT_EQ(Run({"asm", "game.sfc", "hook.asm"}), (RunResult{0, ""}));
    const Bytes image = ReadFile(dir / "game.sfc");
    ASSERT_EQ(image.size(), kImageSize);
    const Bytes hook = {0x5C, 0x00, 0x80, 0x83};
    EXPECT_EQ(Bytes(image.begin(), image.begin() + 4), hook);
    const Bytes code = {0xA9, 0x0F, 0x8D, 0x00, 0x21, 0xCA, 0xD0, 0xFD, 0x5C, 0x04, 0x80, 0x80, 'H', 'i', 0};
    EXPECT_EQ(Bytes(image.begin() + 0x18000, image.begin() + 0x18000 + code.size()), code);
    char stored[16];
    std::snprintf(stored, sizeof stored, "%02X%02X %02X%02X\n", image[0x7FDD], image[0x7FDC], image[0x7FDF], image[0x7FDE]);
    EXPECT_EQ(Python(kChecksum, {"game.sfc"}), stored);
    const Bytes original = Image();
    for (size_t i = 4; i < 0x7FDC; ++i) ASSERT_EQ(image[i], original[i]) << i;
}

TEST_F(AsmVerbTest, NoChecksumLeavesTheHeaderAndACopierHeaderIsKept) {
    Bytes withHeader(512, 0xEE);
    const Bytes image = Image();
    withHeader.insert(withHeader.end(), image.begin(), image.end());
    WriteFile(dir / "copier.smc", withHeader);
    ASSERT_EQ(Run({"asm", "copier.smc", "hook.asm", "--no-checksum", "-o", "out.smc"}).status, 0);
    EXPECT_EQ(ReadFile(dir / "copier.smc"), withHeader);
    Bytes expected = withHeader;
    const Bytes hook = {0x5C, 0x00, 0x80, 0x83};
    std::copy(hook.begin(), hook.end(), expected.begin() + 512);
    const Bytes out = ReadFile(dir / "out.smc");
    ASSERT_EQ(out.size(), expected.size());
    EXPECT_EQ(Bytes(out.begin(), out.begin() + 0x18200), Bytes(expected.begin(), expected.begin() + 0x18200));
}

TEST_F(AsmVerbTest, PatchesGiveTheImageAssembledInPlace) {
    ASSERT_EQ(Run({"asm", "game.sfc", "hook.asm", "-o", "inplace.sfc"}).status, 0);
    ASSERT_EQ(Run({"asm", "game.sfc", "hook.asm", "--ips", "hook.ips"}).status, 0);
    ASSERT_EQ(Run({"asm", "game.sfc", "hook.asm", "--bps", "hook.bps"}).status, 0);
    EXPECT_EQ(ReadFile(dir / "game.sfc"), Image());
    Python(kApplyIps, {"game.sfc", "hook.ips", "from-ips.sfc"});
    Python(kApplyBps, {"game.sfc", "hook.bps", "from-bps.sfc"});
    EXPECT_EQ(ReadFile(dir / "from-ips.sfc"), ReadFile(dir / "inplace.sfc"));
    EXPECT_EQ(ReadFile(dir / "from-bps.sfc"), ReadFile(dir / "inplace.sfc"));
    EXPECT_NE(ReadFile(dir / "inplace.sfc"), Image());
}

TEST_F(AsmVerbTest, TheSymbolFileListsEveryAddressLabel) {
    WriteFile(dir / "hook.asm", std::string(kHook) + "Ram = $7E0100\n");
    ASSERT_EQ(Run({"asm", "game.sfc", "hook.asm", "--symbols", "hook.sym"}).status, 0);
    EXPECT_EQ(ReadText(dir / "hook.sym"), "[labels]\n80:8000 Start\n83:8000 Hook\n83:8005 Hook_loop\n83:800C Text\n");
}

TEST_F(AsmVerbTest, DefinesFromTheCommandLine) {
    WriteFile(dir / "d.asm", "lorom\norg $808000\ndb !a, !b\n");
    ASSERT_EQ(Run({"asm", "game.sfc", "d.asm", "-D", "a=$12", "-D", "!b=7", "--no-checksum"}).status, 0);
    EXPECT_EQ(ReadFile(dir / "game.sfc")[0], 0x12);
    EXPECT_EQ(ReadFile(dir / "game.sfc")[1], 0x07);
}

TEST_F(AsmVerbTest, TheMapOptionWinsOverTheSource) {
    ASSERT_EQ(Run({"asm", "game.sfc", "hook.asm", "--map", "hirom", "--no-checksum", "-o", "hi.sfc"}).status, 0);
    EXPECT_EQ(ReadFile(dir / "hi.sfc")[0x8000], 0x5C);
    WriteFile(dir / "hi.asm", "org $C01234\ndb $77\n");
    ASSERT_EQ(Run({"asm", "game.sfc", "hi.asm", "--map", "hirom", "--no-checksum", "-o", "hi.sfc"}).status, 0);
    EXPECT_EQ(ReadFile(dir / "hi.sfc")[0x1234], 0x77);
}

TEST_F(AsmVerbTest, TheImagesHeaderNamesTheMappingBeforeTheSource) {
    WriteFile(dir / "hi.sfc", SnesImage(0x20000, "hirom", "HIGH GAME"));
    WriteFile(dir / "hi.asm", "lorom\norg $C01234\ndb $77\n");
    ASSERT_EQ(Run({"asm", "hi.sfc", "hi.asm"}).status, 0);
    const Bytes image = ReadFile(dir / "hi.sfc");
    EXPECT_EQ(image[0x1234], 0x77);
    char stored[16];
    std::snprintf(stored, sizeof stored, "%02X%02X %02X%02X\n", image[0xFFDD], image[0xFFDC], image[0xFFDF], image[0xFFDE]);
    EXPECT_EQ(Python(kHiRomChecksum, {"hi.sfc"}), stored);
}

TEST_F(AsmVerbTest, AnErrorWritesNothing) {
    WriteFile(dir / "bad.asm", "lorom\norg $808000\nnop\nlda.b #$1234\n");
    for (const std::vector<std::string>& args : std::vector<std::vector<std::string>>{
             {"asm", "game.sfc", "bad.asm"},
             {"asm", "game.sfc", "bad.asm", "-o", "out.sfc", "--symbols", "bad.sym"},
             {"asm", "game.sfc", "bad.asm", "--ips", "bad.ips"},
             {"asm", "game.sfc", "bad.asm", "--bps", "bad.bps"},
             {"asm", "game.sfc", "missing.asm"},
             {"asm", "missing.sfc", "hook.asm"},
             {"asm", "game.sfc", "hook.asm", "--map", "midrom"},
             {"asm", "game.sfc", "hook.asm", "--ips", "a.ips", "--bps", "a.bps"},
         }) {
        EXPECT_EQ(Run(args).status, 1) << args[2];
        EXPECT_EQ(ReadFile(dir / "game.sfc"), Image());
    }
    for (const char* name : {"out.sfc", "bad.sym", "bad.ips", "bad.bps", "a.ips", "a.bps"})
        EXPECT_FALSE(FileExists(dir / name)) << name;
}

TEST_F(AsmVerbTest, ErrorsAndWarningsNameFileLineAndColumn) {
    if (TestingWindowsBuild()) GTEST_SKIP() << "reads standard error through the shell";
    WriteFile(dir / "bad.asm", "nop\nloop: fill 200\n  bne loop : lda.b #$1234\n");
    EXPECT_EQ(ErrorText({"asm", "game.sfc", "bad.asm"}),
              "bad.asm:1:1: warning: no org before the first write: assembling at $008000\n"
              "bad.asm:1:1: warning: no mapping from --map, the image's header or the source: assembling as LoROM\n"
              "bad.asm:3:3: error: branch to loop is 202 bytes away; bne reaches -128 to +127\n"
              "bad.asm:3:14: error: #$1234 does not fit an 8-bit immediate\n");
}

}  // namespace
