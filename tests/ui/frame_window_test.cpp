#include "support/ui/desktop_world.h"

namespace kelvane::testing {
namespace {

TEST(FrameWindow, OpensASecondOneAndClosesBoth)
{
    DesktopWorld world;
    MainWindow& first = world.window();
    world.loadList({{"a", "b"}, {"c", "d", "e"}});
    EXPECT_EQ(world.link().rows().count(), 5u);
    EXPECT_EQ(world.link().rows().figures().groups, 2u);

    MainWindow& second = world.openWindow();
    EXPECT_NE(&second, &first);
    EXPECT_EQ(world.application().windowCount(), 2u);
    EXPECT_EQ(second.link().rows().count(), 0u) << "each window has a list of its own";

    world.closeWindow(first);
    EXPECT_EQ(world.application().windowCount(), 1u);
    EXPECT_THAT(DesktopWorld::windows(), ::testing::ElementsAre(&second));
}

}  // namespace
}  // namespace kelvane::testing
