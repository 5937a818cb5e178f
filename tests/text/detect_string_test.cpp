#include "text/detect_string.h"

#include <gtest/gtest.h>

namespace kelvane {
namespace {

TEST(DetectStringTest, LooksAtTheExtensionInAnyCase)
{
    const DetectString detect("EXT=\"PDF\" | ext = \"djvu\"");
    EXPECT_TRUE(detect.admits("report.pdf"));
    EXPECT_TRUE(detect.admits("SCAN.DjVu"));
    EXPECT_FALSE(detect.admits("pdf"));
    EXPECT_FALSE(detect.admits("report.pdf.txt"));
}

TEST(DetectStringTest, TakesAndBeforeOr)
{
    const DetectString detect(R"(EXT="A" & EXT="B" | EXT="C")");
    EXPECT_FALSE(detect.admits("x.a"));
    EXPECT_FALSE(detect.admits("x.b"));
    EXPECT_TRUE(detect.admits("x.c"));
    EXPECT_TRUE(DetectString("EXT=\"\"").admits("README"));
    EXPECT_FALSE(DetectString("EXT=\"\"").admits("README.md"));
}

// A test that is not understood may be true of any file.
TEST(DetectStringTest, AdmitsEveryFileWhereItIsNotSimple)
{
    for (const char* text :
         {"", "  ", "SIZE<1000", R"(EXT="A" & SIZE<1000)", R"(EXT!="A")", R"(!(EXT="A"))", R"((EXT="A"))",
          R"([0]="P" | EXT="A")", R"(EXT="A" |)", R"(EXT="A)", R"(EXT="A" EXT="B")", "MULTIMEDIA"})
        EXPECT_TRUE(DetectString(text).admits("x.z")) << text;
    EXPECT_TRUE(DetectString(std::string(1'000'000, '(')).admitsAll());
}

}  // namespace
}  // namespace kelvane
