#include <gtest/gtest.h>

#include "support/linux_office_documents.h"

namespace kelvane {
namespace {

using testing::DocumentWorld;
using testing::makeZip;
using testing::officeWorld;
using testing::valueText;

const std::string fictionBook =
    "<?xml version='1.0' encoding='windows-1251'?>\n<FictionBook><description><title-info><genre>sf</genre><author>\n"
    "<first-name>\xc0\xed\xed\xe0</first-name><last-name>B</last-name></author><author><nickname>C</nickname></author>"
    "<book-title>\xca\xed\xe8\xe3\xe0</book-title><annotation><p>About</p><p>it</p></annotation>"
    "<date value='1970-01-01'>then</date><sequence name='Cycle' number='2'/></title-info>"
    "<document-info><author><nickname>maker</nickname></author></document-info></description>\n"
    "<body><title><p>One</p></title><section>\n <p>\xd2\xe5\xea\xf1\xf2 <em>of</em>\n the  book</p><empty-line/>"
    "<poem><stanza><v>verse</v><v>verse</v></stanza></poem></section></body>"
    "<binary id='cover'>AAAA</binary></FictionBook>";

TEST(LinuxFormatFictionBookTest, ReadsTextAndDescriptionInAnyCharsetAndPacked)
{
    DocumentWorld world = officeWorld();
    for (const auto& [name, bytes] : {std::pair<const char*, std::string>{"a.fb2", fictionBook},
                                      {"a.doc", fictionBook},
                                      {"a.fb2.zip", makeZip({{"a.fb2", fictionBook}})}}) {
        const auto document = world.extract(name, bytes);
        EXPECT_EQ(document.outcome, TextOutcome::extracted);
        EXPECT_EQ(document.text, u"One\n\u0422\u0435\u043a\u0441\u0442 of the book\nverse\nverse") << name;
        EXPECT_EQ(valueText(document, "System.Title"), "\u041a\u043d\u0438\u0433\u0430");
        EXPECT_EQ(valueText(document, "System.Author"), "\u0410\u043d\u043d\u0430 B|C");
        EXPECT_EQ(valueText(document, "System.Comment"), "About it");
        EXPECT_EQ(valueText(document, "System.Document.DateCreated"), "116444736000000000");
        EXPECT_EQ(valueText(document, "System.Media.SeriesName"), "Cycle");
    }
}

TEST(LinuxFormatFictionBookTest, KeepsWhatStandsBeforeDamage)
{
    DocumentWorld world = officeWorld();
    const auto document = world.extract("a.fb2", fictionBook.substr(0, fictionBook.find("<poem>")));
    EXPECT_EQ(document.outcome, TextOutcome::damaged);
    EXPECT_TRUE(document.text.starts_with(u"One\n")) << document.text.size();
}

}  // namespace
}  // namespace kelvane
