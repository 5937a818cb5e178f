#include "cli/printable.h"

#include <gtest/gtest.h>

namespace kelvane {
namespace {

TEST(Printable, NothingReachesTheTerminalThatItWouldObey)
{
    EXPECT_EQ(printable("/home/\xC3\xA9t\xC3\xA9/a b\\c"), "/home/\xC3\xA9t\xC3\xA9/a b\\c");
    EXPECT_EQ(printable("x\xFFy"), "x\xEF\xBF\xBDy");
    EXPECT_EQ(printable("a\\n") + printable("a\n\\n"), "a\\na\\n\\\\n") << "a backslash alone stays";
    EXPECT_EQ(printable("\u200e\u202a\u202e\u2066\u2069"), "\\u200e\\u202a\\u202e\\u2066\\u2069");
    EXPECT_EQ(printable("\u2010\u2029\u202f\u2065\u206a\u2013"), "\u2010\u2029\u202f\u2065\u206a\u2013");
    EXPECT_EQ(printable("a\nb\tc\rd"), "a\\nb\\tc\\rd");
    EXPECT_EQ(printable("\x1b[2J\x7f"), "\\x1b[2J\\x7f");
    EXPECT_EQ(printable("\xC2\x9B"
                        "2J"),
              "\\x9b2J");
    EXPECT_EQ(printable("\xC2\xA0"), "\xC2\xA0");
    EXPECT_EQ(printable(std::string_view("\0", 1)), "\\x00");
}

}  // namespace
}  // namespace kelvane
