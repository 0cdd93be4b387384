#include "patches/ips_format.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <iterator>
#include <random>
#include <string>
#include <tuple>

#include "core/last_error.h"
#include "support/test_support.h"
#include "trelvane.h"

namespace {

using namespace std::string_literals;

Bytes Text(const std::string& text) { return Bytes(text.begin(), text.end()); }

Bytes Record(size_t offset, Bytes data) {
    data.insert(data.begin(), {static_cast<unsigned char>(offset >> 16), static_cast<unsigned char>(offset >> 8),
                               static_cast<unsigned char>(offset), static_cast<unsigned char>(data.size() >> 8),
                               static_cast<unsigned char>(data.size())});
    return data;
}

Bytes Patch(const std::vector<Bytes>& records) {
    Bytes patch = Text("PATCH");
    for (const Bytes& record : records) patch.insert(patch.end(), record.begin(), record.end());
    patch.insert(patch.end(), {'E', 'O', 'F'});
    return patch;
}

Bytes Build(const Bytes& original, const Bytes& modified, IpsBuild expected = IpsBuild::Built) {
    Bytes patch;
    EXPECT_EQ(BuildIpsPatch(original.data(), original.size(), modified.data(), modified.size(), patch), expected);
    return patch;
}

Bytes Slice(const Bytes& bytes, size_t from, size_t to) { return Bytes(bytes.begin() + from, bytes.begin() + to); }

TEST(IpsBuild, RecordsOfChangedRuns) {
    Bytes original(40, 0x10), modified = original;
    modified[5] = 1;
    modified[14] = 2;  // 8 equal bytes between: carried in one record
    EXPECT_EQ(Build(original, modified), Patch({Record(5, Slice(modified, 5, 15))}));
    modified[14] = 0x10;
    modified[15] = 2;  // 9 equal bytes between: two records
    modified[31] = 4;
    modified[39] = 3;  // the last byte closes a run
    EXPECT_EQ(Build(original, modified), Patch({Record(5, {1}), Record(15, {2}), Record(31, Slice(modified, 31, 40))}));

    Bytes zeros(0x100 + 32769 + 20, 0), longRun = zeros;
    for (size_t i = 0x100; i < 0x100 + 32769; ++i) longRun[i] = static_cast<unsigned char>(i | 1);
    EXPECT_EQ(Build(zeros, longRun),
              Patch({Record(0x100, Slice(longRun, 0x100, 0x8100)), Record(0x8100, {longRun[0x8100]})}));
}

TEST(IpsBuild, LengthsDiffer) {
    Bytes original(30, 7), longer = original;
    longer.insert(longer.end(), 16, 7);  // equal values, but beyond the original
    EXPECT_EQ(Build(original, longer), Patch({Record(30, Bytes(16, 7))}));
    EXPECT_EQ(Build({}, {}), Text("PATCHEOF"));
    for (size_t kept : {30, 12, 0}) Build(original, Slice(original, 0, kept), IpsBuild::Identical);
    Bytes shorterChanged = Slice(original, 0, 12);
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
    const Bytes good = Patch({Record(2, {1, 2}), Record(9, {}), Record(4, {3})});
    const std::tuple<Bytes, IpsRead, size_t> cases[] = {
        {Text("PATC"), IpsRead::NotIps, 0},
        {Text("patch"), IpsRead::NotIps, 0},
        {good, IpsRead::Valid, 3},
        {Slice(good, 0, good.size() - 3), IpsRead::NoEof, 0},
        {Slice(good, 0, 11), IpsRead::NoEof, 0},  // data cut short
        {Patch({Record(0x454F46, {0xAB})}), IpsRead::Valid, 1},  // the first record may spell "EOF"
        {Text("PATCHEOF"), IpsRead::Valid, 0},
        {Text("PATCHEOFjunk"), IpsRead::Valid, 0},
        {Text("PATCH"), IpsRead::NoEof, 0},
    };
    for (const auto& [patch, result, count] : cases) {
        SCOPED_TRACE(std::string(patch.begin(), patch.end()));
        std::vector<IpsRecord> records;
        ASSERT_EQ(ReadIpsRecords(patch.data(), patch.size(), records), result);
        if (result == IpsRead::Valid) {
            EXPECT_EQ(records.size(), count);
        }
    }
}

// A run-length record: size 0, then the count and the byte.
Bytes RunRecord(size_t offset, size_t count, unsigned char byte) {
    return Bytes{static_cast<unsigned char>(offset >> 16), static_cast<unsigned char>(offset >> 8),
                 static_cast<unsigned char>(offset),       0,
                 0,
                 static_cast<unsigned char>(count >> 8),   static_cast<unsigned char>(count),
                 byte};
}

Bytes operator+(Bytes head, const Bytes& tail) {
    head.insert(head.end(), tail.begin(), tail.end());
    return head;
}

// Reads patch and applies it to target as a file would be patched.
Bytes Applied(const Bytes& patch, Bytes target) {
    std::vector<IpsRecord> records;
    EXPECT_EQ(ReadIpsRecords(patch.data(), patch.size(), records), IpsRead::Valid);
    target.resize(IpsPatchedLength(records, target.size()));
    CopyIpsRecords(records, target.data());
    return target;
}

TEST(IpsRead, RunLengthRecordsAndTruncationFromOtherPatchers) {
    const Bytes target = {0, 1, 2, 3, 4, 5, 6, 7};
    const std::tuple<const char*, Bytes, Bytes> cases[] = {
        {"a run inside", Patch({RunRecord(2, 3, 0xAA)}), {0, 1, 0xAA, 0xAA, 0xAA, 5, 6, 7}},
        {"a run that grows the target", Patch({RunRecord(9, 2, 0x55)}), {0, 1, 2, 3, 4, 5, 6, 7, 0, 0x55, 0x55}},
        {"runs between literal records",
         Patch({Record(0, {9}), RunRecord(1, 2, 0xEE), Record(3, {8, 8}), RunRecord(6, 1, 0x33)}),
         {9, 0xEE, 0xEE, 8, 8, 5, 0x33, 7}},
        {"a run as the first record", Patch({RunRecord(0x454F46, 1, 0x11)}) + Bytes{0, 0, 7}, {0, 1, 2, 3, 4, 5, 6}},
        {"truncation", Patch({Record(1, {0xBB})}) + Bytes{0, 0, 3}, {0, 0xBB, 2}},
        {"truncation cuts a record short", Patch({Record(6, {9, 9, 9, 9})}) + Bytes{0, 0, 9},
         {0, 1, 2, 3, 4, 5, 9, 9, 9}},
        {"truncation cuts a run short", Patch({RunRecord(4, 0x100, 0x44)}) + Bytes{0, 0, 6}, {0, 1, 2, 3, 0x44, 0x44}},
        {"truncation to nothing", Patch({Record(2, {1})}) + Bytes{0, 0, 0}, {}},
        {"truncation beyond the end does not lengthen", Patch({Record(0, {0xCC})}) + Bytes{0, 1, 0},
         {0xCC, 1, 2, 3, 4, 5, 6, 7}},
        {"truncation without records", Text("PATCHEOF") + Bytes{0, 0, 2}, {0, 1}},
        {"two bytes behind the end marker are ignored", Patch({Record(0, {0xCC})}) + Bytes{0, 0},
         {0xCC, 1, 2, 3, 4, 5, 6, 7}},
        {"four bytes behind the end marker are ignored", Patch({Record(0, {0xCC})}) + Bytes{0, 0, 1, 0},
         {0xCC, 1, 2, 3, 4, 5, 6, 7}},
        // A size of 0 followed by a count of 0 is no run: read literally, it
        // is an empty record and the bytes behind "EOF" are ignored.
        {"valid only literally", Patch({Record(1, {}), Record(3, {0xEE})}) + Bytes{0, 0, 1},
         {0, 1, 2, 0xEE, 4, 5, 6, 7}},
    };
    for (const auto& [name, patch, expected] : cases) {
        SCOPED_TRACE(name);
        EXPECT_EQ(Applied(patch, target), expected);
    }

    // Read literally, this run's count and byte spell "EOF" and the patch
    // would change nothing; the run-length reading is the one applied.
    const Bytes misaligned = Patch({RunRecord(2, 0x454F, 0x46)});
    Bytes expected(2 + 0x454F, 0x46);
    expected[0] = 0xA0;
    expected[1] = 0xA1;
    EXPECT_EQ(Applied(misaligned, {0xA0, 0xA1, 0xA2}), expected);

    std::vector<IpsRecord> records;
    ASSERT_EQ(ReadIpsRecords(misaligned.data(), misaligned.size(), records), IpsRead::Valid);
    ASSERT_EQ(records.size(), 1u);
    EXPECT_EQ(records[0].kind, IpsRecordKind::Run);
    EXPECT_EQ(records[0].size, 0x454Fu);

    const Bytes refused[] = {
        Text("PATCH") + RunRecord(1, 2, 7),                      // no end marker
        Text("PATCH") + Slice(RunRecord(1, 2, 7), 0, 7),        // the byte is missing
        Text("PATCH") + RunRecord(1, 0, 7) + Text("EOF"),       // a count of 0, and no record either way
    };
    for (const Bytes& patch : refused) {
        EXPECT_EQ(ReadIpsRecords(patch.data(), patch.size(), records), IpsRead::NoEof);
    }
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
        std::vector<IpsRecord> records;
        ASSERT_EQ(ReadIpsRecords(patch.data(), patch.size(), records), IpsRead::Valid);
        Bytes result = original;
        result.resize(std::max<size_t>(IpsPatchedLength(records, length), modified.size()));
        CopyIpsRecords(records, result.data());
        EXPECT_EQ(Slice(result, 0, modified.size()), modified) << round;
    }
}

class IpsFilesTest : public ::testing::Test {
protected:
    long Create(const char* ips, const char* original, const char* modified) {
        return Trelvane_CreateIPS((dir / ips).c_str(), (dir / original).c_str(), (dir / modified).c_str());
    }
    long Apply(const char* ips, const char* rom) { return Trelvane_ApplyIPS((dir / ips).c_str(), (dir / rom).c_str()); }
    TempDir dir;
};

TEST_F(IpsFilesTest, CreateOverTheModifiedFileStillDescribesIt) {
    WriteFile(dir / "old.smc", Bytes{0, 0x11, 0x22, 0x33});
    WriteFile(dir / "new.smc", Bytes{0, 0xAA, 0x22, 0x33, 0x44});
    ASSERT_EQ(Create("new.smc", "old.smc", "new.smc"), 1);
    EXPECT_EQ(ReadFile(dir / "new.smc"), Patch({Record(1, {0xAA, 0x22, 0x33, 0x44})}));
}

TEST_F(IpsFilesTest, CreateRefusals) {
    Bytes original(IPS_OFFSET_LIMIT + 16, 0), modified = original;
    modified[IPS_OFFSET_LIMIT + 8] = 1;
    WriteFile(dir / "old.smc", original);
    WriteFile(dir / "new.smc", modified);
    WriteFile(dir / "a.ips", "keep");
    EXPECT_EQ(Create("a.ips", "old.smc", "new.smc"), 0);
    EXPECT_STREQ(Trelvane_GetLastError(), "Changes at or beyond 16 MiB in an IPS file not supported.");
    EXPECT_EQ(ReadText(dir / "a.ips"), "keep");
    WriteFile(dir / "new.smc", Bytes{1});
    EXPECT_EQ(Create("no/a.ips", "old.smc", "new.smc") + LastError().code, TLERR_FILE_NOCREATE);
}

TEST_F(IpsFilesTest, ApplyGrowsTheFileAndReadsThePatchFirst) {
    WriteFile(dir / "rom.gb", Bytes{1, 2, 3, 4});
    WriteFile(dir / "a.ips", Patch({Record(1, {9}), Record(6, {7, 8}), Record(40, {})}));
    ASSERT_EQ(Apply("a.ips", "rom.gb"), 1);
    EXPECT_EQ(ReadFile(dir / "rom.gb"), Bytes({1, 9, 3, 4, 0, 0, 7, 8}));

    // Run-length records and truncation from other patchers.
    WriteFile(dir / "rom.gb", Bytes{1, 2, 3, 4, 5, 6});
    WriteFile(dir / "rle.ips", Patch({RunRecord(1, 2, 0xAB)}) + Bytes{0, 0, 4});
    ASSERT_EQ(Apply("rle.ips", "rom.gb"), 1);
    EXPECT_EQ(ReadFile(dir / "rom.gb"), Bytes({1, 0xAB, 0xAB, 4}));
    WriteFile(dir / "bad.ips", Patch({RunRecord(0, 0, 1)}));
    EXPECT_EQ(Apply("bad.ips", "rom.gb") + LastError().code, TLERR_IPS_NO_EOF);
    EXPECT_EQ(ReadFile(dir / "rom.gb"), Bytes({1, 0xAB, 0xAB, 4}));

    // A patch applied to itself reads its records before they overwrite it.
    WriteFile(dir / "self.ips", Patch({Record(0, Text("XYZ")), Record(3, Text("W"))}));
    ASSERT_EQ(Apply("self.ips", "self.ips"), 1);
    EXPECT_EQ(ReadText(dir / "self.ips"), "XYZWH\0\0\0\0\x03XYZ\0\0\x03\0\x01WEOF"s);
}

TEST_F(IpsFilesTest, ApplyRewritesTheWholeFileKeepingItsModeOrNothing) {
    WriteFile(dir / "rom.gb", Bytes{1, 2, 3, 4});
    std::filesystem::permissions(dir / "rom.gb", std::filesystem::perms(0640));
    WriteFile(dir / "a.ips", Patch({Record(2, {9})}));
    ASSERT_EQ(Apply("a.ips", "rom.gb"), 1);
    EXPECT_EQ(ReadFile(dir / "rom.gb"), Bytes({1, 2, 9, 4}));
    EXPECT_EQ(std::filesystem::status(dir / "rom.gb").permissions(), std::filesystem::perms(0640));
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(dir.path()), {}), 2);
}

}  // namespace
