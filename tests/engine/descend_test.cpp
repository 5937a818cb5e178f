#include "engine/descend.h"

#include <gtest/gtest.h>

#include "support/paths.h"
#include "support/scan_world.h"

namespace kelvane {
namespace {

using Place = ShellItem::Place;

class Descending : public ::testing::Test {
protected:
    // A folder below /d, on volume 7 unless said otherwise.
    Ref<ShellItem> folder(const std::string& name, std::uint32_t attributes = 0, std::uint64_t volume = 7,
                          Place place = Place::fileSystem)
    {
        FileInfo info;
        info.kind = place == Place::archive ? FileKind::regular : FileKind::folder;
        info.attributes = attributes;
        info.identity = {volume, 100};
        return ShellItem::make(parent, testing::native(name), info, place);
    }
    static Ref<ShellItem> topFolder(const std::string& path)
    {
        FileInfo info;
        info.kind = FileKind::folder;
        info.identity = {7, 1};
        return ShellItem::make(nullptr, testing::native(path), info, Place::fileSystem);
    }
    bool enters(std::uint32_t flags, const Ref<ShellItem>& item)
    {
        const auto criteria = world.criteria(flags);
        return DescendTest(criteria, *paths, *world.shell).enters(*item);
    }

    testing::ScanWorld world;
    PathRules* paths = world.paths.get();
    Ref<ShellItem> parent = topFolder("/d");
    static constexpr std::uint32_t protect = scan_flag::protect;
};

TEST_F(Descending, FlagsOptionsAndMarksDecideTogether)
{
    using option_flag::enterVirtualFolders;
    using option_flag::followJunctions;
    using option_flag::skipSmallVirtual;
    const std::uint32_t link = attribute::reparsePoint, skipLinks = scan_flag::skipLinks;
    const std::uint32_t placeholder = link | attribute::cloudPlaceholder;
    const struct {
        bool entered;
        std::uint32_t flags, options, marks;
        Place place = Place::fileSystem;
    } table[] = {
        {true, protect, 0, 0},
        {false, protect, 0, attribute::hidden},
        {false, protect, 0, attribute::system},
        {true, 0, 0, attribute::hidden},
        {false, 0, 0, link},
        {true, 0, 0, placeholder},
        {true, 0, followJunctions, link},
        {false, skipLinks, followJunctions, link},
        {true, 0, 0, attribute::offline},
        {false, 0, enterVirtualFolders, attribute::offline},
        {false, 0, 0, 0, Place::archive},
        {true, 0, enterVirtualFolders, 0, Place::archive},
        {true, 0, 0, 0, Place::insideArchive},
        {false, 0, skipSmallVirtual, 0, Place::insideArchive},
        {true, 0, skipSmallVirtual | enterVirtualFolders, 0, Place::insideArchive},
    };
    const std::uint32_t before = world.options.flags;
    for (const auto& row : table) {
        world.options.flags = before | row.options;
        EXPECT_EQ(enters(row.flags, folder("a", row.marks, 7, row.place)), row.entered) << &row - table;
    }
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

}  // namespace
}  // namespace kelvane
