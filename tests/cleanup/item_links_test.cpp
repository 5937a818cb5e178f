#include "cleanup/item_links.h"

#include <gtest/gtest.h>

#include "support/fakes.h"

namespace kelvane {
namespace {

Ref<ShellItem> at(const char* path)
{
    return ShellItem::make(nullptr, testing::native(path), {FileKind::regular, 0, FileSize{1}, {}, {}},
                           ShellItem::Place::fileSystem);
}

// Without identities, drive letters and shares tell.
TEST(ItemLinks, TellVolumesByLettersAndShares)
{
    const testing::SimpleFolding folding;
    const auto paths = makeWindowsPathRules(folding);
    const struct {
        const char *a, *b;
        std::optional<bool> same;
    } rows[] = {
        {"C:\\a", "c:\\b\\c", true},
        {"C:\\a", "D:\\a", false},
        {"\\\\?\\C:\\a", "c:\\b", true},
        {"C:\\a", "\\\\srv\\C\\a", false},
        {"\\\\srv\\x\\a", "d:\\a", false},
        {"\\\\srv\\x\\a", "\\\\srv\\x\\b\\c", true},
        {"\\\\srv\\x\\a", "\\\\SRV\\X\\b", true},
        {"\\\\srv\\x\\a", "\\\\srv\\y\\a", false},
        {"\\\\srv\\x\\a", "\\\\srv\\xy\\a", false},
        {"\\\\srv\\x\\a", "\\\\other\\x\\a", false},
        {"\\\\?\\UNC\\srv\\x\\a", "\\\\srv\\x\\b", true},
        {"\\\\?\\unc\\srv\\x\\a", "\\\\srv\\z\\b", false},
        {"/m/a", "/n/a", std::nullopt},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(onSameVolume(*at(row.a), *at(row.b), *paths), row.same) << row.a << ' ' << row.b;
        EXPECT_EQ(onSameVolume(*at(row.b), *at(row.a), *paths), row.same) << row.b << ' ' << row.a;
    }
    for (const char* network : {"\\\\srv\\x\\a", "\\\\?\\UNC\\srv\\x\\a"})
        EXPECT_TRUE(hasNetworkPath(*at(network), *paths)) << network;
    for (const char* local : {"C:\\\\srv\\x", "\\\\?\\C:\\a", "\\srv\\x"})
        EXPECT_FALSE(hasNetworkPath(*at(local), *paths)) << local;
}

}  // namespace
}  // namespace kelvane
