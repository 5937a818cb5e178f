#include "app/sort_order.h"

#include <gmock/gmock.h>

#include "support/memory_settings_store.h"

namespace kelvane {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr PropertyKey size{{0xB725F130, 0x47EF, 0x101A, {0xA5, 0xF1, 0x02, 0x60, 0x8C, 0x9E, 0xEB, 0xAC}}, 12};
constexpr PropertyKey unknown{{0x01020304, 0xFFFE, 0x8001, {1, 2, 3, 4, 5, 6, 7, 0xFF}}, 0xFFFFFFFF};

TEST(SortOrder, IsKeptAsKeysAndBits)
{
    testing::MemorySettingsStore store;
    const SettingsRoot root{&store, registryLocation()};
    EXPECT_THAT(readSortOrder(root), IsEmpty());
    const StoredSortKey down{size, false}, up{unknown, true};
    ASSERT_EQ(writeSortOrder(root, {down, up}), SettingsCode::done);
    EXPECT_THAT(readSortOrder(root), ElementsAre(down, up));

    SettingsNode node(root, u"Sort", SettingsAccess::writing);
    std::uint32_t ascending = 0;
    std::vector<std::byte> block;
    ASSERT_EQ(node.readNumber(u"nAscending", ascending), SettingsCode::done);
    ASSERT_EQ(node.readBinary(block, u"binProps"), SettingsCode::done);
    EXPECT_EQ(ascending, 2u) << "bit 0 is the first key's";
    ASSERT_EQ(block.size(), 40u);
    EXPECT_EQ(block[0], std::byte{0x30}) << "little-endian";
    EXPECT_EQ(block[16], std::byte{12});

    ASSERT_EQ(node.writeBinary(block.data(), u"binProps", 39), SettingsCode::done);
    EXPECT_THAT(readSortOrder(root), ElementsAre(down)) << "cut short";
    ASSERT_EQ(node.deleteValue(u"nAscending"), SettingsCode::done);
    EXPECT_THAT(readSortOrder(root), ElementsAre(StoredSortKey{size, true}));

    ASSERT_EQ(writeSortOrder(root, std::vector<StoredSortKey>(40, up)), SettingsCode::done);
    EXPECT_EQ(readSortOrder(root), std::vector<StoredSortKey>(mostSortKeys, up)) << "a bit for each";
    ASSERT_EQ(writeSortOrder(root, {}), SettingsCode::done);
    EXPECT_THAT(node.valueNames(), IsEmpty());
}

}  // namespace
}  // namespace kelvane
