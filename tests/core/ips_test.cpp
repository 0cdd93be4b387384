#include "core/ips_format.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

#include "core/last_error.h"
#include "support/test_support.h"
#include "trelvane.h"

namespace {

using namespace std::string_literals;

Bytes Text(const std::string& text) { return Bytes(text.begin(), text.end()); }

Bytes Record(size_t offset, const Bytes& data) {
    Bytes record = {static_cast<unsigned char>(offset >> 16), static_cast<unsigned char>(offset >> 8),
                    static_cast<unsigned char>(offset), static_cast<unsigned char>(data.size() >> 8),
                    static_cast<unsigned char>(data.size())};
    for (unsigned char byte : data) record.push_back(byte);
    return record;
}

Bytes Patch(const std::vector<Bytes>& records) {
    Bytes patch = Text("PATCH");
    for (const Bytes& record : records) patch.insert(patch.end(), record.begin(), record.end());
    Bytes end = Text("EOF");
    patch.insert(patch.end(), end.begin(), end.end());
    return patch;
}

Bytes Build(const Bytes& original, const Bytes& modified, IpsBuild expected = IpsBuild::Built) {
    Bytes patch;
    EXPECT_EQ(BuildIpsPatch(original.data(), original.size(), modified.data(), modified.size(), patch), expected);
    return patch;
}

Bytes Applied(const Bytes& patch, Bytes target) {
    std::vector<IpsRecord> records;
    EXPECT_EQ(ReadIpsRecords(patch.data(), patch.size(), records), IpsRead::Valid);
    target.resize(IpsPatchedLength(records, target.size()));
    CopyIpsRecords(records, target.data());
    return target;
}

TEST(IpsBuild, RecordsOfChangedRuns) {
    EXPECT_EQ(Build({0x00, 0x11, 0x22, 0x33}, {0x00, 0xAA, 0x22, 0x33}), Patch({Record(1, {0xAA})}));

    Bytes original(40, 0x10), modified = original;
    modified[5] = 1;
    modified[14] = 2;  // 8 equal bytes between: carried in one record
    EXPECT_EQ(Build(original, modified), Patch({Record(5, Bytes(modified.begin() + 5, modified.begin() + 15))}));
    modified[14] = 0x10;
    modified[15] = 2;  // 9 equal bytes between: two records
    EXPECT_EQ(Build(original, modified), Patch({Record(5, {1}), Record(15, {2})}));

    // The last byte of the modified file closes a run.
    modified[39] = 3;
    modified[31] = 4;
    EXPECT_EQ(Build(original, modified),
              Patch({Record(5, {1}), Record(15, {2}), Record(31, Bytes(modified.begin() + 31, modified.end()))}));
}

TEST(IpsBuild, LongRunsAreSplit) {
    Bytes original(0x100 + 32769 + 20, 0), modified = original;
    for (size_t i = 0x100; i < 0x100 + 32769; ++i) modified[i] = static_cast<unsigned char>(i | 1);
    EXPECT_EQ(Build(original, modified),
              Patch({Record(0x100, Bytes(modified.begin() + 0x100, modified.begin() + 0x8100)),
                     Record(0x8100, {modified[0x8100]})}));
}

TEST(IpsBuild, LengthsDiffer) {
    Bytes original(30, 7), longer = original;
    longer.insert(longer.end(), 16, 7);  // equal values, but beyond the original
    EXPECT_EQ(Build(original, longer), Patch({Record(30, Bytes(16, 7))}));
    EXPECT_EQ(Build({}, Bytes(10, 9)), Patch({Record(0, Bytes(10, 9))}));
    EXPECT_EQ(Build({}, {}), Text("PATCHEOF"));

    Build(original, original, IpsBuild::Identical);
    Build(original, Bytes(original.begin(), original.begin() + 12), IpsBuild::Identical);
    Build(original, {}, IpsBuild::Identical);
    Bytes shorterChanged(original.begin(), original.begin() + 12);
    shorterChanged[11] = 0;
    EXPECT_EQ(Build(original, shorterChanged), Patch({Record(11, {0})}));
}

TEST(IpsBuild, OffsetsThatCannotBeWritten) {
    // A record at 0x454F46 would read as the end marker: it starts a byte earlier.
    Bytes original(0x454F50, 0), modified = original;
    modified[0x454F46] = 1;
    EXPECT_EQ(Build(original, modified), Patch({Record(0x454F45, {0, 1})}));

    Bytes big(IPS_OFFSET_LIMIT + 64, 0), changed = big;
    changed[IPS_OFFSET_LIMIT - 1] = 5;
    changed[IPS_OFFSET_LIMIT + 3] = 6;  // inside a run that starts below 16 MiB
    EXPECT_EQ(Build(big, changed), Patch({Record(IPS_OFFSET_LIMIT - 1, {5, 0, 0, 0, 6})}));
    changed[IPS_OFFSET_LIMIT + 40] = 7;  // a run of its own beyond 16 MiB
    Build(big, changed, IpsBuild::OffsetTooLarge);
}

TEST(IpsRead, AcceptsAndRefuses) {
    std::vector<IpsRecord> records;
    auto read = [&](const Bytes& patch) { return ReadIpsRecords(patch.data(), patch.size(), records); };
    EXPECT_EQ(read(Text("PATC")), IpsRead::NotIps);
    EXPECT_EQ(read(Text("patch")), IpsRead::NotIps);
    Bytes good = Patch({Record(2, {1, 2}), Record(9, {}), Record(4, {3})});
    ASSERT_EQ(read(good), IpsRead::Valid);
    ASSERT_EQ(records.size(), 3u);
    EXPECT_EQ(records[2].offset, 4u);
    EXPECT_EQ(records[2].size, 1u);
    EXPECT_EQ(records[2].data[0], 3);
    Bytes trailing = good;
    trailing.push_back('x');
    EXPECT_EQ(read(trailing), IpsRead::Valid);
    EXPECT_EQ(read(Bytes(good.begin(), good.end() - 1)), IpsRead::NoEof);
    EXPECT_EQ(read(Bytes(good.begin(), good.end() - 3)), IpsRead::NoEof);
    EXPECT_EQ(read(Bytes(good.begin(), good.begin() + 11)), IpsRead::NoEof);  // data cut short

    // The first record is read even when its offset spells "EOF".
    ASSERT_EQ(read(Patch({Record(0x454F46, {0xAB})})), IpsRead::Valid);
    ASSERT_EQ(records.size(), 1u);
    EXPECT_EQ(records[0].offset, 0x454F46u);
    // "PATCH" and "EOF" alone: a patch without records.
    EXPECT_EQ(read(Text("PATCHEOF")), IpsRead::Valid);
    EXPECT_TRUE(records.empty());
    EXPECT_EQ(read(Text("PATCHEOFjunk")), IpsRead::Valid);
    EXPECT_TRUE(records.empty());
    EXPECT_EQ(read(Text("PATCH")), IpsRead::NoEof);
}

TEST(IpsRead, RecordsPastTheEndLengthenTheTarget) {
    Bytes patch = Patch({Record(6, {1, 2}), Record(100, {})});
    EXPECT_EQ(Applied(patch, {9, 9, 9}), Bytes({9, 9, 9, 0, 0, 0, 1, 2}));
    EXPECT_EQ(Applied(patch, Bytes(10, 9)), Bytes({9, 9, 9, 9, 9, 9, 1, 2, 9, 9}));
}

// Random pairs with changes, growth, equal stretches of 8 and 9 bytes and
// runs longer than one record: the patch always rebuilds the modified bytes.
TEST(IpsRoundTrip, RandomPairs) {
    std::mt19937 random(20240611);
    for (int round = 0; round < 300; ++round) {
        size_t length = random() % (round % 10 == 0 ? 100000 : 600);
        Bytes original(length);
        for (auto& byte : original) byte = static_cast<unsigned char>(random() % 4);
        Bytes modified = original;
        modified.resize(random() % 3 == 0 ? length + random() % 70 : length - random() % (length / 4 + 1));
        for (size_t i = length; i < modified.size(); ++i) modified[i] = static_cast<unsigned char>(random() % 4);
        for (int change = random() % 12; change > 0 && !modified.empty(); --change) {
            size_t at = random() % modified.size();
            size_t run = random() % 5 == 0 ? 33000 + random() % 3000 : 1 + random() % 20;
            for (size_t i = at; i < modified.size() && i < at + run; ++i)
                modified[i] = static_cast<unsigned char>(modified[i] ^ (i % 10 < 8 || run < 30 ? 1 : 0));
            size_t gap = 8 + random() % 2;  // an equal stretch carried along, or one ending the record
            if (at + run + gap < modified.size()) modified[at + run + gap] ^= 0x80;
        }
        Bytes patch;
        IpsBuild built = BuildIpsPatch(original.data(), original.size(), modified.data(), modified.size(), patch);
        if (built == IpsBuild::Identical) {
            EXPECT_TRUE(std::equal(modified.begin(), modified.end(), original.begin()));
            continue;
        }
        ASSERT_EQ(built, IpsBuild::Built);
        Bytes result = Applied(patch, original);
        result.resize(std::max(result.size(), modified.size()));
        EXPECT_EQ(Bytes(result.begin(), result.begin() + modified.size()), modified) << round;
    }
}

class IpsFilesTest : public ::testing::Test {
protected:
    std::string Path(const std::string& name) { return dir / name; }
    TempDir dir;
};

TEST_F(IpsFilesTest, CreateWritesThePatch) {
    WriteFile(Path("old.smc"), Bytes{0, 0x11, 0x22, 0x33});
    WriteFile(Path("new.smc"), Bytes{0, 0xAA, 0x22, 0x33, 0x44});
    ASSERT_EQ(Trelvane_CreateIPS(Path("a.ips").c_str(), Path("old.smc").c_str(), Path("new.smc").c_str()), 1);
    EXPECT_EQ(ReadFile(Path("a.ips")), Patch({Record(1, {0xAA, 0x22, 0x33, 0x44})}));

    // A patch written over the modified file itself still describes it.
    ASSERT_EQ(Trelvane_CreateIPS(Path("new.smc").c_str(), Path("old.smc").c_str(), Path("new.smc").c_str()), 1);
    EXPECT_EQ(ReadFile(Path("new.smc")), Patch({Record(1, {0xAA, 0x22, 0x33, 0x44})}));
}

TEST_F(IpsFilesTest, CreateFailures) {
    WriteFile(Path("old.smc"), Bytes{1, 2, 3});
    EXPECT_EQ(Trelvane_CreateIPS(Path("a.ips").c_str(), Path("none.smc").c_str(), Path("old.smc").c_str()), 0);
    EXPECT_EQ(LastError().code, TLERR_FILE_NOREAD);
    EXPECT_EQ(LastError().file, Path("none.smc"));

    WriteFile(Path("same.smc"), Bytes{1, 2});
    EXPECT_EQ(Trelvane_CreateIPS(Path("a.ips").c_str(), Path("old.smc").c_str(), Path("same.smc").c_str()), 0);
    EXPECT_EQ(LastError().code, TLERR_IPS_IDENTICAL);
    EXPECT_EQ(LastError().file, "unknown");
    EXPECT_FALSE(FileExists(Path("a.ips")));

    WriteFile(Path("new.smc"), Bytes{1, 2, 4});
    EXPECT_EQ(Trelvane_CreateIPS(Path("no/a.ips").c_str(), Path("old.smc").c_str(), Path("new.smc").c_str()), 0);
    EXPECT_EQ(LastError().code, TLERR_FILE_NOCREATE);
    EXPECT_EQ(LastError().file, Path("no/a.ips"));
}

TEST_F(IpsFilesTest, CreateRefusesChangesBeyondSixteenMegabytes) {
    Bytes original(IPS_OFFSET_LIMIT + 16, 0), modified = original;
    modified[IPS_OFFSET_LIMIT + 8] = 1;
    WriteFile(Path("old.smc"), original);
    WriteFile(Path("new.smc"), modified);
    WriteFile(Path("a.ips"), "keep");
    EXPECT_EQ(Trelvane_CreateIPS(Path("a.ips").c_str(), Path("old.smc").c_str(), Path("new.smc").c_str()), 0);
    EXPECT_STREQ(Trelvane_GetLastError(), "Changes at or beyond 16 MiB in an IPS file not supported.");
    EXPECT_EQ(ReadText(Path("a.ips")), "keep");
}

TEST_F(IpsFilesTest, ApplyPatchesInPlace) {
    WriteFile(Path("rom.gb"), Bytes{1, 2, 3, 4});
    WriteFile(Path("a.ips"), Patch({Record(1, {9}), Record(6, {7, 8}), Record(40, {})}));
    ASSERT_EQ(Trelvane_ApplyIPS(Path("a.ips").c_str(), Path("rom.gb").c_str()), 1);
    EXPECT_EQ(ReadFile(Path("rom.gb")), Bytes({1, 9, 3, 4, 0, 0, 7, 8}));

    WriteFile(Path("empty.ips"), "PATCHEOF");
    ASSERT_EQ(Trelvane_ApplyIPS(Path("empty.ips").c_str(), Path("rom.gb").c_str()), 1);
    EXPECT_EQ(ReadFile(Path("rom.gb")), Bytes({1, 9, 3, 4, 0, 0, 7, 8}));

    // An empty file grows from nothing; a patch applied to itself reads its
    // records before they overwrite it.
    WriteFile(Path("blank.nes"), Bytes{});
    WriteFile(Path("b.ips"), Patch({Record(2, {5})}));
    ASSERT_EQ(Trelvane_ApplyIPS(Path("b.ips").c_str(), Path("blank.nes").c_str()), 1);
    EXPECT_EQ(ReadFile(Path("blank.nes")), Bytes({0, 0, 5}));
    WriteFile(Path("self.ips"), Patch({Record(0, Text("XYZ")), Record(3, Text("W"))}));
    ASSERT_EQ(Trelvane_ApplyIPS(Path("self.ips").c_str(), Path("self.ips").c_str()), 1);
    EXPECT_EQ(ReadText(Path("self.ips")), "XYZWH\0\0\0\0\x03XYZ\0\0\x03\0\x01WEOF"s);
}

}  // namespace
