// BPS patch sizes on the reference pairs: bps_reference/pairs.py writes them
// (seeded, so always the same), sizes.json gives for each the size of the
// patch Floating IPS 1.31 makes. No patch of ours may be larger,
// and each must rebuild its modified file.
#include <gtest/gtest.h>

#include <map>
#include <regex>
#include <string>

#include "patches/bps_apply.h"
#include "patches/bps_create.h"
#include "support/test_support.h"

namespace {

const std::string kReference = TRELVANE_SOURCE_DIR "/tests/patches/bps_reference";

std::map<std::string, size_t> ReferenceSizes() {
    std::map<std::string, size_t> sizes;
    const std::string json = ReadText(kReference + "/sizes.json");
    const std::regex entry("\"(\\w+)\": (\\d+)");
    for (auto it = std::sregex_iterator(json.begin(), json.end(), entry); it != std::sregex_iterator(); ++it)
        sizes[(*it)[1]] = std::stoul((*it)[2]);
    return sizes;
}

TEST(BpsReferenceSizes, NoPatchLargerThanTheReference) {
    TempDir dir;
    ASSERT_EQ(RunProgram(dir.path(), "/usr/bin/python3", {kReference + "/pairs.py", dir / "pairs"}).status, 0);
    const std::map<std::string, size_t> sizes = ReferenceSizes();
    ASSERT_EQ(sizes.size(), 30u);
    for (const auto& [name, reference] : sizes) {
        SCOPED_TRACE(name);
        const Bytes original = ReadFile(dir / ("pairs/" + name + ".old"));
        const Bytes modified = ReadFile(dir / ("pairs/" + name + ".new"));
        Bytes patch, made;
        BuildBpsPatch(original.data(), original.size(), modified.data(), modified.size(), patch);
        EXPECT_LE(patch.size(), reference);
        EXPECT_TRUE(ApplyBpsPatch(patch.data(), patch.size(), original.data(), original.size(), made).ok());
        EXPECT_TRUE(made == modified);
    }
}

}  // namespace
