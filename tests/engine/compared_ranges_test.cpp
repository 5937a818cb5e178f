#include "engine/compared_ranges.h"

#include <gtest/gtest.h>

namespace kelvane {
namespace {

constexpr std::uint64_t mib = 1'048'576;
constexpr FileSize tenMib{10 * mib};

void expectWellFormed(const ComparedRanges& compared, std::uint64_t size)
{
    std::uint64_t covered = 0;
    for (const ByteRange& range : compared.ranges) {
        EXPECT_GE(range.begin.bytes, covered);
        EXPECT_GT(range.length.bytes, 0u);
        covered = range.begin.bytes + range.length.bytes;
    }
    EXPECT_EQ(covered, size) << "the last range ends at the end of the file";
}

TEST(ComparedRanges, filesUpToElevenTenthsOfTheLimitAreComparedWhole)
{
    for (const std::uint64_t size : {std::uint64_t{1}, 10 * mib, std::uint64_t{11'000'000}, 11 * mib}) {
        const ComparedRanges compared = comparedRanges({size}, tenMib);
        EXPECT_FALSE(compared.sampled) << size;
        EXPECT_EQ(compared.totalBytes(), size);
        EXPECT_EQ(compared.ranges.size(), 1u);
    }
    EXPECT_TRUE(comparedRanges({0}, tenMib).ranges.empty());
    EXPECT_TRUE(comparedRanges({11 * mib + 1}, tenMib).sampled);
}

TEST(ComparedRanges, hugeFilesHaveAHeadAndSamplesAtTheEndsOfEqualStretches)
{
    const std::uint64_t size = 100'000'000;
    const ComparedRanges compared = comparedRanges({size}, tenMib);
    ASSERT_EQ(compared.ranges.size(), 17u);
    EXPECT_EQ(compared.ranges[0].begin.bytes, 0u);
    EXPECT_EQ(compared.ranges[0].length.bytes, 10 * mib);
    const std::uint64_t stretch = (size - 10 * mib) / 16;
    EXPECT_EQ(compared.ranges[1].begin.bytes, 10 * mib + stretch - 65'536);
    for (std::size_t i = 1; i < compared.ranges.size(); ++i)
        EXPECT_EQ(compared.ranges[i].length.bytes, 65'536u);
    expectWellFormed(compared, size);
}

TEST(ComparedRanges, anySizeAndLimitGivesWellFormedRanges)
{
    for (const std::uint64_t limit : {std::uint64_t{1000}, mib / 2, mib, 50 * mib})
        for (const std::uint64_t size : {limit + limit / 10 + 1, limit * 2 + 7, UINT64_MAX / 2, UINT64_MAX})
            expectWellFormed(comparedRanges({size}, {limit}), size);
}

}  // namespace
}  // namespace kelvane
