#include "results/result_sort.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <random>

#include "results/folded_bytes.h"
#include "results/marking_world.h"

namespace kelvane {
namespace {

using testing::MarkingWorld;

std::string keyOf(std::u16string_view text)
{
    std::string key;
    appendSortKey(key, text, testing::SimpleFolding());
    return key;
}

TEST(SortKeys, StandAsPeopleExpect)
{
    const std::u16string_view rising[] = {u"",      u"a/b",    u"a b",     u"a.b",      u"img1",
                                          u"IMG2",  u"img10x", u"img11",   u"img99999", u"img100000",
                                          u"imga1", u"z",      u"\u00C4a", u"\u00E4b"};
    for (std::size_t i = 1; i < std::size(rising); ++i)
        EXPECT_LT(keyOf(rising[i - 1]), keyOf(rising[i])) << i;
    EXPECT_LT(keyOf(u"a7"), keyOf(u"A7")) << "ties go by the exact text";
    EXPECT_LT(keyOf(u"A7"), keyOf(u"a007"));
    EXPECT_LT(keyOf(u"a007"), keyOf(u"a7b"));
    EXPECT_NE(keyOf(u"Aa"), keyOf(u"aA"));
    EXPECT_LT(keyOf(std::u16string(300, u'1')), keyOf(std::u16string(301, u'1'))) << "beyond the longest run";
}

struct SortedLists : ::testing::Test {
    void fill(unsigned seed)
    {
        std::mt19937 random(seed);
        for (std::uint32_t i = 0; i < 200; ++i) {
            const std::string path = "/" + std::string(1, static_cast<char>('a' + random() % 3)) + "/" +
                                     (random() % 2 == 0 ? "F" : "f") + std::to_string(random() % 30);
            const std::uint32_t group = 1 + i / (2 + seed % 3);
            world.add({path, group, random() % 5, static_cast<std::int64_t>(random() % 4)});
        }
    }

    PropRef property(std::string_view name) const { return world.scan.catalogue.byName(name); }

    // The value that a key sorts by, and whether it is missing.
    std::pair<bool, std::string> valueOf(ItemId id, const SortKey& key)
    {
        const PropValue value = world.scan.properties.value(world.model.file(id), key.property);
        if (value.missing())
            return {true, {}};
        const std::string number = std::to_string(1'000'000 + value.number());
        return {false, value.kind == PropKind::text ? keyOf(value.text) : number};
    }

    bool before(ItemId a, ItemId b, const std::vector<SortKey>& keys)
    {
        for (const SortKey& key : keys) {
            const auto left = valueOf(a, key), right = valueOf(b, key);
            if (left.first != right.first)
                return right.first;
            if (left.second != right.second)
                return (left.second < right.second) == key.ascending;
        }
        return false;
    }

    // One item after the other goes behind those that it does not stand before; then groups are drawn together.
    std::vector<ItemId> naive(const std::vector<SortKey>& keys, bool grouped)
    {
        std::vector<ItemId> sorted, together;
        for (const ItemId id : world.model.order()) {
            auto place = sorted.end();
            while (place != sorted.begin() && before(id, *(place - 1), keys))
                --place;
            sorted.insert(place, id);
        }
        if (!grouped)
            return sorted;
        std::vector<GroupId> seen;
        for (const ItemId first : sorted) {
            const GroupId group = world.model.item(first).group;
            if (std::find(seen.begin(), seen.end(), group) != seen.end())
                continue;
            seen.push_back(group);
            std::copy_if(sorted.begin(), sorted.end(), std::back_inserter(together),
                         [&](ItemId id) { return world.model.item(id).group == group; });
        }
        return together;
    }

    MarkingWorld world;
    CancelFlag cancel;
};

TEST_F(SortedLists, StandAsANaiveStableSortPutsThem)
{
    const char* names[] = {"System.Size", "System.DateModified", "System.ItemFolderPathDisplay", "System.ItemType",
                           "System.Title"};
    for (unsigned seed = 0; seed < 12; ++seed) {
        std::mt19937 random(seed);
        world.model.clear();
        fill(seed);
        std::vector<SortKey> keys;
        for (unsigned i = 0; i <= seed % 3; ++i)
            keys.push_back({property(names[random() % std::size(names)]), random() % 2 == 0});
        for (const bool grouped : {false, true, false}) {
            const auto expected = naive(keys, grouped);
            ASSERT_TRUE(sortResults(world.model, keys, GroupedOrder{grouped}, world.scan.properties, cancel));
            EXPECT_TRUE(std::equal(expected.begin(), expected.end(), world.model.order().begin())) << seed;
            EXPECT_EQ(world.model.isGrouped(), grouped);
        }
        ASSERT_TRUE(sortResults(world.model, {}, GroupedOrder::yes, world.scan.properties, cancel));
        EXPECT_TRUE(std::is_sorted(world.model.order().begin(), world.model.order().end()));
    }
}

TEST_F(SortedLists, PutGroupsWhereTheItemsOfTheListStand)
{
    const ItemId gone = world.add({"/a", 1, 1});
    for (const char* path : {"/d", "/e"})
        world.add({path, 1, 1});
    world.add({"/b", 2, 1});
    world.add({"/c", 2, 1});
    world.model.remove(std::span(&gone, 1));
    const std::vector<SortKey> keys{{property("System.ItemPathDisplay"), true}};
    ASSERT_TRUE(sortResults(world.model, keys, GroupedOrder::yes, world.scan.properties, cancel));
    EXPECT_EQ(world.model.item(world.model.itemAt(0)).groupNumber(), 2u) << "the removed one decides nothing";
    EXPECT_EQ(world.model.file(world.model.itemAt(0)).cachedValues(), 0u) << "paths are not kept twice";
}

TEST_F(SortedLists, StayAsTheyAreWhenCancelled)
{
    fill(1);
    const std::vector<ItemId> before(world.model.order().begin(), world.model.order().end());
    cancel.cancel();
    EXPECT_FALSE(
        sortResults(world.model, {{property("System.Size"), false}}, GroupedOrder::no, world.scan.properties, cancel));
    EXPECT_TRUE(std::equal(before.begin(), before.end(), world.model.order().begin()));
}

}  // namespace
}  // namespace kelvane
