#include "app/version_info.h"

#include <gtest/gtest.h>

namespace kelvane {
namespace {

TEST(VersionInfoTest, TextIsFitForFileNames)
{
    const std::u16string text = CAppVersionInfo::versionText();
    EXPECT_TRUE(text.ends_with(u" [U] x64"));
    EXPECT_EQ(text.find_first_not_of(u"0123456789. []Ux64"), std::u16string::npos);
    EXPECT_GT(CAppVersionInfo::versionNumber(), 0u);
}

}  // namespace
}  // namespace kelvane
