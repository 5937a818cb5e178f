#include "props/gestalt.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <random>

#include "props/made_up_texts.h"
#include "props/plain_gestalt.h"

namespace kelvane {
namespace {

using testing::plainMatch;

TEST(Gestalt, matchesTheWorkedExamples)
{
    EXPECT_EQ(gestaltMatch(u"ab", u"ab"), 2u);
    EXPECT_EQ(gestaltMatch(u"a", u"a"), 0u);
    EXPECT_EQ(gestaltMatch(u"ab", u"a"), 1u);
    EXPECT_EQ(gestaltMatch(u"abcxdef", u"abcydef"), 6u);
    EXPECT_EQ(gestaltMatch(u"", u"abc"), 0u);
}

class RandomGestalt : public ::testing::Test {
protected:
    std::u16string text(std::size_t length, unsigned letters, unsigned step = 1)
    {
        std::u16string text(length, u' ');
        std::generate(text.begin(), text.end(),
                      [&] { return static_cast<char16_t>(u'a' + step * (random() % letters)); });
        return text;
    }
    std::mt19937 random{11};
};

TEST_F(RandomGestalt, isThatOfThePlainRuleWhereMuchIsEquallyLong)
{
    for (int round = 0; round < 3000; ++round) {
        const unsigned letters = 1 + static_cast<unsigned>(random() % 5);
        const std::u16string x = text(random() % 41, letters), y = text(random() % 41, letters);
        ASSERT_EQ(gestaltMatch(x, y), plainMatch(x, y)) << "round " << round;
    }
}

// Around the length from which on another way of counting is taken, with few and with too many different characters.
TEST_F(RandomGestalt, isThatOfThePlainRuleForWholeProbes)
{
    constexpr unsigned alphabets[] = {1, 2, 3, 26, 300, 2000};
    for (int round = 0; round < 180; ++round) {
        const unsigned letters = alphabets[round % 6], step = round % 4 == 3 ? 31 : 1;
        std::u16string x = text(250 + random() % 9, letters, step), y = text(250 + random() % 9, letters, step);
        if (round % 3 == 0)
            y.replace(0, 100, x, random() % 150, 100);
        ASSERT_EQ(gestaltMatch(x, y), plainMatch(x, y)) << "round " << round;
    }
}

TEST(Gestalt, isThatOfThePlainRuleForWriting)
{
    testing::MadeUpTexts texts(12);
    for (unsigned round = 0; round < 60; ++round) {
        const std::u16string x = texts.text(256);
        const std::u16string y = texts.edited(x, 25 * (round % 5)).substr(0, 256 - round % 3);
        ASSERT_EQ(gestaltMatch(x, y), plainMatch(x, y)) << "round " << round;
    }
}

TEST(Gestalt, holdsForExtremes)
{
    std::u16string all(256, u' ');
    std::iota(all.begin(), all.end(), u'\0');
    const std::u16string turned = all.substr(128) + all.substr(0, 128), back(all.rbegin(), all.rend());
    const std::u16string same(256, u'\0');
    std::u16string other = same;
    other[255] = u'\uFFFF';
    for (const auto& [x, y] : {std::pair(all, turned), {all, back}, {same, other}, {other, same}, {same, all}}) {
        EXPECT_EQ(gestaltMatch(x, y), plainMatch(x, y));
        EXPECT_EQ(gestaltMatch(x.substr(2), y.substr(1)), plainMatch(x.substr(2), y.substr(1)));
    }
    EXPECT_EQ(gestaltMatch(all, all), 256u);
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
