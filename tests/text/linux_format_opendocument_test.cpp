#include <gtest/gtest.h>

#include "support/linux_office_documents.h"

namespace kelvane {
namespace {

using testing::DocumentWorld;
using testing::makeOdf;
using testing::makeZip;
using testing::officeWorld;
using testing::valueText;

ExtractedDocument extract(const std::string& bytes, std::string_view name = "a.odt")
{
    DocumentWorld world = officeWorld();
    return world.extract(name, bytes);
}

std::u16string odfText(const std::string& bytes, std::string_view name = "a.odt")
{
    const ExtractedDocument document = extract(bytes, name);
    EXPECT_EQ(document.outcome, TextOutcome::extracted) << document.detail;
    return document.text;
}

TEST(LinuxFormatOpenDocumentTest, ReadsParagraphsWithTheirWhiteSpace)
{
    EXPECT_EQ(odfText(makeOdf("<office:text>\n  <text:h>One</text:h>\n  <text:p>two <text:span>three</text:span>\n   "
                              "four<text:s text:c='3'/>five<text:tab/>six<text:line-break/>seven</text:p>"
                              "<text:p/><text:p>  eight</text:p></office:text>")),
              u"One\ntwo three four   five six\nseven\neight");
}

TEST(LinuxFormatOpenDocumentTest, LeavesOutWhatNobodyReadsAndPutsNotesLast)
{
    EXPECT_EQ(
        odfText(makeOdf("<text:tracked-changes><text:p>gone</text:p></text:tracked-changes><text:p>text<text:note>"
                        "<text:note-citation>1</text:note-citation><text:note-body><text:p>note</text:p>"
                        "</text:note-body></text:note> goes on<office:annotation><text:p>remark</text:p>"
                        "</office:annotation><draw:frame><svg:title>a picture</svg:title></draw:frame></text:p>"
                        "<text:p>end</text:p>")),
        u"text goes on\nend\nnote");
}

TEST(LinuxFormatOpenDocumentTest, ReadsTablesAndSheetsRowByRow)
{
    EXPECT_EQ(odfText(makeOdf("<table:table><table:table-row><table:table-cell><text:p>1</text:p></table:table-cell>"
                              "<table:table-cell table:number-columns-repeated='99999999'/><table:table-cell>"
                              "<text:p>2</text:p></table:table-cell></table:table-row><table:table-row>"
                              "<table:table-cell><text:p>3</text:p></table:table-cell></table:table-row></table:table>",
                              "spreadsheet"),
                      "a.ods"),
              u"1 2\n3");
}

TEST(LinuxFormatOpenDocumentTest, ReadsProperties)
{
    const auto document = extract(
        makeOdf("<text:p>x</text:p>", "text",
                {{"meta.xml", "<office:document-meta><office:meta><dc:title>T</dc:title><meta:initial-creator>Ann"
                              "</meta:initial-creator><dc:creator>Bob</dc:creator><meta:keyword>one</meta:keyword>"
                              "<meta:keyword>two</meta:keyword><meta:creation-date>1970-01-01T02:00:00+02:00"
                              "</meta:creation-date><meta:editing-duration>P1DT1M1.5S</meta:editing-duration>"
                              "<meta:document-statistic meta:page-count='3' meta:word-count='400'/></office:meta>"
                              "</office:document-meta>"}}));
    EXPECT_EQ(valueText(document, "System.Title"), "T");
    EXPECT_EQ(valueText(document, "System.Author"), "Ann");
    EXPECT_EQ(valueText(document, "System.Document.LastAuthor"), "Bob");
    EXPECT_EQ(valueText(document, "System.Keywords"), "one|two");
    EXPECT_EQ(valueText(document, "System.Document.DateCreated"), "116444736000000000");
    EXPECT_EQ(valueText(document, "System.Document.TotalEditingTime"), "864615000000");
    EXPECT_EQ(valueText(document, "System.Document.PageCount"), "3");
    EXPECT_EQ(valueText(document, "System.Document.WordCount"), "400");
}

TEST(LinuxFormatOpenDocumentTest, GoesByTheBytesAndSurvivesDamage)
{
    const std::string whole = makeOdf("<text:p>some text</text:p>");
    EXPECT_EQ(odfText(whole, "a.docx"), u"some text");
    for (std::size_t i = 0; i < 20; ++i)
        EXPECT_NE(extract(whole.substr(0, whole.size() * i / 20)).outcome, TextOutcome::extracted) << i;
    EXPECT_EQ(extract(makeZip({{"mimetype", "application/vnd.oasis.opendocument.text"}}, true)).outcome,
              TextOutcome::damaged);
    EXPECT_EQ(extract(makeZip({{"mimetype", "application/vnd.oasis.opendocument.text"},
                               {"content.xml", "\x01\x02\x03 noise"},
                               {"META-INF/manifest.xml", "<manifest><encryption-data/></manifest>"}},
                              true))
                  .outcome,
              TextOutcome::encrypted);
}

}  // namespace
}  // namespace kelvane
