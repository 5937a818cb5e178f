#include "ui/preview/short_lines.h"

namespace kelvane {
namespace {

TEST(PreviewShortLines, BreaksWhatIsTooLongAndNothingElse)
{
    const ShortLines whole = shortLines(u"1234\n\n12\n", 4, 3);
    EXPECT_EQ(whole.text, u"1234\n\n12\n");
    EXPECT_FALSE(whole.broken || whole.cut);
    const ShortLines broken = shortLines(u"12345678\n9", 4, 9);
    EXPECT_EQ(broken.text, u"1234\n5678\n9");
    EXPECT_TRUE(broken.broken && !broken.cut);
    EXPECT_EQ(shortLines(u"123\U0001F600", 4, 9).text, u"123\n\U0001F600");
    EXPECT_EQ(shortLines(u"\xDC00\xDC00\xDC00", 2, 9).text, u"\xDC00\n\xDC00\xDC00");
}

TEST(PreviewShortLines, EndsAfterSoManyLines)
{
    EXPECT_TRUE(shortLines(u"1\n2\n3\n", 4, 2).cut);
    EXPECT_EQ(shortLines(u"12345678", 2, 2).text, u"12\n34\n");
    EXPECT_EQ(shortLines(u"", 2, 2).text, u"");
}

}  // namespace
}  // namespace kelvane
