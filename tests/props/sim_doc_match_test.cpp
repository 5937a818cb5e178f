#include <gtest/gtest.h>

#include <limits>

#include "props/made_up_documents.h"
#include "props/sim_doc_signature.h"

namespace kelvane {
namespace {

using testing::MadeUpTexts;
using testing::someDocuments;

constexpr std::int32_t lowest = std::numeric_limits<std::int32_t>::min();

// With the same numbers, at cut-offs around the score and where scores gather.
void expectTheSame(const SimDocDescriptor& a, const SimDocDescriptor& b, std::uint32_t seed)
{
    MinimalStandard random(seed);
    const std::int32_t score = compareDocuments(a, b, random);
    for (const std::int32_t similarity : {score - 1, score, score + 1, lowest, -1, 0, 1, 85, 697}) {
        MinimalStandard same(seed);
        const auto found = similarDocuments(a, b, similarity, same);
        ASSERT_EQ(found, score >= similarity ? std::optional(score) : std::nullopt) << "at " << similarity;
    }
}

TEST(SimilarDocuments, areThoseOfTheWholeComparison)
{
    MadeUpTexts texts(7), editor(70);
    for (std::uint32_t round = 0; round < 200; ++round) {
        SCOPED_TRACE(round);
        const auto [a, b] = someDocuments(texts, editor);
        expectTheSame(*a, *b, round);
    }
}

// Other alphabets, where the statistics alone decide, and weigh more than all probes.
TEST(SimilarDocuments, areThoseOfTheWholeComparisonForTextsOfUnlikeCharacters)
{
    MadeUpTexts texts(8);
    const std::u16string latin = texts.text(3000);
    std::u16string cyrillic = latin, mixed = latin;
    for (std::size_t i = 0; i < latin.size(); ++i) {
        cyrillic[i] = static_cast<char16_t>(latin[i] + 0x3D0);
        mixed[i] = i % 40 < 7 ? static_cast<char16_t>(0x4E00 + texts.below(3000)) : latin[i];
    }
    const std::u16string same(3000, u' ');
    for (const auto& first : {latin, cyrillic, mixed, same})
        for (const auto& second : {latin, cyrillic, mixed, same})
            for (const std::uint64_t size : {0u, 3000u, 3400u, 4000u})
                expectTheSame(*SimDocDescriptor::make(first, 3000), *SimDocDescriptor::make(second, size), 5);
}

TEST(SimilarDocuments, drawsNothingForSizesThatAreTooDifferent)
{
    class NoNumbers final : public RandomNumbers {
    public:
        std::uint32_t next() noexcept override
        {
            ADD_FAILURE() << "a number was drawn";
            return 1;
        }
    } none;
    const std::u16string text(2000, u'a');
    EXPECT_EQ(similarDocuments(*SimDocDescriptor::make(text, 100), *SimDocDescriptor::make(text, 120), 85, none),
              std::nullopt);
}

TEST(SimDocSignature, letsEditedDocumentsPassAndStopsOtherKindsOfText)
{
    MadeUpTexts texts(9), editor(90);
    for (std::uint32_t round = 0; round < 100; ++round) {
        const auto [a, b] = someDocuments(texts, editor);
        std::u16string figures(a->text());
        for (char16_t& unit : figures)
            unit = unit == u' ' || unit == u'\n' ? unit : static_cast<char16_t>(u'0' + texts.below(10));
        const SimDocSignature first(*a), second(*b), table(*SimDocDescriptor::make(figures, a->size()));
        const bool passes = SimDocSignature::mayReach(first, second, 85);
        MinimalStandard random(round);
        EXPECT_TRUE(passes || !similarDocuments(*a, *b, 85, random)) << "round " << round;
        EXPECT_EQ(passes, SimDocSignature::mayReach(second, first, 85));
        EXPECT_FALSE(SimDocSignature::mayReach(first, table, 85));
    }
}

TEST(SimDocSignature, knowsTheGatesThatAreCertain)
{
    const std::u16string text = MadeUpTexts(10).text(2000);
    const SimDocSignature small(*SimDocDescriptor::make(text, 100)), large(*SimDocDescriptor::make(text, 120));
    EXPECT_FALSE(SimDocSignature::mayReach(small, large, 1));
    for (const std::int32_t similarity : {lowest, 0, 80, 100})
        EXPECT_TRUE(SimDocSignature::mayReach(small, small, similarity));
    // One character all through: the largest product that there is.
    const SimDocSignature same(*SimDocDescriptor::make(std::u16string(131072, u'x'), 5));
    EXPECT_TRUE(SimDocSignature::mayReach(same, same, 100));
}

}  // namespace
}  // namespace kelvane
