#include "props/file_readers.h"

#include <gtest/gtest.h>

#include "base/utf.h"
#include "props/file_kinds.h"
#include "props/property_world.h"

namespace kelvane {
namespace {

using testing::PropertyWorld;

TEST(FileReaders, namesAndPaths)
{
    PropertyWorld world;
    world.files.addFile("/home/My Album/Track.One.MP3", "x");
    const auto text = [&world](std::string_view name) { return world.textOf("/home/My Album/Track.One.MP3", name); };
    for (const auto* name : {"System.FileName", "System.ItemName", "System.ItemNameDisplay"})
        EXPECT_EQ(text(name), u"Track.One.MP3") << name;
    EXPECT_EQ(text("System.ItemNameDisplayWithoutExtension"), u"Track.One");
    EXPECT_EQ(text("System.FileExtension"), u".MP3");
    EXPECT_EQ(text("System.ItemType"), u".mp3");
    EXPECT_EQ(text("System.ItemTypeText"), u"MP3 file");
    EXPECT_EQ(text("System.ItemPathDisplay"), u"/home/My Album/Track.One.MP3");
    EXPECT_EQ(text("System.ItemFolderPathDisplay"), u"/home/My Album");
    EXPECT_EQ(text("System.ItemFolderNameDisplay"), u"My Album");
    EXPECT_EQ(text("System.ItemUrl"), u"file:///home/My%20Album/Track.One.MP3");
    EXPECT_EQ(text("System.Kind"), u"music");
    EXPECT_EQ(text("System.KindText"), u"Music");
    EXPECT_EQ(text("System.FileOwner"), u"someone");
}

TEST(FileReaders, namesWithoutAnExtension)
{
    PropertyWorld world;
    for (const std::string name : {"README", ".profile", "v1. final"}) {
        world.files.addFile("/home/" + name, "");
        EXPECT_EQ(world.textOf("/home/" + name, "System.FileExtension"), u"") << name;
        EXPECT_EQ(world.textOf("/home/" + name, "System.ItemNameDisplayWithoutExtension"),
                  std::u16string(name.begin(), name.end()));
    }
}

TEST(FileReaders, childrenOfAFolderKnowTheirPlace)
{
    PropertyWorld world;
    world.files.addFile("/home/dir/a.txt", "");
    const auto folder = world.shell->parse("/home/dir").value();
    Ref<ShellItem> child;
    ASSERT_TRUE(world.shell->enumerate(folder, {}, [&child](Ref<ShellItem> item) {
        child = std::move(item);
        return true;
    }));
    ItemContext file{child};
    EXPECT_EQ(world.text(file, "System.ItemFolderPathDisplay"), u"/home/dir");
    EXPECT_EQ(world.text(file, "System.ItemFolderNameDisplay"), u"dir");
    EXPECT_EQ(world.text(file, "System.ParsingPath"), u"/home/dir/a.txt");
    EXPECT_EQ(world.text(file, "System.ParsingName"), u"a.txt");
}

TEST(FileReaders, nameThatIsNoTextStaysApartFromOthers)
{
    PropertyWorld world;
    world.files.addFile("/home/\xFF.txt", "");
    world.files.addFile("/home/\xFE.txt", "");
    EXPECT_EQ(toUtf8(world.textOf("/home/\xFF.txt", "System.FileName")), "\uFFFD.txt");
    EXPECT_NE(world.textOf("/home/\xFF.txt", "System.FileName"), world.textOf("/home/\xFE.txt", "System.FileName"));
    EXPECT_EQ(world.textOf("/home/\xFF.txt", "System.ItemUrl"), u"file:///home/%FF.txt");
}

TEST(FileReaders, timesAreReadOnRequestAndMayBeUnknown)
{
    PropertyWorld world;
    world.files.addFile("/home/a", "x");
    world.files.setModified("/home/a", {1234});
    ItemContext file = world.context("/home/a");
    EXPECT_EQ(world.value(file, "System.DateCreated").number(), 1234);
    EXPECT_EQ(world.value(file, "System.DateAccessed").number(), 1234);
    world.files.setModified("/home/a", {});
    ItemContext again = world.context("/home/a");
    EXPECT_TRUE(world.value(again, "System.DateCreated").missing());
    EXPECT_TRUE(world.value(again, "System.DateModified").missing());
}

TEST(FileReaders, vanishedFileHasNoDetails)
{
    PropertyWorld world;
    world.files.addFile("/home/a", "x");
    ItemContext file = world.context("/home/a");
    world.files.remove("/home/a");
    for (const auto* name : {"System.DateCreated", "System.FileOwner", "System.FileAllocationSize", "Stock.HardLinks",
                             "Stock.ADS", "Stock.TotalFileSize", "System.Comment"})
        EXPECT_TRUE(world.value(file, name).missing()) << name;
}

TEST(FileKinds, goByWholeExtensions)
{
    EXPECT_EQ(fileKind(false, u".jpg").name, u"picture");
    EXPECT_EQ(fileKind(false, u".ts").name, u"video");
    EXPECT_EQ(fileKind(false, u".epub").name, u"document");
    EXPECT_EQ(fileKind(false, u".jp").name, u"");
    EXPECT_EQ(fileKind(false, u".").name, u"");
    EXPECT_EQ(fileKind(false, u"").name, u"");
    EXPECT_EQ(fileKind(false, u".jpg .jpeg").name, u"");
    EXPECT_EQ(fileKind(true, u".jpg").name, u"folder");
}

TEST(StockReaders, attributesAreLetters)
{
    PropertyWorld world;
    const auto letters = [&world](std::uint32_t attributes) {
        FileInfo info;
        info.kind = FileKind::regular;
        info.attributes = attributes;
        ItemContext file{ShellItem::make(nullptr, "/home/a", info, ShellItem::Place::fileSystem)};
        return world.text(file, "Stock.FileAttributes");
    };
    EXPECT_EQ(letters(0x1 | 0x2 | 0x4 | 0x20 | 0x10 | 0x800 | 0x4000 | 0x1000 | 0x400 | 0x2000 | 0x200 | 0x100),
              u"RHSADCEOJIPT");
    EXPECT_EQ(letters(attribute::hidden | attribute::sparse), u"-H--------P-");
    EXPECT_EQ(letters(attribute::cloudPlaceholder), u"------------");
}

TEST(StockReaders, kindIsTheFirstCategoryThatAdmitsTheName)
{
    PropertyWorld world;
    for (const auto* name : {"/home/A.JPEG", "/home/Report1.pdf", "/home/other.pdf", "/home/noext"})
        world.files.addFile(name, "");
    EXPECT_EQ(world.textOf("/home/A.JPEG", "Stock.Kind"), u"Photos");
    EXPECT_EQ(world.textOf("/home/Report1.pdf", "Stock.Kind"), u"Reports");
    EXPECT_EQ(world.textOf("/home/other.pdf", "Stock.Kind"), u"Anything");
    EXPECT_EQ(world.textOf("/home/noext", "Stock.Kind"), u"Anything");
    EXPECT_EQ(world.textOf("/home", "Stock.Kind"), u"") << "a folder is of no kind";
}

TEST(StockReaders, countsOfLinksStreamsAndFiles)
{
    PropertyWorld world;
    world.files.addFile("/home/dir/a", std::string(5000, 'x'));
    world.files.addHardLink("/home/dir/b", "/home/dir/a");
    world.files.addFile("/home/dir/sub/c", "");
    world.files.addStream("/home/dir/a", "one", "1");
    world.files.addStream("/home/dir/a", "two", "22");
    ItemContext file = world.context("/home/dir/a");
    EXPECT_EQ(world.value(file, "Stock.HardLinks").number(), 2);
    EXPECT_EQ(world.value(file, "Stock.ADS").number(), 2);
    EXPECT_EQ(world.text(file, "Stock.ADSNames"), u"one; two");
    EXPECT_EQ(world.value(file, "Stock.TotalFileSize").number(), 8192);
    EXPECT_TRUE(world.value(file, "Stock.FileCount").missing());

    ItemContext folder = world.context("/home/dir");
    EXPECT_EQ(world.value(folder, "Stock.FileCount").number(), 2);
    EXPECT_NE(world.value(folder, "Stock.IsFolder").number(), 0);
    EXPECT_TRUE(world.value(folder, "System.Size").missing());
}

}  // namespace
}  // namespace kelvane
