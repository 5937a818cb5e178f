#include "platform/text_folding.h"

namespace kelvane {
namespace {

const std::unique_ptr<TextFolding> folding = makeTextFolding();

TEST(TextFolding, LowersEveryScriptCharacterByCharacter)
{
    EXPECT_EQ(folding->lower(u"Straße ÄÖÜ ΣΑΣ Жук 123"), u"straße äöü σασ жук 123");
    EXPECT_EQ(folding->lower(u"\U00010400"), u"\U00010428");  // outside the basic plane
    EXPECT_EQ(folding->lower(u"\u0130I"), u"ii");             // simple mapping, whatever the user's language
    EXPECT_EQ(folding->lower(u""), u"");
}

TEST(TextFolding, DropsAccentsAndKeepsLetters)
{
    EXPECT_EQ(folding->withoutAccents(u"Crème Brûlée, Ångström, Việt, naïve"), u"Creme Brulee, Angstrom, Viet, naive");
    EXPECT_EQ(folding->withoutAccents(u"e\u0301"), u"e");
    EXPECT_EQ(folding->withoutAccents(u"ø ß 日本"), u"ø ß 日本");
    EXPECT_EQ(folding->withoutAccents(u"\u0390"), u"\u03B9");  // decomposes to three characters
}

TEST(TextFolding, MalformedTextPassesThrough)
{
    const std::u16string lone{u'A', char16_t(0xD800), u'B', char16_t(0xDC00)};
    EXPECT_EQ(folding->lower(lone), (std::u16string{u'a', char16_t(0xD800), u'b', char16_t(0xDC00)}));
    EXPECT_EQ(folding->withoutAccents(lone), lone);
}

}  // namespace
}  // namespace kelvane
