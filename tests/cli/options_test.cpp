#include "cli/options.h"

#include <gtest/gtest.h>

#include <functional>

namespace kelvane {
namespace {

class Options : public ::testing::Test {
protected:
    Result<ScanRequest> request(const std::function<void(RawOptions&)>& type)
    {
        RawOptions raw;
        type(raw);
        return makeRequest(raw, {"/a", "/b"}, *rules_);
    }
    std::uint32_t flags(const std::function<void(RawOptions&)>& type) { return request(type)->definition.flags; }

private:
    std::unique_ptr<PathRules> rules_ = makePosixPathRules();
};

constexpr std::uint32_t everyCopy =
    5 | scan_flag::protect | scan_flag::skipEmpty | scan_flag::subfolders | scan_flag::skipLinks | scan_flag::contents;

TEST_F(Options, WithoutAnyEveryExactCopyIsLookedFor)
{
    const auto plain = request([](RawOptions&) {});
    EXPECT_EQ(plain->definition.flags, everyCopy);
    EXPECT_EQ(plain->definition.roots, "/a|/b");
    EXPECT_EQ(plain->definition.properties + plain->definition.masks + plain->definition.sizeRange, "");
    EXPECT_EQ(plain->options.flags, EngineOptions{}.flags);
}

TEST_F(Options, ValuesReachTheDefinition)
{
    EXPECT_EQ(flags([](auto& raw) { raw.minSize = "0"; }), everyCopy & ~scan_flag::skipEmpty);
    EXPECT_EQ(flags([](auto& raw) { raw.minSize = "1"; }), everyCopy);
    EXPECT_EQ(request([](auto& raw) { raw.minSize = "2K"; })->definition.sizeRange, "2048-");
    EXPECT_EQ(request([](auto& raw) { raw.masks = "c"; })->definition.masks, "*.c");
    EXPECT_EQ(request([](auto& raw) { raw.masks = "c,h"; })->definition.masks, "c,h");
    EXPECT_EQ(request([](auto& raw) { raw.similar = "80"; })->definition.effectiveSimilarity(), 80);
}

TEST(ParseSize, UnderstandsBinaryUnits)
{
    EXPECT_EQ(parseSize("4096"), 4096u);
    EXPECT_EQ(parseSize("3k"), 3072u);
    EXPECT_EQ(parseSize("10MB"), 10'485'760u);
    EXPECT_EQ(parseSize("1GiB"), 1'073'741'824u);
    EXPECT_EQ(parseSize("16777215T"), std::uint64_t{16'777'215} << 40);
    for (const char* text : {"", "K", "-1", "1.5M", "1 K", "1X", "1KK", "16777216T", "18446744073709551616"})
        EXPECT_FALSE(parseSize(text)) << text;
}

}  // namespace
}  // namespace kelvane
