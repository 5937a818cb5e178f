#include <gtest/gtest.h>

#include "support/linux_office_documents.h"

namespace kelvane {
namespace {

using testing::DocumentWorld;
using testing::docxParagraphs;
using testing::makeDocx;
using testing::makeZip;
using testing::officeWorld;
using testing::valueText;

std::u16string ooxmlText(const std::string& bytes, std::string_view name = "a.docx")
{
    DocumentWorld world = officeWorld();
    const ExtractedDocument document = world.extract(name, bytes);
    EXPECT_EQ(document.outcome, TextOutcome::extracted) << document.detail;
    EXPECT_FALSE(document.plain);
    return document.text;
}

TEST(LinuxFormatOoxmlTest, ReadsParagraphsTabsBreaksAndTables)
{
    EXPECT_EQ(ooxmlText(makeDocx(docxParagraphs("one two\nthree \xc3\xa4\n\nfour &amp; five"))),
              u"one two\nthree \u00e4\nfour & five");
    EXPECT_EQ(ooxmlText(makeDocx("<w:p><w:pPr><w:tabs><w:tab w:pos='9'/></w:tabs></w:pPr><w:r><w:t>a</w:t><w:tab/>"
                                 "<w:t xml:space='preserve'> b </w:t><w:t>c</w:t><w:br/><w:t>d</w:t></w:r></w:p>"
                                 "<w:tbl><w:tr><w:tc><w:p><w:r><w:t>1</w:t></w:r></w:p><w:p/></w:tc><w:tc><w:p><w:r>"
                                 "<w:t>2</w:t></w:r></w:p></w:tc></w:tr><w:tr><w:tc><w:p><w:r><w:t>3</w:t></w:r></w:p>"
                                 "</w:tc></w:tr></w:tbl>")),
              u"a  b c\nd\n1 2\n3");
}

TEST(LinuxFormatOoxmlTest, LeavesOutWhatNobodyReads)
{
    EXPECT_EQ(ooxmlText(makeDocx("<w:p><w:del><w:r><w:delText>gone</w:delText></w:r></w:del><w:ins><w:r><w:t>new</w:t>"
                                 "</w:r></w:ins><w:moveFrom><w:r><w:t>moved</w:t></w:r></w:moveFrom>"
                                 "<w:r><w:rPr><w:vanish/></w:rPr><w:t>hidden</w:t></w:r>"
                                 "<w:r><w:rPr><w:vanish w:val='0'/></w:rPr><w:t>er</w:t></w:r>"
                                 "<w:r><w:instrText> PAGE </w:instrText></w:r><w:r><mc:AlternateContent><mc:Choice>"
                                 "<w:t>box</w:t></mc:Choice><mc:Fallback><w:t>box</w:t></mc:Fallback>"
                                 "</mc:AlternateContent></w:r></w:p>",
                                 {{"word/header1.xml", "<w:hdr><w:p><w:r><w:t>head</w:t></w:r></w:p></w:hdr>"},
                                  {"word/comments.xml", "<w:comments><w:p><w:r><w:t>no</w:t></w:r></w:p></w:comments>"},
                                  {"word/footnotes.xml",
                                   "<w:footnotes><w:footnote w:type='separator'><w:p><w:r><w:t>--</w:t></w:r></w:p>"
                                   "</w:footnote><w:footnote><w:p><w:r><w:t>note</w:t></w:r></w:p></w:footnote>"
                                   "</w:footnotes>"}})),
              u"newerbox\nnote");
}

TEST(LinuxFormatOoxmlTest, ReadsProperties)
{
    DocumentWorld world = officeWorld();
    const auto document = world.extract(
        "a.docx", makeDocx(docxParagraphs("text"),
                           {{"docProps/core.xml",
                             "<cp:coreProperties><dc:title> On \xc3\xa4 </dc:title><dc:creator>Ann; Bob</dc:creator>"
                             "<cp:keywords>x, y;z</cp:keywords><dc:description>said</dc:description>"
                             "<cp:lastModifiedBy>Eve</cp:lastModifiedBy>"
                             "<dcterms:created xsi:type='dcterms:W3CDTF'>1970-01-01T00:00:01Z</dcterms:created>"
                             "<dcterms:modified>no date</dcterms:modified></cp:coreProperties>"},
                            {"docProps/app.xml", "<Properties><Pages>3</Pages><Words>-4</Words><TotalTime>2</TotalTime>"
                                                 "<Company>Firm</Company></Properties>"}}));
    EXPECT_EQ(valueText(document, "System.Title"), "On \xc3\xa4");
    EXPECT_EQ(valueText(document, "System.Author"), "Ann|Bob");
    EXPECT_EQ(valueText(document, "System.Keywords"), "x|y|z");
    EXPECT_EQ(valueText(document, "System.Comment"), "said");
    EXPECT_EQ(valueText(document, "System.Document.LastAuthor"), "Eve");
    EXPECT_EQ(valueText(document, "System.Document.DateCreated"), "116444736010000000");
    EXPECT_EQ(valueText(document, "System.Document.DateSaved"), "");
    EXPECT_EQ(valueText(document, "System.Document.PageCount"), "3");
    EXPECT_EQ(valueText(document, "System.Document.WordCount"), "");
    EXPECT_EQ(valueText(document, "System.Document.TotalEditingTime"), "1200000000");
    EXPECT_EQ(valueText(document, "System.Company"), "Firm");
}

TEST(LinuxFormatOoxmlTest, ReadsSheetsInTheOrderOfTheirTabs)
{
    EXPECT_EQ(
        ooxmlText(
            makeZip({{"xl/workbook.xml", "<workbook><sheets><sheet r:id='r2'/><sheet r:id='r1'/></sheets></workbook>"},
                     {"xl/_rels/workbook.xml.rels",
                      "<Relationships><Relationship Id='r1' Target='worksheets/sheet1.xml'/>"
                      "<Relationship Id='r2' Target='/xl/worksheets/sheet2.xml'/></Relationships>"},
                     {"xl/worksheets/sheet1.xml",
                      "<worksheet><sheetData><row><c t='s'><v>1</v></c><c><f>1+1</f><v>2.50</v></c><c/>"
                      "<c t='b'><v>1</v></c></row><row><c t='s'><v>99</v></c><c t='inlineStr'><is><t>in</t></is></c>"
                      "</row></sheetData></worksheet>"},
                     {"xl/worksheets/sheet2.xml", "<worksheet><row><c t='str'><v>first</v></c></row></worksheet>"},
                     {"xl/sharedStrings.xml", "<sst><si><t>zero</t></si><si><r><t>o</t></r><r><t>ne</t></r>"
                                              "<rPh><t>x</t></rPh></si></sst>"}}),
            "a.xlsx"),
        u"first\none 2.50 TRUE\nin");
}

TEST(LinuxFormatOoxmlTest, ReadsSlidesByNumberThenNotes)
{
    const auto slide = [](std::string_view text) {
        return "<p:sld><p:sp><p:nvPr/><p:txBody><a:p><a:r><a:t>" + std::string(text) +
               "</a:t></a:r></a:p></p:txBody></p:sp><p:sp><p:nvPr><p:ph type='sldNum'/></p:nvPr><p:txBody><a:p><a:fld "
               "type='slidenum'><a:t>7</a:t></a:fld></a:p></p:txBody></p:sp></p:sld>";
    };
    EXPECT_EQ(ooxmlText(makeZip({{"ppt/notesSlides/notesSlide1.xml", slide("noted")},
                                 {"ppt/slides/slide10.xml", slide("ten")},
                                 {"ppt/slides/slide2.xml", slide("two")},
                                 {"ppt/slides/_rels/slide2.xml.rels", "<x/>"},
                                 {"ppt/presentation.xml", "<p:presentation/>"}}),
                        "a.pptx"),
              u"two\nten\nnoted");
}

TEST(LinuxFormatOoxmlTest, GoesByTheBytesAndNotByTheName)
{
    const std::string docx = makeDocx(docxParagraphs("text"));
    for (const char* name : {"a.zip", "a.pdf", "a.odt", "a.xlsx", "a"})
        EXPECT_EQ(ooxmlText(docx, name), u"text") << name;
    DocumentWorld world = officeWorld();
    EXPECT_EQ(world.extract("a.zip", makeZip({{"[Content_Types].xml", "<Types/>"}, {"a.vsdx", "x"}})).outcome,
              TextOutcome::unknownFormat);
}

TEST(LinuxFormatOoxmlTest, SurvivesHostileDocuments)
{
    DocumentWorld world = officeWorld();
    const std::string zeros(10'000'000, '\0');
    EXPECT_EQ(world.extract("a.docx", makeZip({{"word/document.xml", zeros}})).outcome, TextOutcome::damaged);
    std::string deep;
    for (int i = 0; i < 300'000; ++i)
        deep += "<w:tc>";
    EXPECT_EQ(world.extract("a.docx", makeDocx("<w:t>x" + deep)).outcome, TextOutcome::damaged);
    EXPECT_EQ(world.extract("a.docx", makeZip({{"word/document.xml", "<w:t>secret</w:t>"}}, false, "password")).outcome,
              TextOutcome::encrypted);
    const auto bomb = world.extract(
        "a.docx", makeZip({{"word/document.xml", "<!DOCTYPE d [<!ENTITY a 'aaaaaaaaaa'><!ENTITY b '&a;&a;&a;&a;'>]>"
                                                 "<w:document><w:t>x&b;y</w:t></w:document>"}}));
    EXPECT_EQ(bomb.text.find(u"aaaa"), std::u16string::npos);
    const std::string whole = makeDocx(docxParagraphs("some text"), {{"word/media/a.png", std::string(3000, 'x')}});
    for (std::size_t i = 0; i < 20; ++i)
        EXPECT_NE(world.extract("a.docx", whole.substr(0, whole.size() * i / 20)).outcome, TextOutcome::extracted) << i;
}

TEST(LinuxFormatOoxmlTest, ReadsNoMoreOfAPartThanTheLimit)
{
    DocumentWorld world = officeWorld();
    world.options.largestStream = 2000;
    std::string lines;
    for (int i = 0; i < 1000; ++i)
        lines += "some line\n";
    const auto document = world.extract("a.docx", makeDocx(docxParagraphs(lines)));
    EXPECT_EQ(document.outcome, TextOutcome::extracted);
    EXPECT_TRUE(document.cut);
    EXPECT_GT(document.text.size(), 100u);
    EXPECT_LT(document.text.size(), 2000u);
}

}  // namespace
}  // namespace kelvane
