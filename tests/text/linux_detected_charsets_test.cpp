// Charsets that nothing declares: how well they are told is the system's business.
#include <gtest/gtest.h>

#include "support/document_world.h"
#include "text/text_charset.h"

namespace kelvane {
namespace {

using testing::DocumentWorld;

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

constexpr std::string_view frenchLatin =
    "Les \xE9l\xE8ves \xE9taient tr\xE8s \xE9tonn\xE9s de la le\xE7on du ma\xEEtre.";
constexpr std::u16string_view french = u"Les élèves étaient très étonnés de la leçon du maître.";

TEST(DetectedCharsets, TextsAreReadInTheLikeliestOne)
{
    struct Case {
        const char* name;
        std::string bytes;
        std::u16string_view text;
    };
    const std::vector<Case> cases = {
        {"windows-1251", std::string(russian1251), russian},
        {"Shift_JIS", std::string(japaneseSjis), japanese},
        {"Latin-1", std::string(frenchLatin), french},
        {"ISO-2022-JP", "\x1B$B$3$s$K$A$O\x1B(B", u"こんにちは"},
        {"a single word", "Caf\xE9", u"Café"},
        {"typographic", "It\x92s \x93quoted\x94 \x96 by somebody, and then some more words follow.",
         u"It’s “quoted” – by somebody, and then some more words follow."},
    };
    for (const Case& each : cases) {
        const ExtractedDocument document = DocumentWorld().extract("a.txt", each.bytes);
        EXPECT_EQ(toUtf8(document.text), toUtf8(each.text)) << each.name;
        EXPECT_FALSE(document.plain) << each.name;
        EXPECT_EQ(document.weight, toUtf8(each.text).size()) << each.name;
        const std::string page = "<html><body><p>" + each.bytes + "</p></body></html>";
        EXPECT_EQ(toUtf8(DocumentWorld().extract("a.html", page).text), toUtf8(each.text)) << each.name;
    }
}

TEST(DetectedCharsets, DecodingKeepsItsPromises)
{
    const auto decoding = makeTextDecoding();
    const auto decoded = [&decoding](std::string_view bytes, std::string_view charset) {
        const auto text = decoding->decode(asBytes(bytes), charset);
        return text ? toUtf8(*text) : std::string("unknown");
    };
    EXPECT_EQ(decoded("caf\x82", "CP437"), "café");
    EXPECT_EQ(decoded("\x80\xE9", "Windows-1252"), "€é");
    EXPECT_EQ(decoded("\xE9", "latin1"), "é");
    EXPECT_EQ(decoded("\xEF\xBB\xBF\xC3\xA9\xC3", "utf-8"), "é");  // the mark goes, and so does what is cut off
    EXPECT_EQ(decoded("a\xFF"
                      "b",
                      "utf-8"),
              "a\uFFFDb");
    EXPECT_EQ(decoded("x", "no-such-charset"), "unknown");
    EXPECT_EQ(decoded("x", ""), "unknown");
    // Across the pieces in which long texts are converted.
    std::string text(3'000'001, 'a');
    for (std::size_t i = 1; i + 1 < text.size(); i += 2)
        text.replace(i, 2, "\xC3\xA9");
    EXPECT_EQ(decoded(text, "utf-8"), text);
    EXPECT_EQ(decoding->guess({}), std::nullopt);
}

}  // namespace
}  // namespace kelvane
