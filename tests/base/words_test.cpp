#include "base/words.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kelvane {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST(Words, AreSplitTrimmedAndNeverEmpty)
{
    EXPECT_THAT(splitWords(" a b ;;\tc;", ';'), ElementsAre("a b", "c"));
    EXPECT_THAT(splitWords("one", ';'), ElementsAre("one"));
    EXPECT_THAT(splitWords(" ; ;", ';'), IsEmpty());
    EXPECT_THAT(splitWords("", ';'), IsEmpty());
}

TEST(Words, WildcardsMatchRunsAndSingleBytes)
{
    const auto matches = [](const char* pattern) { return wildcardMatch(pattern, "holiday.tar.gz"); };
    for (const char* pattern : {"*", "holiday*", "*.gz", "*.*.*", "h*y*z", "???????.tar.gz", "holiday.tar.gz**"})
        EXPECT_TRUE(matches(pattern)) << pattern;
    for (const char* pattern : {"", "?", "*.GZ", "holiday", "*.gz?", "*tar", "h*x*z", "????????.tar.gz"})
        EXPECT_FALSE(matches(pattern)) << pattern;
    EXPECT_TRUE(wildcardMatch("", ""));
    EXPECT_TRUE(wildcardMatch("*", ""));
    EXPECT_FALSE(wildcardMatch("?", ""));
}

TEST(Words, ManyStarsAgainstALongNameEndSoon)
{
    std::string pattern;
    for (int i = 0; i < 50; ++i)
        pattern += "*a";
    EXPECT_FALSE(wildcardMatch(pattern + "b", std::string(20000, 'a')));
}

TEST(Words, NearestComeFirstAndFarOnesAreLeftOut)
{
    const std::vector<std::string> known = {"audio", "video", "images", "documents", "all"};
    EXPECT_THAT(nearestWords("VIDOE", known), ElementsAre("video"));
    EXPECT_THAT(nearestWords("vudio", known), ElementsAre("audio", "video"));
    EXPECT_THAT(nearestWords("vudio", known, 1), ElementsAre("audio"));
    EXPECT_THAT(nearestWords("images", {"images", "image", "mages2"}), ElementsAre("images", "image"));
    EXPECT_THAT(nearestWords("spreadsheet", known), IsEmpty());
}

}  // namespace
}  // namespace kelvane
