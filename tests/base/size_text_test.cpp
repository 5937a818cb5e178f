#include "base/size_text.h"

#include <gtest/gtest.h>

namespace kelvane {
namespace {

TEST(SizeText, SmallSizesAreExactAndLargerOnesHaveOneRoundedDecimal)
{
    const std::pair<std::uint64_t, const char*> texts[] = {
        {0, "0 bytes"},
        {1, "1 byte"},
        {10'239, "10239 bytes"},
        {10'240, "10.0 KB"},
        {10'291, "10.0 KB"},  // 10.0498
        {10'292, "10.1 KB"},  // 10.0507
        {1'048'524, "1023.9 KB"},
        {1'048'525, "1.0 MB"},  // never 1024 of a unit
        {(std::uint64_t{1} << 30) - 1, "1.0 GB"},
        {std::uint64_t{3} << 59, "1.5 EB"},
        {UINT64_MAX, "16.0 EB"},
    };
    for (const auto& [bytes, text] : texts)
        EXPECT_EQ(sizeText({bytes}), text);
}

}  // namespace
}  // namespace kelvane
