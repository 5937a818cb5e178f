// Keys and clicks that come faster than the window's thread: they mean the files that the person saw.
#include <QHeaderView>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <future>

#include "support/ui/desktop_world.h"
#include "ui/list/results_view.h"

namespace kelvane::testing {
namespace {

using ::testing::ElementsAre;

// A window whose thread can be kept from its work.
class ListHaste : public ::testing::Test {
protected:
    ListHaste()
    {
        world.loadList({{"b", "a", "c"}, {"e", "d"}});
        view().setFocus();
    }
    ~ListHaste() override { letGo(); }
    [[nodiscard]] ResultsView& view() const { return *world.find<ResultsView>("resultsView"); }
    [[nodiscard]] const RowMirror& rows() const { return world.link().rows(); }
    [[nodiscard]] std::vector<Row> ticked() const
    {
        std::vector<Row> found;
        for (Row row = 0; row < rows().count(); ++row)
            if (rows().at(row).isTicked())
                found.push_back(row);
        return found;
    }
    // From here on the thread does what is given to it, once it is let go; then what was posted meanwhile.
    void hold(std::function<void(Workbench&)> work = [](Workbench&) {})
    {
        gate_.emplace();
        world.link().run(
            [gate = std::shared_future<void>(gate_->get_future()), work = std::move(work)](Workbench& bench) {
                gate.wait();
                work(bench);
            });
    }
    void letGo()
    {
        if (gate_)
            gate_->set_value();
        gate_.reset();
        world.onWindowThread([](Workbench&) {});
        world.onWindowThread([](Workbench&) {});
    }
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        QTest::keyClick(&view(), key, modifiers);
    }
    [[nodiscard]] std::function<void(Workbench&)> anotherList()
    {
        const auto one = world.tree.write("files/x", "other"), two = world.tree.write("files/y", "other");
        return [one, two](Workbench& bench) {
            const ListSession& before = *bench.session();
            bench.beginList(Settings(before.settings), EngineOptions(before.options));
            for (const auto& path : {one, two})
                bench.results().add(bench.platform().shell().parse(path.native()).value(), 1, false);
        };
    }

    DesktopWorld world;

private:
    std::optional<std::promise<void>> gate_;
};

// What the window's thread tells faster than the main thread hears is one change of the list, not a row of them.
TEST_F(ListHaste, RowsThatComeFasterThanTheyAreShownComeTogether)
{
    const std::string file = world.tree.write("files/x", "other").native();
    int patches = 0;
    QObject::connect(&world.link(), &WindowLink::rowsPatched, &world.link(), [&] { ++patches; });
    std::promise<void> told;
    world.link().run([&, begin = anotherList()](Workbench& bench) {
        begin(bench);
        for (std::uint32_t group = 2; group <= 100; ++group) {
            for (int copy = 0; copy < 2; ++copy)
                bench.results().add(bench.platform().shell().parse(file).value(), group, false);
            bench.serve();
        }
        told.set_value();
    });
    told.get_future().wait();  // the main thread is busy
    world.onWindowThread([](Workbench&) {});
    EXPECT_LE(patches, 3);  // the list before goes, the first rows come, and all the others
    EXPECT_EQ(rows().count(), 200u);
}

TEST_F(ListHaste, SpaceAfterAnArrowTicksTheRowThatTheArrowWentTo)
{
    view().goTo(0, Qt::NoModifier);
    view().goTo(2, Qt::ShiftModifier);
    letGo();
    hold();
    press(Qt::Key_Up);  // of three selected rows one is left, but nobody told that yet
    press(Qt::Key_Space);
    letGo();
    EXPECT_THAT(ticked(), ElementsAre(1));
}

TEST_F(ListHaste, TwoClicksOnABoxAreTwo)
{
    hold();
    for (int click = 0; click < 2; ++click)
        QTest::mouseClick(view().viewport(), Qt::LeftButton, {}, view().tickRectOf(3).center());
    letGo();
    EXPECT_THAT(ticked(), ElementsAre());
}

TEST_F(ListHaste, MarksForOneListNeverReachTheNextOne)
{
    hold(anotherList());
    press(Qt::Key_Space);
    QTest::mouseClick(view().viewport(), Qt::LeftButton, {}, view().tickRectOf(1).center());
    view().selectAll();
    letGo();
    ASSERT_EQ(rows().count(), 2u);
    EXPECT_THAT(ticked(), ElementsAre());
    EXPECT_EQ(rows().figures().selected.items, 0u);
    press(Qt::Key_Space);
    letGo();
    EXPECT_THAT(ticked(), ElementsAre(0)) << "of the list that is there now";
}

TEST_F(ListHaste, ADeclarationThatWasAskedForOneListIsNotMadeForTheNext)
{
    view().selectAll();
    letGo();
    ASSERT_TRUE(world.trigger("item.notDuplicates"));
    auto* const question = world.await<QMessageBox>("declareQuestion");
    ASSERT_NE(question, nullptr);
    world.onWindowThread(anotherList());
    question->button(QMessageBox::Ok)->click();
    letGo();
    EXPECT_TRUE(world.desktop().settings().ignoredGroups.empty());
}

TEST_F(ListHaste, ARangeBeginsAtTheFileThatWasClickedWhereverItWent)
{
    view().goTo(0, Qt::NoModifier);  // "b"
    letGo();
    ASSERT_TRUE(waitUntil([&] { return world.find<QHeaderView>("listHeader")->count() > 1; }));
    Q_EMIT world.find<QHeaderView>("listHeader")->sectionClicked(1);
    letGo();
    ASSERT_EQ(view().currentRow(), 1u) << "a, b, c";
    press(Qt::Key_Down, Qt::ShiftModifier);
    letGo();
    EXPECT_TRUE(rows().at(1).isSelected());
    EXPECT_TRUE(rows().at(2).isSelected());
    EXPECT_FALSE(rows().at(0).isSelected());
}

// Each work that is done within the one before it takes room on the stack.
TEST_F(ListHaste, HoweverMuchWaitsForABusyThreadIsDoneAtLast)
{
    hold();
    constexpr int many = 20'000;
    int done = 0;
    for (int work = 0; work < many; ++work)
        world.link().run([&](Workbench&) { ++done; });
    letGo();
    EXPECT_EQ(done, many);
}

}  // namespace
}  // namespace kelvane::testing
