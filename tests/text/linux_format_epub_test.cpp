#include <gtest/gtest.h>

#include "support/linux_office_documents.h"

namespace kelvane {
namespace {

using testing::DocumentWorld;
using testing::MadeEntry;
using testing::makeZip;
using testing::officeWorld;
using testing::valueText;

const std::vector<MadeEntry> book = {
    {"mimetype", "application/epub+zip"},
    {"OPS/two.xhtml", "<html><head><title>x</title></head><body><p>Second &mdash; part</p></body></html>"},
    {"OPS/text/first one.xhtml", "<html><body><h1>First</h1><p>part</p></body></html>"},
    {"OPS/nowhere.xhtml", "<html><body>not in the spine</body></html>"},
    {"META-INF/container.xml", "<container><rootfiles><rootfile full-path='OPS/book.opf'/></rootfiles></container>"},
    {"OPS/book.opf", "<package><metadata><dc:title>T</dc:title><dc:creator>Ann</dc:creator><dc:creator>Bob</dc:creator>"
                     "<dc:subject>sea</dc:subject><dc:publisher>House</dc:publisher><meta property='dcterms:modified'>"
                     "1970-01-01T00:00:00Z</meta></metadata><manifest><item id='a' href='text/first%20one.xhtml'/>"
                     "<item id='b' href='../OPS/two.xhtml#top'/></manifest>"
                     "<spine><itemref idref='a'/><itemref idref='b'/><itemref idref='a'/></spine></package>"}};

std::vector<MadeEntry> withPart(const std::string& path, const std::string& contents)
{
    std::vector<MadeEntry> changed = book;
    for (MadeEntry& entry : changed)
        if (entry.path == path)
            entry.contents = contents;
    return changed;
}

TEST(LinuxFormatEpubTest, ReadsChaptersInTheOrderOfTheSpine)
{
    DocumentWorld world = officeWorld();
    const auto document = world.extract("a.zip", makeZip(book, true));
    EXPECT_EQ(document.outcome, TextOutcome::extracted) << document.detail;
    EXPECT_EQ(document.text, u"First\npart\nSecond \u2014 part");
    EXPECT_EQ(valueText(document, "System.Title"), "T");
    EXPECT_EQ(valueText(document, "System.Author"), "Ann|Bob");
    EXPECT_EQ(valueText(document, "System.Keywords"), "sea");
    EXPECT_EQ(valueText(document, "System.Media.Publisher"), "House");
    EXPECT_EQ(valueText(document, "System.Document.DateSaved"), "116444736000000000");
}

TEST(LinuxFormatEpubTest, SaysWhatIsWrong)
{
    DocumentWorld world = officeWorld();
    auto locked = withPart("OPS/two.xhtml", std::string("\x00\x01\x02\x03\x90\x00", 6));
    EXPECT_EQ(world.extract("a.epub", makeZip(locked, true)).outcome, TextOutcome::damaged);
    locked.push_back({"META-INF/encryption.xml", "<encryption/>"});
    EXPECT_EQ(world.extract("a.epub", makeZip(locked, true)).outcome, TextOutcome::encrypted);
    EXPECT_EQ(world.extract("a.epub", makeZip(withPart("OPS/book.opf", "noise"), true)).outcome, TextOutcome::damaged);
    const std::string whole = makeZip(book);
    for (std::size_t i = 0; i < 20; ++i)
        EXPECT_NE(world.extract("a.epub", whole.substr(0, whole.size() * i / 20)).outcome, TextOutcome::extracted) << i;
}

}  // namespace
}  // namespace kelvane
