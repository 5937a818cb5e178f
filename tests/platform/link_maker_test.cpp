#include "platform/link_maker.h"

#include <gtest/gtest.h>

#include "platform/platform.h"
#include "support/temp_tree.h"

namespace kelvane {
namespace {

TEST(LinkMaker, MakesLinksButReplacesNothing)
{
    if (!testing::TempTree::canLink())
        GTEST_SKIP() << "no symbolic links can be made here";
    const auto platform = makePlatform();
    const testing::TempTree tree;
    const auto file = tree.write("kept", "contents");
    const auto folder = tree.folder("folder");
    const auto made = platform->links().makeSymbolicLink(tree.path("link"), file, false);
    if (!made.ok() && made.error().kind == ErrorKind::accessDenied)
        GTEST_SKIP() << "this system wants more rights for links";
    EXPECT_TRUE(made.ok());
    if (!std::filesystem::exists(tree.path("link")))
        GTEST_SKIP() << "this system only pretends to make links (Wine)";
    EXPECT_EQ(tree.read("link"), "contents");
    EXPECT_TRUE(platform->links().makeSymbolicLink(tree.path("second"), folder, true).ok());
    EXPECT_TRUE(std::filesystem::is_directory(tree.path("second")));

    const auto again = platform->links().makeSymbolicLink(file, folder, true);
    ASSERT_FALSE(again.ok());
    EXPECT_EQ(again.error().kind, ErrorKind::exists);
    EXPECT_EQ(tree.read("kept"), "contents");
}

}  // namespace
}  // namespace kelvane
