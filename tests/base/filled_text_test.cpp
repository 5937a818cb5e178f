#include "base/filled_text.h"

#include <gtest/gtest.h>

namespace kelvane {
namespace {

TEST(FilledText, PutsEachPartInItsPlaceOnce)
{
    EXPECT_EQ(filledText(TextId::progressItems, {"7", "10%"}), "7 of 10% files");
    EXPECT_EQ(filledText(TextId::progressItems, {"%2", "%1"}), "%2 of %1 files");
    EXPECT_EQ(filledText(TextId::progressItems, {"7"}), "7 of %2 files");
    EXPECT_EQ(filledText(TextId::searchingIn, {"unused"}), "searching in %s ...");
    ASSERT_TRUE(installTranslation(
        {{130, u"Deutsch"}, {static_cast<std::uint16_t>(TextId::progressItems), u"von %2 Dateien \u00FCber %1"}}));
    EXPECT_EQ(filledText(TextId::progressItems, {"7", "10"}), "von 10 Dateien \xC3\xBC"
                                                              "ber 7");
    releaseTranslation();
}

TEST(FilledText, CountsOneApart)
{
    EXPECT_EQ(countedText(0, TextId::oneFile, TextId::manyFiles), "0 files");
    EXPECT_EQ(countedText(1, TextId::oneFile, TextId::manyFiles), "1 file");
    EXPECT_EQ(countedText(12, TextId::oneFile, TextId::manyFiles), "12 files");
}

}  // namespace
}  // namespace kelvane
