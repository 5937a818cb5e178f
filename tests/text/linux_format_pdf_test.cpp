#include <gtest/gtest.h>

#include "support/fake_filters.h"
#include "support/linux_office_documents.h"

namespace kelvane {
namespace {

using testing::DocumentWorld;
using testing::FakeFilters;
using testing::makePdf;
using testing::officeWorld;
using testing::valueText;

ExtractedDocument extractWith(FakeFilters filters, std::string content = "%PDF-1.4")
{
    DocumentWorld world = officeWorld();
    world.filters = std::make_unique<FakeFilters>(std::move(filters));
    return world.extract("a.pdf", std::move(content));
}

TEST(LinuxFormatPdfTest, ReadsPagesAndFacts)
{
    DocumentWorld world = officeWorld();
    world.filters = makeLinuxFilterPrograms(std::chrono::milliseconds(0));
    const auto document =
        world.extract("a.pdf", makePdf({"A first line that goes on and on\nto its end.\nShort.\nLast", "Caf\\351"},
                                       "/Title(On PDF)/Author(Ann; Bob)/CreationDate(D:19700101000001Z)"));
    EXPECT_EQ(document.outcome, TextOutcome::extracted) << document.detail;
    EXPECT_EQ(document.text, u"A first line that goes on and on to its end.\nShort.\nLast\nCaf\u00e9");
    EXPECT_EQ(valueText(document, "System.Title"), "On PDF");
    EXPECT_EQ(valueText(document, "System.Author"), "Ann|Bob");
    EXPECT_EQ(valueText(document, "System.Document.PageCount"), "2");
    EXPECT_EQ(valueText(document, "System.Document.DateCreated"), "116444736010000000");
}

TEST(LinuxFormatPdfTest, SaysWhyThereIsNoText)
{
    DocumentWorld world = officeWorld();
    world.filters = makeLinuxFilterPrograms(std::chrono::milliseconds(0));
    const auto empty = world.extract("a.pdf", makePdf({""}));
    EXPECT_EQ(empty.outcome, TextOutcome::extracted) << empty.detail;
    EXPECT_EQ(empty.text, u"");
    const std::string key(64, '0');
    EXPECT_EQ(world
                  .extract("a.pdf", makePdf({"secret"}, "",
                                            "/ID[<00><00>]/Encrypt<</Filter/Standard/V 1/R 2/P -4/O<" + key + ">/U<" +
                                                key + ">>>"))
                  .outcome,
              TextOutcome::encrypted);
    EXPECT_EQ(world.extract("a.pdf", "%PDF-1.4\nnoise").outcome, TextOutcome::damaged);
    FakeFilters none;
    none.missing = true;
    const auto missing = extractWith(none);
    EXPECT_EQ(missing.outcome, TextOutcome::toolMissing);
    EXPECT_EQ(missing.missingTool, "pdftotext");
}

TEST(LinuxFormatPdfTest, JoinsTheLinesOfABlockOnly)
{
    FakeFilters filters;
    filters.outputs["pdftotext"] =
        "Heading\n\nthis paragraph is set in lines\nof nearly the same length, and the\nlast one ends early"
        ".\nNext paragraph\n\fnew page";
    filters.outputs["pdfinfo"] = "Title:          a: b\nPages:          none\n";
    const auto document = extractWith(filters);
    EXPECT_EQ(document.text,
              u"Heading\nthis paragraph is set in lines of nearly the same length, and the last one ends "
              u"early.\nNext paragraph\nnew page");
    EXPECT_EQ(valueText(document, "System.Title"), "a: b");
    EXPECT_EQ(valueText(document, "System.Document.PageCount"), "");
}

TEST(LinuxFormatPdfTest, TakesLinesOfAnyLength)
{
    FakeFilters filters;
    for (int i = 0; i < 100'001; ++i)
        filters.outputs["pdftotext"] += "\xc3\xa4";
    const auto document = extractWith(filters);
    EXPECT_EQ(document.text.find(u'\uFFFD'), std::u16string::npos);
    EXPECT_EQ(document.text.find_first_not_of(u"\u00e4"), std::u16string::npos);
    EXPECT_TRUE(document.cut);
}

}  // namespace
}  // namespace kelvane
