#include "ui/core/list_feed.h"

#include <random>

#include "platform/native_text.h"
#include "ui/core/row_mirror.h"

namespace kelvane {
namespace {

// A list, and a copy of it that knows of changes by patches alone.
class ListFeedTest : public ::testing::Test {
protected:
    void addGroup(std::uint32_t members)
    {
        ++groups_;
        for (std::uint32_t member = 0; member < members; ++member) {
            const std::string name = std::to_string(groups_) + "-" + std::to_string(member);
            model_.add(ShellItem::make(nullptr, nativeFromBytes(name), {}, ShellItem::Place::fileSystem), groups_,
                       groups_ % 3 == 0);
        }
    }

    std::vector<ItemId> someItems()
    {
        std::vector<ItemId> chosen;
        model_.forEachItem([&](ItemId item) {
            if (draw(6) == 0)
                chosen.push_back(item);
        });
        return chosen;
    }

    std::uint32_t draw(std::uint32_t below) { return static_cast<std::uint32_t>(random_() % below); }

    void act()
    {
        switch (draw(12)) {
        case 0:
            return addGroup(2 + draw(3));
        case 1:
            return model_.mark(someItems(), Mark::ticked, draw(2) == 0);
        case 2:
            return model_.toggle(someItems(), Mark::selected);
        case 3:
            return model_.invertTicks();
        case 4:
            return model_.setTag(someItems(), static_cast<std::uint8_t>(draw(3)));
        case 5:
            return void(model_.hide(someItems(), hiding_flag::filter));
        case 6:
            return model_.showAll();
        case 7:
            return void(model_.remove(someItems()));
        case 8:
            return model_.undo();
        case 9:
            return model_.redo();
        case 10:
            return void(model_.regroupSelection());
        default:
            return shuffle();
        }
    }

    void shuffle()
    {
        std::vector<ItemId> order(model_.order().begin(), model_.order().end());
        std::shuffle(order.begin(), order.end(), random_);
        model_.setOrder(std::move(order), false);
    }

    void expectSame() const
    {
        ASSERT_EQ(mirror_.count(), model_.rowCount());
        for (Row row = 0; row < mirror_.count(); ++row) {
            const ItemId id = model_.itemAt(row);
            const ResultItem& item = model_.item(id);
            const RowEntry wanted{id, item.groupNumber(), item.state, item.tag, model_.groupOf(id).approximate};
            ASSERT_EQ(mirror_.at(row), wanted) << "row " << row;
        }
        EXPECT_EQ(mirror_.figures().items, model_.itemCount());
        EXPECT_EQ(mirror_.figures().groups, model_.groupCount());
        EXPECT_EQ(mirror_.figures().ticked, model_.inView(Mark::ticked));
        EXPECT_EQ(mirror_.figures().selected, model_.inView(Mark::selected));
        EXPECT_EQ(mirror_.figures().hidingFlags, model_.hidingFlags());
        EXPECT_EQ(mirror_.figures().canUndo, model_.canUndo());
    }

    ResultsModel model_;
    RowMirror mirror_;
    std::uint32_t groups_ = 0;
    std::mt19937 random_{20240607};
};

TEST_F(ListFeedTest, KeepsTheCopyInStepWithTheListOverRandomWork)
{
    for (int group = 0; group < 20; ++group)
        addGroup(2);
    ListFeed feed(model_);  // comes to a list that is there already
    for (int step = 0; step < 2'000; ++step) {
        const std::uint32_t together = 1 + draw(3);  // several changes make one patch
        for (std::uint32_t change = 0; change < together; ++change)
            act();
        if (auto patch = feed.take())
            mirror_.apply(*std::move(patch));
        expectSame();
        if (HasFatalFailure())
            FAIL() << "after step " << step;
        if (model_.rowCount() > 300)
            model_.clear();
    }
}

TEST_F(ListFeedTest, SendsTheRowsThatChangedAndNoOthers)
{
    for (int group = 0; group < 100; ++group)
        addGroup(2);
    ListFeed feed(model_);
    mirror_.apply(feed.take().value());
    const std::vector<ItemId> two{model_.itemAt(50), model_.itemAt(53)};
    model_.mark(two, Mark::ticked, true);
    const auto patch = feed.take().value();
    EXPECT_EQ(patch.first, 50u);
    EXPECT_EQ(patch.before, 4u);
    EXPECT_EQ(patch.entries.size(), 4u);
    EXPECT_FALSE(feed.take());
}

}  // namespace
}  // namespace kelvane
