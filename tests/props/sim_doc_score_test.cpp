#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>

#include "props/made_up_documents.h"
#include "props/plain_gestalt.h"
#include "props/sim_doc_descriptor.h"

namespace kelvane {
namespace {

using testing::MadeUpTexts;
using testing::plainMatch;

class CountedNumbers final : public RandomNumbers {
public:
    explicit CountedNumbers(std::uint64_t seed) : numbers_(seed) {}
    std::uint32_t next() noexcept override
    {
        ++drawn;
        return numbers_.next();
    }
    int drawn = 0;

private:
    MinimalStandard numbers_;
};

constexpr double weights[17] = {2.35328386279, -13.2024087886, -5.99597665932, -2.94753385697, -0.229590224926,
                                2.91534821264, 0.103264009043, 2.2574783055,   0.627420311485, -0.0984353457067,
                                1.58414681906, 1.80331584882,  2.37408173694,  3.08881074577,  -0.0331131457799,
                                7.47641845949, 1.48032022168};

double plainHalf(const SimDocDescriptor& a, const SimDocDescriptor& b, RandomNumbers& random)
{
    double features[17];
    for (std::size_t k = 0; k < 4; ++k)
        features[k] = std::fabs(a.statistics()[k] - b.statistics()[k]);
    const double sizeA = static_cast<double>(a.size()), sizeB = static_cast<double>(b.size());
    features[4] = sizeA + sizeB > 0 ? std::fabs(sizeA - sizeB) * 2 / (sizeA + sizeB) : 0;
    for (std::size_t k = 5; k < 17; ++k) {
        const std::uint32_t p = random.next() % (a.length() - 256);
        auto q = static_cast<std::uint32_t>(static_cast<double>(p) * b.length() / a.length());
        if (q + 256 >= b.length())
            q = b.length() - 256;
        const auto inA = a.text().substr(p, 256), inB = b.text().substr(q, 256);
        const std::uint32_t matched = k < 11 ? plainMatch(inA, inB) : plainMatch(inB, inA);
        features[k] = std::trunc(matched * 200) / 512 / 100;
    }
    double sum = -4.21507207888;
    for (std::size_t k = 0; k < 17; ++k)
        sum += weights[k] * features[k];
    return sum;
}

std::int32_t plainScore(const SimDocDescriptor& a, const SimDocDescriptor& b, RandomNumbers& random)
{
    const double first = plainHalf(a, b, random);
    if (first < -0.2)
        return -1;
    return static_cast<std::int32_t>(std::trunc((first + plainHalf(b, a, random)) * 0.36 * 50));
}

TEST(DocumentScore, equalTextsAndSizesAre697)
{
    MinimalStandard random(1);
    const std::u16string text = MadeUpTexts(1).text(1536);
    for (const std::uint64_t size : {0ull, 1536ull, 1ull << 62})
        EXPECT_EQ(compareDocuments(*SimDocDescriptor::make(text, size), *SimDocDescriptor::make(text, size), random),
                  697);
}

TEST(DocumentScore, sizesMoreThanFifteenPercentApartAreNotCompared)
{
    EXPECT_TRUE(sizesTooDifferent(100, 120));
    EXPECT_FALSE(sizesTooDifferent(115, 100));
    EXPECT_TRUE(sizesTooDifferent(0, 1));
    EXPECT_FALSE(sizesTooDifferent(0, 0));
    CountedNumbers random(1);
    const std::u16string text(2000, u'a');
    EXPECT_EQ(compareDocuments(*SimDocDescriptor::make(text, 120), *SimDocDescriptor::make(text, 100), random), -12345);
    EXPECT_EQ(random.drawn, 0);
    EXPECT_GT(compareDocuments(*SimDocDescriptor::make(text, 100), *SimDocDescriptor::make(text, 115), random), 600);
}

TEST(DocumentScore, isThatOfThePlainModel)
{
    MadeUpTexts texts(5), editor(50);
    int similar = 0, between = 0, different = 0;
    for (std::uint32_t round = 0; round < 60; ++round) {
        const auto [a, b] = testing::someDocuments(texts, editor);
        CountedNumbers random(round);
        MinimalStandard same(round);
        const std::int32_t score = compareDocuments(*a, *b, random);
        ASSERT_EQ(score, plainScore(*a, *b, same)) << "round " << round;
        ASSERT_EQ(random.drawn, score == -1 ? 12 : 24);
        ++(score >= 95 ? similar : score == -1 ? different : between);
    }
    EXPECT_GT(similar, 5);
    EXPECT_GT(between, 0);
    EXPECT_GT(different, 5);
}

TEST(DocumentScore, probesStayInsideOfBothTexts)
{
    // The shortest text against a long one, both ways; nothing but the sizes is alike.
    const auto brief = SimDocDescriptor::make(MadeUpTexts(6).text(1536), 9000);
    const auto lengthy = SimDocDescriptor::make(MadeUpTexts(6).text(65536), 9000);
    for (std::uint32_t seed = 0; seed < 4; ++seed) {
        for (const auto& [a, b] : {std::pair(brief, lengthy), std::pair(lengthy, brief)}) {
            MinimalStandard random(seed), same(seed);
            EXPECT_EQ(compareDocuments(*a, *b, random), plainScore(*a, *b, same));
        }
    }
}

}  // namespace
}  // namespace kelvane
