#include "platform/linux/volumes.h"

#include <sys/stat.h>
#include <sys/sysmacros.h>

namespace kelvane::linux_os {
namespace {

TEST(Volumes, MountsAreReadFromTheKernelsLines)
{
    const auto mounts = parseMountInfo("22 1 259:2 / / rw,relatime shared:1 master:3 - ext4 /dev/nvme0n1p2 rw\n"
                                       "23 22 0:21 / /proc rw,nosuid - proc proc rw\n"
                                       "40 22 8:17 / /media/My\\040Disk\\011\\134 rw shared:9 - vfat /dev/sdb1 rw\n"
                                       "41 22 0:50 /sub /net rw - fuse.sshfs me@host:/home rw\n");

    ASSERT_EQ(mounts.size(), 4u);
    EXPECT_EQ(mounts[0], (Mount{22, makedev(259, 2), "/", "ext4", "/dev/nvme0n1p2"}));
    EXPECT_EQ(mounts[1], (Mount{23, makedev(0, 21), "/proc", "proc", "proc"}));
    EXPECT_EQ(mounts[2].mountPoint, "/media/My Disk\t\\");
    EXPECT_EQ(mounts[3].type, "fuse.sshfs");
    EXPECT_EQ(mounts[3].root, "/sub");
}

TEST(Volumes, TheTypeTellsWhereTheFilesAre)
{
    EXPECT_TRUE(factsOfType("fuse.portal").pseudo);
    EXPECT_TRUE(factsOfType("nfs4").network && !factsOfType("nfs4").fetchesOnRead);
    EXPECT_TRUE(factsOfType("fuse.sshfs").network);
    EXPECT_TRUE(factsOfType("fuse.rclone").fetchesOnRead);
    for (const char* local : {"ext4", "btrfs", "tmpfs", "fuseblk", "overlay"}) {
        const VolumeFacts facts = factsOfType(local);
        EXPECT_FALSE(facts.pseudo || facts.network || facts.fetchesOnRead) << local;
        EXPECT_EQ(facts.clones, std::string_view(local) == "btrfs") << local;
    }
}

TEST(Volumes, AVolumeKnowsWhereItIsMounted)
{
    struct stat root {};
    ASSERT_EQ(::stat("/proc", &root), 0);
    EXPECT_EQ(Volumes().facts(root.st_dev, 0).mountPoint, "/proc");
    EXPECT_TRUE(Volumes().facts(~std::uint64_t{0}, 0).mountPoint.empty());
}

}  // namespace
}  // namespace kelvane::linux_os
