#include "platform/string_bundle.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kelvane {
namespace {

using ::testing::ElementsAre;
using ::testing::Pair;

// The third and the last text of a bundle, all others empty.
std::string bundleBytes()
{
    std::string bytes(4, '\0');
    bytes += std::string("\2\0D\0\xE4\0", 6) + std::string(24, '\0') + std::string("\1\0x\0", 4);
    return bytes;
}

Status read(const std::string& bytes, std::uint16_t bundle, TextsByNumber& texts)
{
    return readStringBundle(std::as_bytes(std::span(bytes)), bundle, texts);
}

TEST(StringBundle, HoldsSixteenTextsFromItsNumberOn)
{
    TextsByNumber texts;
    ASSERT_TRUE(read(bundleBytes() + "fill", 9, texts));
    EXPECT_THAT(texts, ElementsAre(Pair(130, u"D\u00E4"), Pair(143, u"x")));
}

TEST(StringBundle, OneThatEndsTooEarlyIsInvalid)
{
    const std::string whole = bundleBytes();
    for (std::size_t size = 0; size < whole.size(); ++size) {
        TextsByNumber texts;
        EXPECT_FALSE(read(whole.substr(0, size), 9, texts)) << size;
    }
}

}  // namespace
}  // namespace kelvane
