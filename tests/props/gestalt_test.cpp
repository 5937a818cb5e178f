#include "props/gestalt.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

namespace kelvane {
namespace {

// The rule as it is told, without any of the short cuts.
std::uint32_t plainMatch(std::u16string_view x, std::u16string_view y)
{
    if (x.empty() || y.empty() || (x.size() == 1 && y.size() == 1))
        return 0;
    std::size_t bestX = 0, bestY = 0, best = 0;
    for (std::size_t i = 0; i < x.size(); ++i) {
        for (std::size_t j = 0; j < y.size(); ++j) {
            std::size_t length = 0;
            while (i + length < x.size() && j + length < y.size() && x[i + length] == y[j + length])
                ++length;
            if (length > best) {
                bestX = i;
                bestY = j;
                best = length;
            }
        }
    }
    if (best < 2)
        return static_cast<std::uint32_t>(best);
    return static_cast<std::uint32_t>(best) + plainMatch(x.substr(0, bestX), y.substr(0, bestY)) +
           plainMatch(x.substr(bestX + best), y.substr(bestY + best));
}

TEST(Gestalt, matchesTheWorkedExamples)
{
    EXPECT_EQ(gestaltMatch(u"ab", u"ab"), 2u);
    EXPECT_EQ(gestaltMatch(u"a", u"a"), 0u);
    EXPECT_EQ(gestaltMatch(u"ab", u"a"), 1u);
    EXPECT_EQ(gestaltMatch(u"abcxdef", u"abcydef"), 6u);
    EXPECT_EQ(gestaltMatch(u"", u"abc"), 0u);
}

TEST(Gestalt, agreesWithThePlainRuleOnRandomTexts)
{
    std::mt19937 random(11);
    const auto randomText = [&random](std::size_t longest, unsigned letters) {
        std::u16string text(random() % (longest + 1), u' ');
        std::generate(text.begin(), text.end(), [&] { return static_cast<char16_t>(u'a' + random() % letters); });
        return text;
    };
    for (int round = 0; round < 3000; ++round) {
        const unsigned letters = 2 + random() % 4;
        const std::u16string x = randomText(40, letters), y = randomText(40, letters);
        ASSERT_EQ(gestaltMatch(x, y), plainMatch(x, y)) << "round " << round;
    }
}

TEST(Gestalt, nestsDeeplyWithoutDeepCalls)
{
    // Blocks of two with something different between them: thousands of splits, each at the far end.
    std::u16string x, y;
    for (char16_t i = 0; i < 3000; ++i) {
        const char16_t unit = static_cast<char16_t>(0x4000 + i);
        x += {unit, unit, u'x'};
        y += {unit, unit, u'y'};
    }
    EXPECT_EQ(gestaltMatch(x, y), 6000u);
}

TEST(TextSimilarity, isTruncatedPercent)
{
    EXPECT_EQ(textSimilarity(u"", u""), 100);
    EXPECT_EQ(textSimilarity(u"a", u"a"), 100) << "equal texts are alike, however short";
    EXPECT_EQ(textSimilarity(u"a", u"b"), 0);
    EXPECT_EQ(textSimilarity(u"abc", u""), 0);
    EXPECT_EQ(textSimilarity(u"abcxdef", u"abcydef"), 85);  // 2 x 6 / 14
    EXPECT_EQ(textSimilarity(u"the long road", u"the long roads"), 96);
}

}  // namespace
}  // namespace kelvane
