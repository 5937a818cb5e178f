#include "props/text_fold.h"

#include <gtest/gtest.h>

#include "support/fakes.h"

namespace kelvane {
namespace {

TEST(TextFold, lowersAndDropsAccentsAndPunctuation)
{
    const testing::SimpleFolding folding;
    EXPECT_EQ(foldText(u"Caf\u00E9, DEL\u00C9", folding), u"cafe  dele");
    EXPECT_EQ(foldText(u"/\\-.,'\":()[]{}!<>?*$%&+@#~|;_", folding), std::u16string(29, u' '));
    EXPECT_EQ(foldText(u"a=b^c", folding), u"a=b^c");
}

TEST(TextFold, keepsTheFirstOfEachWord)
{
    EXPECT_EQ(uniqueWords(u"  world hello\tworld  \nhello you "), u"world hello you");
    EXPECT_EQ(uniqueWords(u"a\u00A0a\u3000b"), u"a b");
    EXPECT_EQ(uniqueWords(u" \t "), u"");
    EXPECT_EQ(uniqueWords(u"wor world"), u"wor world");
}

}  // namespace
}  // namespace kelvane
