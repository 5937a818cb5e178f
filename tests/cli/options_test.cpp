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
    std::string refusal(const std::function<void(RawOptions&)>& type)
    {
        const auto answer = request(type);
        return answer ? "accepted" : answer.error().detail;
    }

private:
    std::unique_ptr<PathRules> rules_ = makePosixPathRules();
};

constexpr std::uint32_t everyCopy =
    5 | scan_flag::protect | scan_flag::skipEmpty | scan_flag::subfolders | scan_flag::skipLinks | scan_flag::contents;

TEST_F(Options, WithoutAnyEveryExactCopyIsLookedFor)
{
    const auto plain = request([](RawOptions&) {});
    ASSERT_TRUE(plain);
    EXPECT_EQ(plain->definition.flags, everyCopy);
    EXPECT_EQ(plain->definition.roots, "/a|/b");
    EXPECT_EQ(plain->definition.properties, "");
    EXPECT_EQ(plain->definition.masks, "");
    EXPECT_EQ(plain->definition.sizeRange, "");
    EXPECT_EQ(plain->options.flags, EngineOptions{}.flags);
    EXPECT_EQ(plain->options.threads, 0u);
    EXPECT_FALSE(plain->seed);
    EXPECT_EQ(plain->format, OutputFormat::text);
    EXPECT_EQ(plain->progress, ProgressMode::automatic);
}

TEST_F(Options, EachFlagChangesItsOwnBits)
{
    EXPECT_EQ(flags([](auto& raw) { raw.noProtect = true; }), everyCopy & ~scan_flag::protect);
    EXPECT_EQ(flags([](auto& raw) { raw.noSubfolders = true; }), everyCopy & ~scan_flag::subfolders);
    EXPECT_EQ(flags([](auto& raw) { raw.followLinks = true; }), everyCopy & ~scan_flag::skipLinks);
    EXPECT_EQ(flags([](auto& raw) { raw.sameType = true; }), everyCopy | scan_flag::sameType);
    EXPECT_EQ(flags([](auto& raw) { raw.ignoreSmall = true; }), everyCopy | scan_flag::ignoreSmall);
    EXPECT_EQ(flags([](auto& raw) { raw.category = "images"; }), (everyCopy & ~scan_flag::categoryMask) | 3);
    const auto engine = request([](auto& raw) { raw.followLinks = raw.archives = raw.lowPriority = true; });
    EXPECT_EQ(engine->options.flags, EngineOptions{}.flags | option_flag::followJunctions |
                                         option_flag::enterVirtualFolders | option_flag::lowPriority);
}

TEST_F(Options, ContentsAreComparedUnlessOnlyPropertiesAreAskedFor)
{
    const auto compares = [&](const char* match, bool content, bool noContent) {
        return (flags([&](RawOptions& raw) {
                    raw.match = match;
                    raw.content = content;
                    raw.noContent = noContent;
                }) &
                scan_flag::contents) != 0;
    };
    EXPECT_TRUE(compares("", false, false));
    EXPECT_FALSE(compares("System.Size", false, false));
    EXPECT_TRUE(compares("System.Size", true, false));
    EXPECT_FALSE(compares("System.Size", false, true));
}

TEST_F(Options, SimilarityMakesTheSearchFuzzy)
{
    const auto fuzzy = request([](auto& raw) { raw.similar = "80"; });
    EXPECT_TRUE(fuzzy->definition.has(scan_flag::fuzzy));
    EXPECT_EQ(fuzzy->definition.effectiveSimilarity(), 80);
}

TEST_F(Options, TheSmallestSizeDecidesAboutEmptyFiles)
{
    EXPECT_EQ(flags([](auto& raw) { raw.minSize = "0"; }), everyCopy & ~scan_flag::skipEmpty);
    EXPECT_EQ(flags([](auto& raw) { raw.minSize = "1"; }), everyCopy);
    EXPECT_EQ(request([](auto& raw) { raw.minSize = "2K"; })->definition.sizeRange, "2048-");
}

TEST_F(Options, AMaskOfOneCharacterIsStillAChoice)
{
    EXPECT_EQ(request([](auto& raw) { raw.masks = "c"; })->definition.masks, "*.c");
    EXPECT_EQ(request([](auto& raw) { raw.masks = "c,h"; })->definition.masks, "c,h");
}

TEST_F(Options, WhatCannotBeMeantIsRefusedWithTheChoices)
{
    using ::testing::AllOf;
    using ::testing::HasSubstr;
    EXPECT_THAT(refusal([](auto& raw) { raw.category = "image"; }),
                AllOf(HasSubstr("did you mean images?"), HasSubstr("known: audio, video, documents")));
    EXPECT_THAT(refusal([](auto& raw) { raw.format = "jsn"; }), HasSubstr("did you mean json?"));
    EXPECT_THAT(refusal([](auto& raw) { raw.progress = "on"; }), HasSubstr("known: auto, always, never"));
    EXPECT_THAT(refusal([](auto& raw) { raw.settings = "x.ini"; }), HasSubstr("not built yet"));
    EXPECT_THAT(refusal([](auto& raw) { raw.noContent = true; }), HasSubstr("--match"));
    EXPECT_THAT(refusal([](auto& raw) { raw.content = raw.noContent = true; }), HasSubstr("exclude"));
    EXPECT_THAT(refusal([](auto& raw) { (raw.format = "csv", raw.json = true); }), HasSubstr("exclude"));
    EXPECT_THAT(refusal([](auto& raw) { raw.masks = " , "; }), HasSubstr("--masks"));
    for (const char* similar : {"0", "101", "-1", "9x", "1e1", " 5"})
        EXPECT_THAT(refusal([&](auto& raw) { raw.similar = similar; }), HasSubstr("--similar takes")) << similar;
    for (const char* threads : {"0", "257", "99999999999999999999"})
        EXPECT_THAT(refusal([&](auto& raw) { raw.threads = threads; }), HasSubstr("--threads takes")) << threads;
    EXPECT_THAT(refusal([](auto& raw) { raw.minSize = "many"; }), HasSubstr("--min-size takes"));
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
