#include "base/text_table.h"

#include <gtest/gtest.h>

#include "base/placeholders.h"

namespace kelvane {
namespace {

constexpr auto numberOf(TextId id)
{
    return static_cast<std::uint16_t>(id);
}

class TextTable : public ::testing::Test {
protected:
    ~TextTable() override { releaseTranslation(); }
};

TEST_F(TextTable, TranslatesWhatTheModuleHoldsAndKeepsTheRestEnglish)
{
    EXPECT_EQ(text(TextId::languageName), u"English");
    EXPECT_EQ(text(TextId{500}), u"");
    EXPECT_FALSE(isTranslated());
    ASSERT_TRUE(installTranslation({{130, u"Deutsch"}, {numberOf(TextId::kindNumber), u"Zahl"}, {60000, u"fremd"}}));
    EXPECT_TRUE(isTranslated());
    EXPECT_EQ(text(TextId::languageName), u"Deutsch");
    EXPECT_EQ(text(TextId::kindNumber), u"Zahl");
    EXPECT_EQ(text(TextId::kindDate), u"Date");
    EXPECT_EQ(englishText(TextId::kindNumber), u"Number");
    releaseTranslation();
    EXPECT_EQ(text(TextId::kindNumber), u"Number");
}

TEST_F(TextTable, RefusesAModuleWithoutTheNameOfItsLanguage)
{
    ASSERT_TRUE(installTranslation({{130, u"Deutsch"}, {numberOf(TextId::kindNumber), u"Zahl"}}));
    EXPECT_FALSE(installTranslation({{numberOf(TextId::kindNumber), u"Nombre"}}));
    EXPECT_FALSE(installTranslation({{130, u""}, {numberOf(TextId::kindNumber), u"Nombre"}}));
    EXPECT_EQ(text(TextId::kindNumber), u"Zahl");
}

TEST_F(TextTable, KeepsATextEnglishWhoseTranslationIsEmptyOrCannotBeFilledIn)
{
    const TextsByNumber texts = {{130, u"Deutsch"},
                                 {numberOf(TextId::searchingIn), u"%d wird durchsucht"},
                                 {numberOf(TextId::duplicatesFound), u"%d Duplikate in %d Minuten"},
                                 {numberOf(TextId::kindNumber), u""}};
    ASSERT_TRUE(installTranslation(texts));
    for (const auto id : {TextId::searchingIn, TextId::duplicatesFound, TextId::kindNumber})
        EXPECT_EQ(text(id), englishText(id));
}

TEST(Placeholders, ThoseOfPrintfKeepTheirOrderAndNumberedOnesMayChangePlaces)
{
    struct Case {
        std::u16string_view english;
        std::u16string_view translation;
        bool same;
    };
    const Case cases[] = {
        {u"plain", u"schlicht", true},
        {u"%d of %s", u"%d von %s", true},
        {u"%d of %s", u"%s: %d", false},
        {u"%d:%02d", u"%d:%2d", false},
        {u"%.1f", u"%.1f", true},
        {u"%lu", u"%u", false},
        {u"%s", u"", false},
        {u"%1 and %2", u"%2 und %1", true},
        {u"%1 and %2", u"%1 und %1", false},
        {u"%1", u"%10", false},
        {u"%d %%", u"%d%%", true},
        {u"all", u"100 % der Dateien", false},  // "% d" is a placeholder to printf
        {u"a lone %", u"nur %", true},
        {u"%%d", u"%d", false},
    };
    for (const Case& one : cases)
        EXPECT_EQ(samePlaceholders(one.english, one.translation), one.same)
            << std::string(one.translation.begin(), one.translation.end());
}

}  // namespace
}  // namespace kelvane
