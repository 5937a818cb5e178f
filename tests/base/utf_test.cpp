#include "base/utf.h"

#include <gtest/gtest.h>

namespace kelvane {
namespace {

TEST(Utf, MalformedSequencesBecomeOneMarkForEachMaximalSubpart)
{
    // The examples of chapter 3.9 of the Unicode Standard (tables 3-8 to 3-11), then sequences cut off by the end.
    const std::pair<std::string_view, std::u16string_view> cases[] = {
        {"\xC0\xAF\xE0\x80\xBF\xF0\x81\x82\x41", u"\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\uFFFDA"},
        {"\xED\xA0\x80\xED\xBF\xBF\xED\xAF\x41", u"\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\uFFFDA"},
        {"\xF4\x91\x92\x93\xFF\x41\x80\xBF\x42", u"\uFFFD\uFFFD\uFFFD\uFFFD\uFFFDA\uFFFD\uFFFDB"},
        {"\xE1\x80\xE2\xF0\x91\x92\xF1\xBF\x41", u"\uFFFD\uFFFD\uFFFD\uFFFDA"},
        {"\xC3", u"\uFFFD"},
        {"a\xE2\x82", u"a\uFFFD"},
        {"\xF0\x9F\x98", u"\uFFFD"},
        {"\xF5\x80", u"\uFFFD\uFFFD"},
    };
    for (const auto& [bytes, text] : cases) {
        EXPECT_EQ(toUtf16(bytes), text) << ::testing::PrintToString(bytes);
        EXPECT_FALSE(isValidUtf8(bytes)) << ::testing::PrintToString(bytes);
    }
}

TEST(Utf, KeptBytesOfDifferentMalformedNamesStayDifferent)
{
    EXPECT_EQ(toUtf16KeepingBytes("caf\xE9 \xC3\xA9"), u"caf\xDCE9 \u00E9");
    EXPECT_NE(toUtf16KeepingBytes("caf\xE9"), toUtf16KeepingBytes("caf\xE8"));
    EXPECT_NE(toUtf16KeepingBytes("\xE2\x82"), toUtf16KeepingBytes("\xE2\x83"));
    EXPECT_EQ(toUtf8(toUtf16KeepingBytes("caf\xE9")), "caf\uFFFD");
}

TEST(Utf, EveryCodePointGoesThereAndBack)
{
    for (char32_t point = 0; point <= 0x10FFFF; point += point < 0x900 ? 1 : 61) {
        if (point >= 0xD800 && point <= 0xDFFF)
            continue;
        const std::u16string text = point < 0x10000
                                        ? std::u16string(1, static_cast<char16_t>(point))
                                        : std::u16string{static_cast<char16_t>(0xD800 + ((point - 0x10000) >> 10)),
                                                         static_cast<char16_t>(0xDC00 + (point & 0x3FF))};
        const std::string bytes = toUtf8(text);
        ASSERT_TRUE(isValidUtf8(bytes)) << std::hex << static_cast<std::uint32_t>(point);
        ASSERT_EQ(toUtf16(bytes), text) << std::hex << static_cast<std::uint32_t>(point);
    }
}

TEST(Utf, BordersOfTheByteLengthsAreEncodedAsPublished)
{
    EXPECT_EQ(toUtf8(u"\u007F\u0080\u07FF\u0800\uFFFF"), "\x7F\xC2\x80\xDF\xBF\xE0\xA0\x80\xEF\xBF\xBF");
    EXPECT_EQ(toUtf8(u"\U00010000\U0010FFFF"), "\xF0\x90\x80\x80\xF4\x8F\xBF\xBF");
}

TEST(Utf, LoneSurrogatesBecomeMarks)
{
    const std::string mark = "\xEF\xBF\xBD";
    EXPECT_EQ(toUtf8(std::u16string{u'a', 0xD83D}), "a" + mark);
    EXPECT_EQ(toUtf8(std::u16string{0xDE00, 0xD83D, u'b'}), mark + mark + "b");
    EXPECT_EQ(toUtf8(std::u16string{0xD83D, 0xD83D, 0xDE00}), mark + "\xF0\x9F\x98\x80");
}

TEST(Utf, AnyNameCanBeShown)
{
    EXPECT_EQ(displayText("caf\xC3\xA9"), "caf\xC3\xA9");
    EXPECT_EQ(displayText("caf\xE9.txt"), "caf\xEF\xBF\xBD.txt");
    EXPECT_EQ(percentEncode("/a b/caf\xE9\n%-._~"), "/a%20b/caf%E9%0A%25-._~");
}

}  // namespace
}  // namespace kelvane
