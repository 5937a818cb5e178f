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

// Enough of a language for statistics to tell the charset.
constexpr std::string_view russian1251 =
    "\xC2\xF1\xE5 \xF1\xF7\xE0\xF1\xF2\xEB\xE8\xE2\xFB\xE5 \xF1\xE5\xEC\xFC\xE8 \xEF\xEE\xF5\xEE\xE6\xE8 "
    "\xE4\xF0\xF3\xE3 \xED\xE0 \xE4\xF0\xF3\xE3\xE0, \xEA\xE0\xE6\xE4\xE0\xFF \xED\xE5\xF1\xF7\xE0\xF1\xF2"
    "\xEB\xE8\xE2\xE0\xFF \xF1\xE5\xEC\xFC\xFF \xED\xE5\xF1\xF7\xE0\xF1\xF2\xEB\xE8\xE2\xE0 \xEF\xEE-"
    "\xF1\xE2\xEE\xE5\xEC\xF3.";
constexpr std::u16string_view russian = u"Все счастливые семьи похожи друг на друга, каждая несчастливая семья "
                                        u"несчастлива по-своему.";
constexpr std::string_view japaneseSjis =
    "\x8C\xE1\x94\x79\x82\xCD\x94\x4C\x82\xC5\x82\xA0\x82\xE9\x81\x42\x96\xBC\x91\x4F\x82\xCD\x82\xDC\x82\xBE"
    "\x96\xB3\x82\xA2\x81\x42\x82\xC7\x82\xB1\x82\xC5\x90\xB6\x82\xEA\x82\xBD\x82\xA9\x82\xC6\x82\xF1\x82\xC6"
    "\x8C\xA9\x93\x96\x82\xAA\x82\xC2\x82\xA9\x82\xCA\x81\x42";
constexpr std::u16string_view japanese = u"吾輩は猫である。名前はまだ無い。どこで生れたかとんと見当がつかぬ。";

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
        {"UTF-16BE without mark", utf16(russian, true), russian, false},
        {"UTF-32LE with mark", "\xFF\xFE\0\0A\0\0\0\x00\xF6\x01\0"s, u"A😀", false},
        {"windows-1251", std::string(russian1251), russian, false},
        {"Shift_JIS", std::string(japaneseSjis), japanese, false},
        {"Latin-1", "Les \xE9l\xE8ves \xE9taient tr\xE8s \xE9tonn\xE9s de la le\xE7on du ma\xEEtre.",
         u"Les élèves étaient très étonnés de la leçon du maître.", false},
        {"ISO-2022-JP", "\x1B$B$3$s$K$A$O\x1B(B", u"こんにちは", false},
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
