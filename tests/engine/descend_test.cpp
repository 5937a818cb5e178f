#include "engine/descend.h"

#include <gtest/gtest.h>

#include "support/scan_world.h"

namespace kelvane {
namespace {

using Place = ShellItem::Place;

class Descending : public ::testing::Test {
protected:
    // A folder below /d on volume 7, with an identity of its own.
    Ref<ShellItem> folder(const std::string& name, std::uint32_t attributes = 0, std::uint64_t volume = 7,
                          Place place = Place::fileSystem)
    {
        FileInfo info;
        info.kind = place == Place::archive ? FileKind::regular : FileKind::folder;
        info.attributes = attributes;
        info.identity = {volume, ++lastIndex};
        return ShellItem::make(parent, name, info, place);
    }
    static Ref<ShellItem> topFolder(const std::string& path)
    {
        FileInfo info;
        info.kind = FileKind::folder;
        info.identity = {7, 1};
        return ShellItem::make(nullptr, path, info, Place::fileSystem);
    }
    bool enters(std::uint32_t flags, const Ref<ShellItem>& item)
    {
        const auto criteria = world.criteria(flags);
        return DescendTest(criteria, *paths, *world.shell).enters(*item);
    }

    testing::ScanWorld world;
    PathRules* paths = world.paths.get();
    std::uint64_t lastIndex = 100;
    Ref<ShellItem> parent = topFolder("/d");
    static constexpr std::uint32_t protect = scan_flag::protect;
};

TEST_F(Descending, ProtectionStopsAtHiddenAndSystemFolders)
{
    EXPECT_FALSE(enters(protect, folder("a", attribute::hidden)));
    EXPECT_FALSE(enters(protect, folder("a", attribute::system)));
    EXPECT_TRUE(enters(0, folder("a", attribute::hidden)));
    EXPECT_TRUE(enters(protect, folder("a")));
}

TEST_F(Descending, ProtectionStopsAtProtectedFolders)
{
    parent = topFolder("/");
    EXPECT_FALSE(enters(protect, folder("usr")));
    EXPECT_TRUE(enters(0, folder("usr")));
    EXPECT_TRUE(enters(protect, folder("home")));
    EXPECT_FALSE(enters(protect, folder(".Trash-1000")));
}

TEST_F(Descending, LinksAreEnteredOnlyWhenTheyAreFollowed)
{
    EXPECT_FALSE(enters(0, folder("a", attribute::reparsePoint)));
    EXPECT_TRUE(enters(0, folder("a", attribute::reparsePoint | attribute::cloudPlaceholder)));
    world.options.flags |= option_flag::followJunctions;
    EXPECT_TRUE(enters(0, folder("a", attribute::reparsePoint)));
    EXPECT_FALSE(enters(scan_flag::skipLinks, folder("a", attribute::reparsePoint)));
}

TEST_F(Descending, ArchivesAndOfflineFoldersDependOnVirtualFolders)
{
    EXPECT_FALSE(enters(0, folder("a.zip", 0, 7, Place::archive)));
    EXPECT_TRUE(enters(0, folder("a", attribute::offline)));
    world.options.flags |= option_flag::enterVirtualFolders;
    EXPECT_TRUE(enters(0, folder("a.zip", 0, 7, Place::archive)));
    EXPECT_FALSE(enters(0, folder("a", attribute::offline)));
}

TEST_F(Descending, SmallVirtualFoldersMayBeLeftOut)
{
    const auto inside = [&] { return folder("a", 0, 0, Place::insideArchive); };
    EXPECT_TRUE(enters(0, inside()));
    world.options.flags |= option_flag::skipSmallVirtual;
    EXPECT_FALSE(enters(0, inside()));
    world.options.flags |= option_flag::enterVirtualFolders;
    EXPECT_TRUE(enters(0, inside()));
}

TEST_F(Descending, LongPathsNeedDirectListing)
{
    const auto windows = makeWindowsPathRules(world.folding);
    paths = windows.get();
    parent = topFolder(R"(\\?\c:\)");
    EXPECT_TRUE(enters(0, folder("a")));
    world.options.flags &= ~option_flag::directEnumeration;
    EXPECT_FALSE(enters(0, folder("a")));
}

TEST_F(Descending, ExcludedVolumesAreNotEntered)
{
    world.options.excludedVolumes = {8, 0xF3364BA0, 7};
    EXPECT_FALSE(enters(0, folder("a", 0, 8)));
    EXPECT_FALSE(enters(0, folder("a", 0, 0x1'0000'0008)));  // the low 32 bits count
    EXPECT_TRUE(enters(0, folder("a", 0, 0xF3364BA0)));      // never excluded
    EXPECT_TRUE(enters(0, folder("a", 0, 9)));
    EXPECT_FALSE(enters(0, folder("a", 0, 7)));
    // With protection on and neither links nor archives in play, a root's own volume was chosen; one that is mounted
    // further down was not.
    EXPECT_TRUE(enters(protect, folder("a", 0, 7)));
    EXPECT_FALSE(enters(protect, folder("a", 0, 8)));
    world.options.flags |= option_flag::enterVirtualFolders;
    EXPECT_FALSE(enters(protect, folder("a", 0, 7)));
}

TEST_F(Descending, PseudoFileSystemsAreAskedForOncePerVolume)
{
    world.files.addFolder("/d/proc");
    world.files.addFolder("/d/disk");
    world.files.setVolume("/d/proc", {.serial = 20, .fileSystem = "proc", .pseudo = true});
    world.files.setVolume("/d/disk", {.serial = 21, .fileSystem = "ext4"});
    const auto criteria = world.criteria(0);
    DescendTest test(criteria, *paths, *world.shell);
    EXPECT_FALSE(test.enters(*folder("proc", 0, 20)));
    EXPECT_FALSE(test.enters(*folder("proc", 0, 20)));
    EXPECT_TRUE(test.enters(*folder("disk", 0, 21)));
    EXPECT_TRUE(test.enters(*folder("disk", 0, 21)));
    EXPECT_TRUE(test.enters(*folder("same", 0, 7)));
    EXPECT_EQ(world.files.accesses().size(), 2u);
    EXPECT_TRUE(test.isPseudo(*folder("proc", 0, 20)));
}

TEST_F(Descending, AFolderIsEnteredOnceByWhateverName)
{
    const auto criteria = world.criteria(0);
    DescendTest test(criteria, *paths, *world.shell);
    const auto first = folder("a");
    const auto again = ShellItem::make(parent, "b", first->info(), Place::fileSystem);
    EXPECT_TRUE(test.enters(*first));
    EXPECT_FALSE(test.enters(*again));
    EXPECT_FALSE(test.entersRoot(*again));
    // Without identities nothing is known to be one, and entries of archives are numbered in each archive anew.
    for (int i = 0; i < 2; ++i) {
        lastIndex = static_cast<std::uint64_t>(-1);
        EXPECT_TRUE(test.enters(*folder("c", 0, 0)));
        lastIndex = 4;
        EXPECT_TRUE(test.enters(*folder("d", 0, 0, Place::insideArchive)));
    }
}

}  // namespace
}  // namespace kelvane
