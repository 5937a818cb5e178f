#include "results/quick_filter.h"

#include <gtest/gtest.h>
#include <random>

#include "results/marking_world.h"

namespace kelvane {
namespace {

using testing::MarkingWorld;

struct Filtering : ::testing::Test {
    std::string shown() const
    {
        std::string names;
        world.model.forEachRow([&](ItemId id) {
            names += (names.empty() ? "" : " ") + bytesFromNative(world.model.item(id).file.item().name()).substr(1);
        });
        return names;
    }
    PropRef property(std::string_view name) const { return world.scan.catalogue.byName(name); }

    MarkingWorld world{{{"/Alpha", 1}, {"/alphabet", 1}, {"/beta", 2}, {"/\xC3\x84rger", 2}, {"/x\xFFy", 3}}};
    QuickFilter filter{world.model, world.scan.properties};
};

TEST_F(Filtering, NarrowsWhatIsInViewWhileMoreIsTyped)
{
    filter.searchIn({property("System.ItemPathDisplay")});
    EXPECT_EQ(filter.apply(u"A"), FilterOutcome::done);
    EXPECT_EQ(shown(), "Alpha alphabet beta");
    const ItemId hiddenSince = world.model.itemAt(0);
    world.model.mark(std::span(&hiddenSince, 1), Mark::ticked, true);
    world.model.hide(std::span(&hiddenSince, 1), hiding_flag::preCheck);
    EXPECT_EQ(filter.apply(u"AL"), FilterOutcome::done);
    EXPECT_EQ(shown(), "alphabet") << "what is out of view is not looked at";
    filter.apply(u"\u00E4R");
    EXPECT_EQ(shown(), "\xC3\x84rger") << "another text shows everything first, and case is aside";
    EXPECT_EQ(filter.apply(u"nothing"), FilterOutcome::nothingLeft);
    EXPECT_EQ(filter.apply(u"nothing at all"), FilterOutcome::nothingLeft);
    filter.apply(u"");
    EXPECT_EQ(world.model.rowCount(), 5u);
    EXPECT_EQ(world.model.hidingFlags(), 0u);
    EXPECT_TRUE(world.model.item(hiddenSince).isTicked());
    world.model.clear();
    for (std::uint32_t i = 0; i < 5; ++i)
        world.add({"/other", i + 1});
    filter.apply(u"al");
    EXPECT_EQ(shown(), "") << "another list has other texts";
}

TEST_F(Filtering, LooksThroughAllColumnsWhenAskedTo)
{
    world.model.add(ShellItem::make(nullptr, testing::native("/gamma"), {FileKind::regular, 0, {20'480}, {}, {}},
                                    ShellItem::Place::fileSystem),
                    4, false);
    filter.searchIn({property("System.ItemPathDisplay")});
    EXPECT_EQ(filter.apply(u"20.0 kb"), FilterOutcome::nothingLeft);
    filter.searchIn({property("System.ItemPathDisplay"), property("System.Size")});
    EXPECT_EQ(filter.apply(u"20.0 kb"), FilterOutcome::done);
    EXPECT_EQ(shown(), "gamma") << "other columns are another filter";
    filter.apply(u"a 20");
    EXPECT_EQ(shown(), "gamma") << "a blank stands before each column";
}

TEST_F(Filtering, FindsWhatANaiveSearchFinds)
{
    std::mt19937 random(5);
    world.model.clear();
    for (std::uint32_t i = 0; i < 300; ++i) {
        std::string name = "/";
        for (auto length = random() % 6; length > 0; --length)
            name += "abAB"[random() % 4];
        world.add({name, 1 + i / 3});
    }
    filter.searchIn({property("System.ItemPathDisplay")});
    std::u16string typed;
    for (int step = 0; step < 200; ++step) {
        if (random() % 3 == 0)
            typed = typed.substr(0, typed.empty() ? 0 : random() % typed.size());
        else
            typed += u"abAB"[random() % 4];
        filter.apply(typed);
        world.model.forEachItem([&](ItemId id) {
            std::u16string name = displayFromNative(world.model.item(id).file.item().fullName());
            const bool found = world.scan.folding.lower(name).find(world.scan.folding.lower(typed)) != name.npos;
            ASSERT_EQ(world.model.item(id).isVisible(), found) << step;
        });
    }
}

TEST_F(Filtering, CanGoByTags)
{
    const ItemId tagged[] = {world.model.itemAt(1), world.model.itemAt(2)};
    world.model.setTag(std::span(tagged, 1), 2);
    world.model.setTag(std::span(tagged + 1, 1), 3);
    EXPECT_EQ(showOnlyTags(world.model, {2, 3}), 3u);
    EXPECT_EQ(shown(), "alphabet beta");
    filter.showAll();
    EXPECT_EQ(world.model.rowCount(), 5u);
    EXPECT_TRUE(filterApplies(u"", 3) && filterApplies(u"abc", 3) && !filterApplies(u"ab", 3));
}

}  // namespace
}  // namespace kelvane
