#include "base/size_text.h"

#include <gtest/gtest.h>

namespace kelvane {
namespace {

TEST(SizeText, SmallSizesAreExact)
{
    EXPECT_EQ(sizeText({0}), "0 bytes");
    EXPECT_EQ(sizeText({1}), "1 byte");
    EXPECT_EQ(sizeText({10'239}), "10239 bytes");
}

TEST(SizeText, LargerOnesHaveOneRoundedDecimal)
{
    EXPECT_EQ(sizeText({10'240}), "10.0 KB");
    EXPECT_EQ(sizeText({10'291}), "10.0 KB");  // 10.0498
    EXPECT_EQ(sizeText({10'292}), "10.1 KB");  // 10.0507
    EXPECT_EQ(sizeText({3'221'225'472}), "3.0 GB");
}

TEST(SizeText, NeverShows1024OfAUnit)
{
    EXPECT_EQ(sizeText({1'048'524}), "1023.9 KB");
    EXPECT_EQ(sizeText({1'048'525}), "1.0 MB");
    EXPECT_EQ(sizeText({(std::uint64_t{1} << 30) - 1}), "1.0 GB");
}

TEST(SizeText, TheLargestSizeFits)
{
    EXPECT_EQ(sizeText({UINT64_MAX}), "16.0 EB");
    EXPECT_EQ(sizeText({std::uint64_t{3} << 59}), "1.5 EB");
}

}  // namespace
}  // namespace kelvane
