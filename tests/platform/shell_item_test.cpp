#include "platform/shell_item.h"

#include "support/paths.h"

namespace kelvane {
namespace {

Ref<ShellItem> make(Ref<const ShellItem> parent, std::string_view name)
{
    return ShellItem::make(std::move(parent), testing::native(name), FileInfo{}, ShellItem::Place::fileSystem);
}

TEST(ShellItem, PutsItsPathTogetherFromItsParents)
{
    const auto root = make(nullptr, "/data");
    const auto file = make(make(root, "a b"), "caf\xC3\xA9\n.txt");  // keeps its parent alive

    EXPECT_EQ(testing::posix(file->fullName()), "/data/a b/caf\xC3\xA9\n.txt");
    EXPECT_EQ(file->path().native(), file->fullName());
    EXPECT_EQ(testing::posix(file->name()), "caf\xC3\xA9\n.txt");
    EXPECT_EQ(testing::posix(root->fullName()), "/data");
    EXPECT_EQ(testing::posix(make(make(nullptr, "/"), "etc")->fullName()), "/etc");
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
    EXPECT_EQ(testing::posix(halfWay->name()), "d");
}

}  // namespace
}  // namespace kelvane
