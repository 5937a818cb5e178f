#include "platform/text_modules.h"

#include <gtest/gtest.h>

#include "platform/platform.h"
#include "support/temp_tree.h"

namespace kelvane {
namespace {

TEST(TextModules, TheGermanModuleOfTheBuildHoldsEveryText)
{
    const auto platform = makePlatform();
    EXPECT_TRUE(platform->textModules().anyIn(KELVANE_TRANSLATIONS));
    const auto german = platform->textModules().load(KELVANE_TRANSLATIONS);
    ASSERT_TRUE(german) << german.error().detail;
    ASSERT_TRUE(installTranslation(*german));
    EXPECT_EQ(text(TextId::languageName), u"Deutsch");
    EXPECT_EQ(text(TextId::categoryMovies), u"Filme");
    for (std::uint16_t number = 1; number < textNumberLimit; ++number) {
        const auto found = german->find(number);
        const bool held = found != german->end();
        EXPECT_EQ(held, !englishText(TextId{number}).empty()) << number;
        EXPECT_TRUE(!held || text(TextId{number}) == found->second) << number;
    }
    releaseTranslation();
}

TEST(TextModules, AFolderWithoutAnyIsToldFromOneWithADamagedOne)
{
    const auto platform = makePlatform();
    const testing::TempTree tree;
    EXPECT_FALSE(platform->textModules().anyIn(tree.path()));
    EXPECT_EQ(platform->textModules().load(tree.path()).error().kind, ErrorKind::notFound);
    for (const char* name : {"kvtr_de.mo", "kvtr_de.dll"})
        tree.write(name, "MZ, but no more");
    EXPECT_TRUE(platform->textModules().anyIn(tree.path()));
    EXPECT_EQ(platform->textModules().load(tree.path()).error().kind, ErrorKind::invalid);
}

}  // namespace
}  // namespace kelvane
