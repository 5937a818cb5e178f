#include "base/wtf8.h"

#include <gtest/gtest.h>

#include "base/utf.h"

namespace kelvane {
namespace {

TEST(Wtf8, LoneSurrogatesGoThereAndBack)
{
    for (char32_t unit = 0xD800; unit <= 0xDFFF; ++unit) {
        const std::u16string text = {u'a', static_cast<char16_t>(unit), u'\uD55C', u'z'};
        const std::string bytes = wtf8FromUnits(text);
        ASSERT_EQ(bytes.size(), 8u);
        ASSERT_EQ(unitsFromWtf8(bytes), text);
    }
    EXPECT_EQ(wtf8FromUnits(std::u16string{0xDFFF, 0xD800}), "\xED\xBF\xBF\xED\xA0\x80");
}

TEST(Wtf8, WellFormedTextIsPlainUtf8)
{
    const std::u16string text = u"h\u00E9 \uD55C \U0001F600";
    EXPECT_EQ(wtf8FromUnits(text), toUtf8(text));
    EXPECT_EQ(unitsFromWtf8(toUtf8(text)), text);
}

TEST(Wtf8, WhatIsNoSurrogateIsMarkedAsInUtf8)
{
    for (const std::string_view bytes : {"\xED\xA0", "\xED\xA0z", "\xED", "x\xED\xBF\xFF", "\xFF\xC3"})
        EXPECT_EQ(unitsFromWtf8(bytes), toUtf16(bytes));
}

}  // namespace
}  // namespace kelvane
