#include "base/crc32.h"

#include <string_view>

#include <gtest/gtest.h>

namespace kelvane {
namespace {

std::uint32_t crcOf(std::string_view text)
{
    return crc32(std::as_bytes(std::span(text)));
}

TEST(Crc32, GivesThePublishedCheckValue)
{
    EXPECT_EQ(crcOf("123456789"), 0xCBF43926u);
    EXPECT_EQ(crcOf(""), 0u);
    EXPECT_EQ(crcOf(std::string_view("\0", 1)), 0xD202EF8Du);
}

}  // namespace
}  // namespace kelvane
