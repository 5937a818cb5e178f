#include "ui/preview/hex_lines.h"

#include "text/text_charset.h"

namespace kelvane {
namespace {

TEST(PreviewHexLines, ShowsBytesInHexadecimalAndAsCharacters)
{
    EXPECT_EQ(hexLine(0, asBytes(std::string_view("Hello\n\x7F\xFF world!!", 16))),
              "00000000  48 65 6C 6C 6F 0A 7F FF  20 77 6F 72 6C 64 21 21  Hello... world!!");
}

TEST(PreviewHexLines, LeavesThePlacesOfMissingBytesBlankSoThatCharactersLineUp)
{
    const std::string whole = hexLine(0x10, asBytes(std::string_view("0123456789abcdef")));
    const std::string part = hexLine(0x10, asBytes(std::string_view("0")));
    EXPECT_EQ(part.rfind('0'), whole.find("0123456789"));
    EXPECT_EQ(part.substr(0, 12), "00000010  30");
}

TEST(PreviewHexLines, TakesMoreDigitsForPositionsBeyondFourGigabytes)
{
    EXPECT_EQ(hexLine(0x1'2345'6780, {}).substr(0, 14), "000123456780  ");
    EXPECT_EQ(hexLineCount(0), 0u);
    EXPECT_EQ(hexLineCount(16), 1u);
    EXPECT_EQ(hexLineCount(17), 2u);
    EXPECT_EQ(hexLineCount(UINT64_MAX), UINT64_MAX / 16 + 1);
}

}  // namespace
}  // namespace kelvane
