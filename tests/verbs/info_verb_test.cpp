// trelvane info: images with known headers, digests checked against
// Python's hashlib and zlib.
#include <gtest/gtest.h>

#include "support/test_support.h"
#include "verbs/test_images.h"

namespace {

class InfoVerb : public ::testing::Test {
protected:
    // "CRC-32: ...\nMD5: ...\nSHA-1: ...\n" of the file at name less its
    // first skip bytes, as Python computes them.
    std::string PythonDigests(const std::string& name, size_t skip) {
        const std::string code =
            "import hashlib, sys, zlib\n"
            "d = open(sys.argv[1], 'rb').read()[int(sys.argv[2]):]\n"
            "print('CRC-32: %08X' % zlib.crc32(d))\n"
            "print('MD5: ' + hashlib.md5(d).hexdigest())\n"
            "print('SHA-1: ' + hashlib.sha1(d).hexdigest())\n";
        return RunProgram(dir.path(), "python3", {"-c", code, name, std::to_string(skip)}).output;
    }
    VerbResult Info(const std::vector<std::string>& args) {
        std::vector<std::string> line = {"info"};
        line.insert(line.end(), args.begin(), args.end());
        return RunVerb(dir.path(), line);
    }
    TempDir dir;
};

TEST_F(InfoVerb, SuperNesWithoutAndWithCopierHeader) {
    const Bytes image = SnesImage(0x80000, "lorom", "TEST GAME");
    WriteFile(dir / "game.sfc", image);
    WriteFile(dir / "game.smc", WithCopierHeader(image));
    const std::string digests = PythonDigests("game.sfc", 0);
    ASSERT_EQ(digests.size(), 17u + 38 + 48);
    const uint16_t checksum = static_cast<uint16_t>(image[0x7FDE] | image[0x7FDF] << 8);
    char checksums[128];
    std::snprintf(checksums, sizeof checksums, "Checksum: 0x%04X (holds)\nComplement: 0x%04X (holds)\n", checksum,
                  checksum ^ 0xFFFF);
    EXPECT_EQ(Info({"game.sfc"}), (VerbResult{0,
                                              "File: game.sfc\nSystem: Super NES\nFile size: 524288 bytes\n"
                                              "Header: none\nMapping: LoROM\nTitle: TEST GAME\n" +
                                                  std::string(checksums) + digests,
                                              ""}));
    EXPECT_EQ(Info({"game.smc"}), (VerbResult{0,
                                              "File: game.smc\nSystem: Super NES\nFile size: 524800 bytes\n"
                                              "Header: 512-byte copier header\nMapping: LoROM\nTitle: TEST GAME\n" +
                                                  std::string(checksums) + digests,
                                              ""}));
    EXPECT_EQ(PythonDigests("game.smc", 512), digests);
}

TEST_F(InfoVerb, SuperNesMappingsAndChecksumThatDoesNotHold) {
    Bytes image = SnesImage(0x80000, "hirom", "HIGH");
    image[0x100] ^= 0x01;
    WriteFile(dir / "high.swc", image);  // a multiple of 1024: no header despite .swc
    const VerbResult run = Info({"high.swc"});
    EXPECT_EQ(run.status, 0);
    const uint16_t stored = static_cast<uint16_t>(image[0xFFDE] | image[0xFFDF] << 8);
    const uint16_t expected = static_cast<uint16_t>(stored + ((image[0x100] & 1) ? 1 : -1));
    char line[96];
    std::snprintf(line, sizeof line, "Checksum: 0x%04X (does not hold: 0x%04X expected)\n", stored, expected);
    EXPECT_NE(run.output.find("Header: none\nMapping: HiROM\nTitle: HIGH\n" + std::string(line)), std::string::npos)
        << run.output;
    WriteFile(dir / "blank.sfc", Bytes(0x20000, 0));
    EXPECT_NE(Info({"blank.sfc"}).output.find("Mapping: unknown (no internal header found)\nCRC-32: "),
              std::string::npos);
    WriteFile(dir / "odd.sfc", Bytes(0x20000 + 100, 0));
    EXPECT_NE(Info({"odd.sfc"}).output.find("Header: none (the size is no multiple of 1024: the extension's default)"),
              std::string::npos);
}

TEST_F(InfoVerb, NesHeaderAndTrainer) {
    WriteFile(dir / "game.nes", NesFile(2, 1, 0x14, 0x30));
    EXPECT_EQ(Info({"game.nes"}), (VerbResult{0,
                                              "File: game.nes\nSystem: NES\nFile size: 41488 bytes\n"
                                              "Header: 16-byte iNES header and 512-byte trainer\nFormat: iNES\n"
                                              "Mapper: 49\nPRG ROM: 32768 bytes\nCHR ROM: 8192 bytes\n" +
                                                  PythonDigests("game.nes", 528),
                                              ""}));
    WriteFile(dir / "two.nes", NesFile(1, 0, 0x00, 0x08, 0x02));
    WriteFile(dir / "raw.nes", Bytes(64, 0x11));
    EXPECT_NE(Info({"raw.nes"}).output.find("Header: 16-byte iNES header\nFormat: unknown (no iNES header)\nCRC-32: "),
              std::string::npos);
    EXPECT_NE(Info({"two.nes"}).output.find("Header: 16-byte iNES header\nFormat: NES 2.0\nMapper: 512\n"
                                            "PRG ROM: 16384 bytes\nCHR ROM: 0 bytes\n"),
              std::string::npos);
}

TEST_F(InfoVerb, GameBoyHeaderChecksums) {
    Bytes image = GameBoyImage(0x10000, "POCKET", 0x13, 0x01);
    WriteFile(dir / "good.gbc", image);
    const uint16_t global = static_cast<uint16_t>(image[0x14E] << 8 | image[0x14F]);
    char lines[256];
    std::snprintf(lines, sizeof lines,
                  "Header checksum: 0x%02X (holds)\nGlobal checksum: 0x%04X (holds)\n", image[0x14D], global);
    EXPECT_EQ(Info({"good.gbc"}), (VerbResult{0,
                                              "File: good.gbc\nSystem: Game Boy\nFile size: 65536 bytes\n"
                                              "Header: none\nTitle: POCKET\nCartridge type: 0x13 MBC3+RAM+BATTERY\n"
                                              "ROM size: 65536 bytes\n" +
                                                  std::string(lines) + PythonDigests("good.gbc", 0),
                                              ""}));
    image[0x14D] ^= 0x10;
    WriteFile(dir / "bad.gb", image);
    std::snprintf(lines, sizeof lines, "Header checksum: 0x%02X (does not hold: 0x%02X expected)\n", image[0x14D],
                  image[0x14D] ^ 0x10);
    EXPECT_NE(Info({"bad.gb"}).output.find(lines), std::string::npos);
    WriteFile(dir / "short.gb", Bytes(0x100, 0));
    EXPECT_NE(Info({"short.gb"}).output.find("Title: unknown (the image is too short for a cartridge header)\nCRC-32: "),
              std::string::npos);
}

TEST_F(InfoVerb, JsonIsOneObjectPythonReads) {
    WriteFile(dir / "Spiel (E) [T+Fre] \xC3\xA4.sfc", SnesImage(0x80000, "lorom", "JSON"));
    const VerbResult run = Info({"--json", "Spiel (E) [T+Fre] \xC3\xA4.sfc"});
    ASSERT_EQ(run.status, 0) << run.errors;
    EXPECT_EQ(std::count(run.output.begin(), run.output.end(), '\n'), 1);
    const std::string check =
        "import json, sys, hashlib\n"
        "o = json.loads(sys.stdin.read())\n"
        "d = open(o['file'], 'rb').read()\n"
        "print(o['system'], o['fileSize'], o['headerLength'], o['mapping'], o['title'],\n"
        "      o['checksum']['holds'], o['complement']['holds'], o['sha1'] == hashlib.sha1(d).hexdigest())\n";
    WriteFile(dir / "out.json", run.output);
    EXPECT_EQ(RunProgram(dir.path(), "sh", {"-c", "python3 -c \"$0\" < out.json", check}).output,
              "Super NES 524288 0 LoROM JSON True True True\n");
}

// The verbs take the extension behind the last dot, so names with dots in
// them work; the letter commands keep refusing them.
TEST_F(InfoVerb, NamesWithSeveralDots) {
    WriteFile(dir / "Game v1.1 (E).sfc", SnesImage(0x80000, "lorom", "DOTS"));
    const VerbResult run = Info({"Game v1.1 (E).sfc"});
    EXPECT_EQ(run.status, 0) << run.errors;
    EXPECT_EQ(run.output.substr(0, run.output.find("Checksum")),
              "File: Game v1.1 (E).sfc\nSystem: Super NES\nFile size: 524288 bytes\nHeader: none\n"
              "Mapping: LoROM\nTitle: DOTS\n");
    const VerbResult find = RunVerb(dir.path(), {"find", "Game v1.1 (E).sfc", "--references", "0x8000"});
    EXPECT_EQ(find.errors.substr(0, find.errors.find('\n')), "trelvane find: Game v1.1 (E).sfc: header: none");
}

TEST_F(InfoVerb, Refusals) {
    WriteFile(dir / "notes.txt", std::string("hello"));
    WriteFile(dir / "short.nes", Bytes(4, 0));
    const struct {
        std::vector<std::string> args;
        std::string errors;
    } cases[] = {
        {{"missing.sfc"}, "trelvane info: Error opening missing.sfc.\n"},
        {{"notes.txt"}, "trelvane info: Unknown file type: .txt.\n"},
        {{"noextension"}, "trelvane info: You must specify an extension on noextension.\n"},
        {{"short.nes", "--image", "x.sfc"}, "trelvane info: --image goes with a patch, and short.nes is none\n"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.args[0]);
        EXPECT_EQ(Info(c.args), (VerbResult{1, "", c.errors}));
    }
    const VerbResult none = Info({});
    EXPECT_EQ(none.status, 1);
    EXPECT_EQ(none.output, "");
    EXPECT_NE(none.errors.find("FILE is required"), std::string::npos) << none.errors;
    EXPECT_EQ(ReadText(dir / "notes.txt"), "hello");
}

}  // namespace
