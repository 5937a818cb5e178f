#include "props/file_readers.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include "base/utf.h"
#include "props/file_kinds.h"
#include "props/property_world.h"
#include "support/paths.h"

namespace kelvane {
namespace {

using testing::PropertyWorld;

// With "/" between components, whatever the system has there.
std::u16string slashed(std::u16string path)
{
    std::replace(path.begin(), path.end(), static_cast<char16_t>(std::filesystem::path::preferred_separator), u'/');
    return path;
}

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
    EXPECT_EQ(slashed(text("System.ItemPathDisplay")), u"/home/My Album/Track.One.MP3");
    EXPECT_EQ(slashed(text("System.ItemFolderPathDisplay")), u"/home/My Album");
    EXPECT_EQ(text("System.ItemFolderNameDisplay"), u"My Album");
    EXPECT_EQ(text("System.ItemUrl"), u"file:///home/My%20Album/Track.One.MP3");
    EXPECT_EQ(text("System.Kind"), u"music");
    EXPECT_EQ(text("System.KindText"), u"Music");
    EXPECT_EQ(text("System.FileOwner"), u"someone");
    EXPECT_EQ(slashed(text("System.ParsingPath")), u"/home/My Album/Track.One.MP3");
    for (const std::string name : {"README", ".profile", "v1. final"}) {
        world.files.addFile("/home/" + name, "");
        EXPECT_EQ(world.textOf("/home/" + name, "System.FileExtension"), u"") << name;
    }
}

TEST(FileReaders, nameThatIsNoTextStaysApartFromOthers)
{
    if (sizeof(NativeView::value_type) > 1)
        GTEST_SKIP() << "names are bytes on other systems";
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
    for (const std::int64_t time : {1234, 0}) {
        world.files.setModified("/home/a", {time});
        ItemContext file = world.context("/home/a");
        for (const auto* name : {"System.DateCreated", "System.DateAccessed", "System.DateModified"})
            EXPECT_TRUE(time == 0 ? world.value(file, name).missing() : world.value(file, name).number() == time);
    }
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
    EXPECT_EQ(fileKind(true, u".jpg").name, u"folder");
    for (const auto* none : {u".jp", u".", u"", u".jpg .jpeg"})
        EXPECT_EQ(fileKind(false, none).name, u"");
}

TEST(StockReaders, kindIsTheFirstCategoryThatAdmitsTheName)
{
    PropertyWorld world;
    for (const auto& [name, kind] :
         {std::pair{"/home/A.JPEG", u"Photos"}, {"/home/Report1.pdf", u"Reports"}, {"/home/other.pdf", u"Anything"}}) {
        world.files.addFile(name, "");
        EXPECT_EQ(world.textOf(name, "Stock.Kind"), kind);
    }
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
