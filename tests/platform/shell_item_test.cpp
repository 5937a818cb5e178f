#include "platform/shell_item.h"

#include <thread>
#include <vector>

namespace kelvane {
namespace {

using Place = ShellItem::Place;

Ref<ShellItem> make(Ref<const ShellItem> parent, NativeView name, Place place = Place::fileSystem)
{
    return ShellItem::make(std::move(parent), name, FileInfo{}, place);
}

TEST(ShellItem, PutsItsPathTogetherFromItsParents)
{
    const auto root = make(nullptr, "/data");
    const auto file = make(make(root, "a b"), "caf\xE9\n.txt");

    EXPECT_EQ(file->fullName(), "/data/a b/caf\xE9\n.txt");
    EXPECT_EQ(file->path().native(), file->fullName());
    EXPECT_EQ(file->name(), "caf\xE9\n.txt");
    EXPECT_EQ(root->fullName(), "/data");
    EXPECT_EQ(make(make(nullptr, "/"), "etc")->fullName(), "/etc");
}

TEST(ShellItem, KnowsTheArchiveThatHoldsIt)
{
    const auto archive = make(make(nullptr, "/data"), "x.zip", Place::archive);
    const auto entry = make(make(archive, "folder", Place::insideArchive), "file", Place::insideArchive);

    EXPECT_EQ(entry->fullName(), "/data/x.zip/folder/file");
    EXPECT_EQ(entry->enclosingArchive(), archive.get());
    EXPECT_EQ(archive->enclosingArchive(), nullptr);
    EXPECT_TRUE(archive->isFolder());
    EXPECT_TRUE(archive->inFileSystem());
    EXPECT_FALSE(entry->inFileSystem());
}

TEST(ShellItem, KeepsItsParentsAlive)
{
    Ref<ShellItem> item = make(nullptr, "/root");
    item = make(item, "folder");
    item = make(item, "file");

    EXPECT_EQ(item->fullName(), "/root/folder/file");
}

// Ending a chain item by item through destructors once overflowed the stack.
TEST(ShellItem, AChainOfAnyLengthEndsWithoutRecursion)
{
    Ref<ShellItem> item = make(nullptr, "/");
    for (int i = 0; i < 1'000'000; ++i)
        item = make(item, "d");
    const Ref<const ShellItem> halfWay = item->parent();

    EXPECT_EQ(item->fullName().size(), 2'000'000u);
    item = nullptr;
    EXPECT_EQ(halfWay->name(), "d");
}

TEST(ShellItem, SiblingsMayEndOnAnyThread)
{
    std::vector<Ref<ShellItem>> items;
    {
        const auto folder = make(make(nullptr, "/root"), "folder");
        for (int i = 0; i < 10'000; ++i)
            items.push_back(make(folder, std::to_string(i)));
    }
    std::thread other([half = std::vector(items.begin() + 5'000, items.end())]() mutable { half.clear(); });
    items.clear();
    other.join();
}

}  // namespace
}  // namespace kelvane
