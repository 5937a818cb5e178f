#include "platform/linux/process_maps.h"

#include <gtest/gtest.h>
#include <unistd.h>

namespace kelvane::linux_os {
namespace {

TEST(ProcessMaps, LeavesOutWhatIsNoRange)
{
    const auto ranges = parseMaps("7f00-7f10 r-xp 00001000 08:01 12   /a b/lib x.so (deleted)\n"
                                  "\n"
                                  "zz-7f10 r-xp 0 08:01 12 /no\n"
                                  "7f10-7f00 r-xp 0 08:01 12 /backwards\n"
                                  "7f20 r-xp\n"
                                  "8000-9000 ---p 00000000 00:00 0 \n"
                                  "ffff000-fffff000 rw-p 00000000 00:00 0 [stack]");
    ASSERT_EQ(ranges.size(), 3u);
    EXPECT_EQ(ranges[0].path, "/a b/lib x.so (deleted)");
    EXPECT_EQ(ranges[0].offset, 0x1000u);
    EXPECT_TRUE(ranges[0].readable && ranges[0].executable);
    EXPECT_FALSE(ranges[1].readable);
    EXPECT_EQ(ranges[1].path, "");
    EXPECT_EQ(ranges[2].path, "[stack]");
    EXPECT_FALSE(ranges[2].holds(0xFFFFF000));
}

TEST(ProcessMaps, MemoryThatIsNotThereIsNoModuleWithABuild)
{
    const ProcessReader self(::getpid());
    EXPECT_TRUE(self.memory(0x10, 64).empty());
    const auto modules = modulesIn({{0x1000, 0x2000, true, true, 0, "/lib/gone.so (deleted)"}}, self);
    ASSERT_EQ(modules.size(), 1u);
    EXPECT_EQ(modules[0].path, "/lib/gone.so");
    EXPECT_TRUE(modules[0].buildId.empty());
}

}  // namespace
}  // namespace kelvane::linux_os
