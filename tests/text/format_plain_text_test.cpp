#include "text/format_plain_text.h"

#include <gtest/gtest.h>

#include "support/document_world.h"

namespace kelvane {
namespace {

using testing::DocumentWorld;
using testing::MemoryDocument;

std::string utf16(std::u16string_view text, bool bigEndian)
{
    std::string bytes;
    for (const char16_t unit : text) {
        const char low = static_cast<char>(unit & 0xFF), high = static_cast<char>(unit >> 8);
        bytes += bigEndian ? high : low;
        bytes += bigEndian ? low : high;
    }
    return bytes;
}

TEST(PlainText, IsDecodedFromItsCharset)
{
    struct Case {
        const char* name;
        std::string bytes;
        std::u16string_view text;
        bool plain;  // in UTF-8
    };
    using namespace std::string_literals;
    const std::vector<Case> cases = {
        {"UTF-8", "Grüße\r\n\tan alle \n\n", u"Grüße\r\n\tan alle \n\n", true},
        {"UTF-8 with mark", "\xEF\xBB\xBFGrüße", u"Grüße", true},
        {"UTF-16LE with mark", "\xFF\xFE" + utf16(u"Grüße 😀", false), u"Grüße 😀", false},
        {"UTF-16BE with mark", "\xFE\xFF" + utf16(u"Grüße 😀", true), u"Grüße 😀", false},
        {"UTF-16LE without mark", utf16(u"Plain words.\r\n", false), u"Plain words.\r\n", false},
        {"UTF-16BE without mark", utf16(u"Все счастливые семьи", true), u"Все счастливые семьи", false},
        {"UTF-32LE with mark", "\xFF\xFE\0\0A\0\0\0\x00\xF6\x01\0"s, u"A😀", false},
        {"escapes of a terminal", "\x1B[31mred\x1B[0m", u"\x1B[31mred\x1B[0m", true},
        {"a broken character", "broken \xC3 tail, \xE2\x82", u"", false},
    };
    for (const Case& each : cases) {
        const ExtractedDocument document = DocumentWorld().extract("a.txt", each.bytes);
        EXPECT_EQ(document.outcome, TextOutcome::extracted) << each.name;
        if (!each.text.empty()) {
            EXPECT_EQ(toUtf8(document.text), toUtf8(each.text)) << each.name;
        }
        EXPECT_EQ(document.plain, each.plain) << each.name;
        if (!each.plain && !each.text.empty()) {
            EXPECT_EQ(document.weight, toUtf8(each.text).size()) << each.name;
        }
    }
}

TEST(PlainText, BinaryFilesAreNoText)
{
    using namespace std::string_literals;
    const std::vector<std::string> binaries = {
        "MZ\x90\0\x03\0\0\0\x04\0\0\0\xFF\xFF"s,
        std::string("\0\0\x01\0\x02\0\x03\0\x04\0", 10),
        "text and then\0more"s,
        "\x01\x02\x03\x04 control characters",
    };
    for (const std::string& bytes : binaries) {
        EXPECT_EQ(DocumentWorld().extract("a.txt", bytes).outcome, TextOutcome::damaged);
        EXPECT_EQ(DocumentWorld().extract("a.xyz", bytes).outcome, TextOutcome::unknownFormat);
    }
    const ExtractedDocument none = DocumentWorld().extract("a.txt", "");
    EXPECT_EQ(none.outcome, TextOutcome::extracted);
    EXPECT_TRUE(none.text.empty());
}

TEST(PlainText, OnlyWhatTheSampleNeedsIsRead)
{
    DocumentWorld world;
    world.options.textSample = 48'000;
    MemoryDocument file(std::string(5'000'000, 'a'));
    const ExtractedDocument document =
        extractDocument(file, "a.log", {*world.decoding, *world.xml, *world.packages, *world.filters, world.options});
    EXPECT_EQ(document.text.size(), 48'000u);
    EXPECT_TRUE(document.cut);
    EXPECT_LT(file.bytesRead, 300'000u);
}

TEST(PlainText, EndsWithTheLimitOfStreams)
{
    DocumentWorld world;
    world.options.largestStream = 101;
    std::string text;
    while (text.size() < 300)
        text += "\u00E9";  // two bytes each: the limit falls within one
    const ExtractedDocument document = world.extract("a.txt", text);
    EXPECT_EQ(document.outcome, TextOutcome::extracted);
    EXPECT_EQ(document.text, std::u16string(50, u'\u00E9'));
    EXPECT_TRUE(document.cut);
}

}  // namespace
}  // namespace kelvane
