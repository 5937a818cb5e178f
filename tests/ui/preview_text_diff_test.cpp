#include "ui/preview/text_diff.h"

#include <random>

#include "ui/preview/aligned_texts.h"

namespace kelvane {
namespace {

using ::testing::ElementsAre;

// By the plain table of dynamic programming.
std::size_t longestCommon(const std::vector<std::uint32_t>& a, const std::vector<std::uint32_t>& b)
{
    std::vector<std::vector<std::size_t>> table(a.size() + 1, std::vector<std::size_t>(b.size() + 1));
    for (std::size_t i = 1; i <= a.size(); ++i)
        for (std::size_t j = 1; j <= b.size(); ++j)
            table[i][j] = a[i - 1] == b[j - 1] ? table[i - 1][j - 1] + 1 : std::max(table[i - 1][j], table[i][j - 1]);
    return table[a.size()][b.size()];
}

TEST(PreviewTextDiff, FindsALongestCommonSequenceOfAnyTwo)
{
    std::minstd_rand random(7);
    for (int round = 0; round < 300; ++round) {
        std::vector<std::uint32_t> a(random() % 14), b(random() % 14);
        for (auto* const numbers : {&a, &b})
            for (auto& number : *numbers)
                number = static_cast<std::uint32_t>(random() % 4);
        const CommonSequence common = commonSequence(a, b, 100);
        EXPECT_FALSE(common.tooDifferent);
        ASSERT_EQ(common.places.size(), longestCommon(a, b)) << "round " << round;
        for (std::size_t i = 0; i < common.places.size(); ++i) {
            ASSERT_EQ(a[common.places[i].a], b[common.places[i].b]);
            ASSERT_TRUE(i == 0 ||
                        (common.places[i - 1].a < common.places[i].a && common.places[i - 1].b < common.places[i].b));
        }
    }
}

TEST(PreviewTextDiff, GivesUpOnWhatDiffersTooMuchButKeepsWhatBothBeginAndEndWith)
{
    std::vector<std::uint32_t> a{1}, b{1};
    for (std::uint32_t i = 0; i < 5'000; ++i) {
        a.push_back(10 + i);
        b.push_back(100'000 + i);
    }
    a.push_back(2);
    b.push_back(2);
    const CommonSequence common = commonSequence(a, b, 100);
    EXPECT_TRUE(common.tooDifferent);
    EXPECT_THAT(common.places, ElementsAre(CommonPlace{0, 0}, CommonPlace{5'001, 5'001}));
}

TEST(PreviewTextDiff, MarksTheWordsThatChanged)
{
    const WordChanges changes = changedWords(u"the quick brown fox", u"the slow brown fox runs");
    EXPECT_THAT(changes.a, ElementsAre(TextRange{4, 5}));
    EXPECT_THAT(changes.b, ElementsAre(TextRange{4, 4}, TextRange{18, 5}));
}

TEST(PreviewTextDiff, LinesUpThreeTextsByTheFirst)
{
    const AlignedTexts aligned =
        alignTexts({u"one\ntwo\nthree\n", u"one\ntwo and a half\nthree\r\n", u"zero\none\ntwo\nthree\nfour"});
    const auto texts = [&](std::size_t column) {
        std::vector<std::u16string> all;
        for (const AlignedLine& line : aligned.columns[column])
            all.push_back(line.there ? line.text : u"-");
        return all;
    };
    EXPECT_THAT(texts(0), ElementsAre(u"-", u"one", u"two", u"three", u"-"));
    EXPECT_THAT(texts(1), ElementsAre(u"-", u"one", u"two and a half", u"three", u"-"));
    EXPECT_THAT(texts(2), ElementsAre(u"zero", u"one", u"two", u"three", u"four"));
    EXPECT_THAT(aligned.places, ElementsAre(0u, 2u, 4u));
    EXPECT_THAT(aligned.columns[1][2].marks, ElementsAre(TextRange{3, 11}));
    EXPECT_FALSE(aligned.columns[2][2].differs);
    EXPECT_FALSE(aligned.columns[1][3].differs) << "the ends of lines make no difference";
}

TEST(PreviewTextDiff, TakesEmptyTexts)
{
    EXPECT_TRUE(alignTexts({u"", u""}).places.empty());
    EXPECT_THAT(alignTexts({u"", u"a"}).places, ElementsAre(0u));
    EXPECT_THAT(alignTexts({u"a", u""}).places, ElementsAre(0u));
}

}  // namespace
}  // namespace kelvane
