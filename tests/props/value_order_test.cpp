#include "props/value_order.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <limits>
#include <random>

namespace kelvane {
namespace {

PropValue number(std::int64_t value, PropKind kind = PropKind::number)
{
    return {kind, static_cast<std::uint64_t>(value), {}};
}
PropValue real(double value)
{
    return {PropKind::real, std::bit_cast<std::uint64_t>(value), {}};
}
PropValue words(std::u16string_view value)
{
    return {PropKind::text, PROPCACHE::missingMark, value};
}

constexpr std::int64_t farthest = std::numeric_limits<std::int64_t>::max();

TEST(ValueOrder, missingValuesEqualNothingAndComeFirst)
{
    const PropValue missingNumber{PropKind::number, PROPCACHE::missingMark, {}};
    EXPECT_FALSE(equalValues(missingNumber, missingNumber, farthest));
    EXPECT_FALSE(equalValues(words(u""), words(u""), 0));
    EXPECT_FALSE(equalValues({}, {}, 0));
    EXPECT_TRUE(compareValues(missingNumber, number(-farthest)) < 0);
    EXPECT_TRUE(compareValues(words(u"a"), words(u"")) > 0);
    EXPECT_TRUE(compareValues(words(u""), missingNumber) == 0) << "missing values stand together";
}

TEST(ValueOrder, equalityIsOfKindAndValue)
{
    EXPECT_TRUE(equalValues(number(5), number(5), 0));
    EXPECT_FALSE(equalValues(number(5), number(6), 10)) << "the tolerance is for dates";
    EXPECT_FALSE(equalValues(number(5), number(5, PropKind::date), 0));
    EXPECT_TRUE(equalValues(words(u"Ab"), words(u"Ab"), 0));
    EXPECT_FALSE(equalValues(words(u"Ab"), words(u"ab"), 0));
    EXPECT_TRUE(equalValues(real(0.0), real(-0.0), 0));
    EXPECT_TRUE(compareValues(real(0.0), real(-0.0)) == 0) << "what is equal stands together";
    EXPECT_FALSE(equalValues(real(std::nan("")), real(std::nan("")), 0));
}

TEST(ValueOrder, numbersAreSignedAndTextsAreUnits)
{
    EXPECT_TRUE(compareValues(number(-1), number(0)) < 0);
    EXPECT_TRUE(compareValues(words(u"B"), words(u"a")) < 0);
    EXPECT_TRUE(compareValues(words(u"\uFFFD"), words(u"z")) > 0);
    EXPECT_TRUE(compareValues(real(std::nan("")), real(INFINITY)) > 0);
    EXPECT_TRUE(compareValues(real(-INFINITY), real(-1e308)) < 0);
}

PropValue randomValue(std::mt19937& random)
{
    static constexpr double reals[] = {0.0, -0.0, 1.5, -1.5, INFINITY, -INFINITY, NAN, 1e-300};
    static constexpr std::u16string_view texts[] = {u"", u"a", u"A", u"ab", u"\u00E9", u"\U0001F600"};
    switch (random() % 5) {
    case 0:
        return number(static_cast<std::int64_t>(random() % 5) - 2);
    case 1:
        return number(static_cast<std::int64_t>(random() % 3), PropKind::date);
    case 2:
        return real(reals[random() % std::size(reals)]);
    case 3:
        return words(texts[random() % std::size(texts)]);
    default:
        return {PropKind::number, PROPCACHE::missingMark, {}};
    }
}

TEST(ValueOrder, isATotalOrderThatBringsEqualsTogether)
{
    std::mt19937 random(7);
    for (int round = 0; round < 20000; ++round) {
        const PropValue a = randomValue(random), b = randomValue(random), c = randomValue(random);
        ASSERT_TRUE((compareValues(a, b) < 0) == (compareValues(b, a) > 0));
        ASSERT_TRUE(compareValues(a, a) == 0);
        if (compareValues(a, b) <= 0 && compareValues(b, c) <= 0) {
            ASSERT_TRUE(compareValues(a, c) <= 0);
        }
        if (compareValues(a, b) == 0) {
            ASSERT_TRUE(compareValues(a, c) == compareValues(b, c));
        }
        if (equalValues(a, b, 0)) {
            ASSERT_TRUE(compareValues(a, b) == 0);
        }
    }
}

}  // namespace
}  // namespace kelvane
