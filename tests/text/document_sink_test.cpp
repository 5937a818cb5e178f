#include "text/document_sink.h"

#include <gtest/gtest.h>

#include "base/utf.h"

namespace kelvane {
namespace {

ExtractionOptions sample(std::uint32_t characters)
{
    ExtractionOptions options;
    options.textSample = characters;
    return options;
}

TEST(DocumentSink, KeepsTheSampleAndWeighsOn)
{
    const ExtractionOptions options = sample(4);
    DocumentSink sink(options);
    EXPECT_TRUE(sink.text(u"abé"));
    EXPECT_TRUE(sink.text(u"日本語"));
    const ExtractedDocument document = std::move(sink).take();
    EXPECT_EQ(document.text, u"abé日");
    EXPECT_TRUE(document.cut);
    EXPECT_EQ(document.weight, 2u + 2 + 9);
}

TEST(DocumentSink, WantsSixteenSamplesAndNoMore)
{
    const ExtractionOptions options = sample(10);
    DocumentSink sink(options);
    EXPECT_TRUE(sink.text(std::u16string(159, u'a')));
    EXPECT_FALSE(sink.text(u"bcd"));
    EXPECT_FALSE(sink.text(u"e"));
    EXPECT_FALSE(sink.lineBreak());
    EXPECT_EQ(std::move(sink).take().weight, 160u);
}

TEST(DocumentSink, TheSampleNeverEndsWithinACharacter)
{
    struct Case {
        std::vector<std::u16string> pieces;
        std::u16string kept;
        std::uint64_t weight;
    };
    const std::vector<Case> cases = {
        {{u"ab😀"}, u"ab", 6},                       // cut within the pair
        {{u"a😀b"}, u"a😀", 6},                       // just behind it
        {{u"ab", u"\xD83D", u"\xDE00"}, u"ab", 6},  // the halves come one by one
        {{u"\xDE00x"}, u"\xDE00x", 4},              // a lone half stays, and weighs as U+FFFD
    };
    const ExtractionOptions options = sample(3);
    for (const Case& each : cases) {
        DocumentSink sink(options);
        for (const auto& piece : each.pieces)
            sink.text(piece);
        const ExtractedDocument document = std::move(sink).take();
        EXPECT_EQ(document.text, each.kept);
        EXPECT_EQ(document.weight, each.weight) << toUtf8(each.kept);
    }
}

TEST(DocumentSink, PartsWithoutLeadingTrailingOrRepeatedBreaks)
{
    const ExtractionOptions options;
    DocumentSink sink(options);
    sink.lineBreak();
    sink.gap();
    sink.text(u"a");
    sink.gap();
    sink.gap();
    sink.text(u"b");
    sink.gap();
    sink.lineBreak();
    sink.gap();
    sink.lineBreak();
    sink.text(u"c ");
    sink.gap();
    sink.text(u"d\n");
    sink.lineBreak();
    sink.text(u"e");
    sink.lineBreak();
    const ExtractedDocument document = std::move(sink).take();
    EXPECT_EQ(document.text, u"a b\nc d\ne");
    EXPECT_EQ(document.weight, document.text.size());
    EXPECT_FALSE(document.cut);
}

TEST(DocumentSink, TheFirstValueOfAPropertyStays)
{
    const ExtractionOptions options;
    DocumentSink sink(options);
    sink.property("System.Title", "");
    sink.property("System.Title", "first");
    sink.property("System.Title", "second");
    sink.property("System.Author", std::vector<std::u16string>{});
    const ExtractedDocument document = std::move(sink).take();
    ASSERT_EQ(document.properties.size(), 1u);
    EXPECT_EQ(std::get<std::u16string>(document.properties[0].value.data), u"first");
}

}  // namespace
}  // namespace kelvane
