#include <QHeaderView>
#include <QLineEdit>
#include <QTest>

#include "app/cleanup_bookkeeping.h"
#include "support/ui/desktop_world.h"
#include "ui/list/results_view.h"

namespace kelvane::testing {
namespace {

using ::testing::ElementsAre;

// A window with two groups, at its list.
class ListMarks : public ::testing::Test {
protected:
    ListMarks()
    {
        world.loadList({{"b", "a", "c"}, {"e", "d"}});
        view().setFocus();
    }
    [[nodiscard]] ResultsView& view() const { return *world.find<ResultsView>("resultsView"); }
    [[nodiscard]] const RowMirror& rows() const { return world.link().rows(); }
    [[nodiscard]] std::vector<Row> rowsWith(bool (RowEntry::*has)() const) const
    {
        std::vector<Row> found;
        for (Row row = 0; row < rows().count(); ++row)
            if ((rows().at(row).*has)())
                found.push_back(row);
        return found;
    }
    [[nodiscard]] std::vector<Row> ticked() const { return rowsWith(&RowEntry::isTicked); }
    [[nodiscard]] std::vector<Row> selected() const { return rowsWith(&RowEntry::isSelected); }
    [[nodiscard]] std::vector<std::string> names()
    {
        return world.ask<std::vector<std::string>>([](Workbench& bench) {
            std::vector<std::string> found;
            bench.results().forEachRow(
                [&](ItemId id) { found.push_back(bench.results().item(id).file.item().path().filename().string()); });
            return found;
        });
    }
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        QTest::keyClick(&view(), key, modifiers);
        settle();
    }
    void click(const QPoint& point, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        QTest::mouseClick(view().viewport(), Qt::LeftButton, modifiers, point);
        settle();
    }
    void settle()
    {
        world.onWindowThread([](Workbench&) {});
    }

    DesktopWorld world;
};

TEST_F(ListMarks, SpaceTicksTheCurrentRowAndAllThatIsSelectedWithIt)
{
    press(Qt::Key_Down);
    press(Qt::Key_Space);
    EXPECT_THAT(ticked(), ElementsAre(1));
    press(Qt::Key_Down, Qt::ShiftModifier);
    press(Qt::Key_Space);
    EXPECT_THAT(ticked(), ElementsAre(1, 2)) << "as the current row, which was not ticked";
    press(Qt::Key_Space);
    EXPECT_THAT(ticked(), ElementsAre());
    EXPECT_TRUE(world.trigger("edit.undo"));
    settle();
    EXPECT_THAT(ticked(), ElementsAre(1, 2));
}

TEST_F(ListMarks, AClickOnABoxTicksWithoutSelecting)
{
    click(view().tickRectOf(3).center());
    EXPECT_THAT(ticked(), ElementsAre(3));
    EXPECT_THAT(selected(), ElementsAre());
    EXPECT_EQ(view().currentRow(), 3u);
}

TEST_F(ListMarks, SelectionGrowsByShiftAndControl)
{
    const auto middle = [&](Row row) { return view().rectOf(row).center(); };
    click(middle(0));
    click(middle(3), Qt::ShiftModifier);
    EXPECT_THAT(selected(), ElementsAre(0, 1, 2, 3));
    click(middle(1), Qt::ControlModifier);
    EXPECT_THAT(selected(), ElementsAre(0, 2, 3));
    click(middle(2));
    EXPECT_THAT(selected(), ElementsAre(2));
    EXPECT_TRUE(world.trigger("edit.selectAll"));
    settle();
    EXPECT_THAT(selected(), ElementsAre(0, 1, 2, 3, 4));
}

TEST_F(ListMarks, ControlAndArrowsGoByGroup)
{
    press(Qt::Key_Down, Qt::ControlModifier);
    EXPECT_EQ(view().currentRow(), 3u);
    press(Qt::Key_End);
    EXPECT_EQ(view().currentRow(), 4u);
    press(Qt::Key_Up, Qt::ControlModifier);
    press(Qt::Key_Up, Qt::ControlModifier);
    EXPECT_EQ(view().currentRow(), 0u);
    EXPECT_EQ(world.link().currentItem(), rows().at(0).item);
}

TEST_F(ListMarks, DeleteTakesRowsOffAndTheNeighbourIsNext)
{
    press(Qt::Key_Down);
    EXPECT_TRUE(world.trigger("edit.remove"));
    settle();
    EXPECT_THAT(names(), ElementsAre("b", "c", "e", "d"));
    EXPECT_EQ(view().currentRow(), 1u);
    EXPECT_EQ(world.link().currentItem(), rows().at(1).item);
}

TEST_F(ListMarks, AFileThatIsLeftAloneLeavesTheListToo)
{
    const auto takeOffD = [&] {
        click(view().rectOf(4).center());
        press(Qt::Key_Delete);
    };
    takeOffD();
    EXPECT_THAT(names(), ElementsAre("b", "a", "c"));
    EXPECT_TRUE(world.trigger("edit.undo"));
    settle();
    EXPECT_THAT(names(), ElementsAre("b", "a", "c", "e", "d"));

    world.desktop().change([](Settings& settings) { settings.moreOptions |= more_setting::keepLone; });
    Q_EMIT world.link().optionsChanged();
    takeOffD();
    EXPECT_THAT(names(), ElementsAre("b", "a", "c", "e")) << "who wants to see them";
}

TEST_F(ListMarks, TheColumnOfGroupsFollowsWhenGroupsAreMerged)
{
    world.onWindowThread([](Workbench& bench) {
        bench.session()->inView = {bench.session()->access.catalogue.byName("Stock.GroupID")};
        bench.session()->chosen = true;
    });
    view().cells().clear();
    view().cells().want(0, 5);
    const auto column = [&] {
        QStringList texts;
        for (Row row = 0; row < rows().count(); ++row)
            if (const QStringList* const found = view().cells().find(rows().at(row).item))
                texts += *found;
        return texts.join(u' ').toStdString();
    };
    EXPECT_TRUE(waitUntil([&] { return column() == "1 1 1 2 2"; })) << column();
    EXPECT_TRUE(world.trigger("edit.selectAll"));
    settle();
    EXPECT_TRUE(world.trigger("edit.regroup"));
    EXPECT_TRUE(waitUntil([&] { return column() == "1 1 1 1 1"; })) << column();
}

TEST_F(ListMarks, ATitleSortsWithinGroupsOrAcrossThem)
{
    auto* const header = world.find<QHeaderView>("listHeader");
    ASSERT_TRUE(waitUntil([&] { return header->count() > 4; }));
    const QPoint title(header->sectionViewportPosition(1) + 20, header->height() / 2);
    const auto clickTitle = [&] {
        QTest::mouseClick(header->viewport(), Qt::LeftButton, {}, title);
        settle();
    };
    clickTitle();
    EXPECT_THAT(names(), ElementsAre("a", "b", "c", "d", "e"));
    clickTitle();
    EXPECT_THAT(names(), ElementsAre("e", "d", "c", "b", "a"));
    EXPECT_TRUE(rows().figures().grouped);
    EXPECT_TRUE(world.trigger("view.keepGrouped"));
    settle();
    EXPECT_FALSE(rows().figures().grouped);
    EXPECT_EQ(view().layoutOfRows().sectionCount(), 1u) << "no headings where groups are torn apart";
    EXPECT_TRUE(world.trigger("view.unsorted"));
    settle();
    EXPECT_TRUE(rows().figures().grouped);
}

TEST_F(ListMarks, TheFilterWaitsForEnoughCharactersAndEscapeTakesItBack)
{
    world.loadList({{"holiday.txt", "holiday2.txt"}, {"work.txt", "work2.txt"}});
    auto* const filter = world.find<QLineEdit>("filterEdit");
    filter->setFocus();
    QTest::keyClicks(filter, QStringLiteral("ho"));
    QTest::qWait(200);  // longer than the pause after which a text counts
    settle();
    EXPECT_EQ(rows().count(), 4u) << "two characters are too few";
    QTest::keyClicks(filter, QStringLiteral("L"));
    EXPECT_TRUE(waitUntil([&] { return rows().count() == 2; }));
    QTest::keyClick(filter, Qt::Key_Escape);
    EXPECT_TRUE(waitUntil([&] { return rows().count() == 4; }));
    EXPECT_TRUE(view().hasFocus());
}

TEST_F(ListMarks, AListWithoutItsFilterIsAtTheFileWhereThePersonWas)
{
    std::vector<std::vector<std::string>> groups;
    for (int number = 100; number < 200; ++number)
        groups.push_back({"one" + std::to_string(number), "other" + std::to_string(number)});
    world.loadList(groups);
    auto* const filter = world.find<QLineEdit>("filterEdit");
    const auto filterBy = [&](const char* words, Row rowsLeft) {
        filter->setText(QString::fromLatin1(words));
        ASSERT_TRUE(waitUntil([&] { return rows().count() == rowsLeft; })) << words;
    };
    const auto isSeen = [&](Row row) {
        const QRect rect = view().rectOf(row);
        return view().currentRow() == row && rect.top() >= 0 && rect.bottom() <= view().viewport()->height();
    };
    view().goTo(150, Qt::NoModifier);
    ASSERT_NO_FATAL_FAILURE(filterBy("one11", 10));
    ASSERT_NO_FATAL_FAILURE(filterBy("", 200));
    EXPECT_TRUE(isSeen(150)) << "the file that was left, since the person went nowhere else";

    ASSERT_NO_FATAL_FAILURE(filterBy("other19", 10));
    view().goTo(7, Qt::NoModifier);
    ASSERT_NO_FATAL_FAILURE(filterBy("", 200));
    EXPECT_TRUE(isSeen(195)) << "the file that was found by the filter";

    ASSERT_NO_FATAL_FAILURE(filterBy("one12", 10));
    QTest::keyClick(filter, Qt::Key_Down);
    const ItemId found = rows().at(*view().currentRow()).item;
    QTest::keyClick(filter, Qt::Key_Escape);
    ASSERT_TRUE(waitUntil([&] { return rows().count() == 200; }));
    EXPECT_EQ(rows().at(*view().currentRow()).item, found) << "whoever went to the list is at what was found";
    EXPECT_TRUE(isSeen(*view().currentRow()));
}

TEST_F(ListMarks, CommandsAnswerInTheStatusLine)
{
    QStringList told;
    QObject::connect(&world.link(), &WindowLink::statusTold, &view(), [&](const QString& text) { told << text; });
    EXPECT_TRUE(world.trigger("mark.store"));
    EXPECT_TRUE(world.trigger("mark.tickStored"));
    EXPECT_TRUE(world.trigger("mark.invert"));
    EXPECT_TRUE(world.trigger("mark.store"));
    settle();
    EXPECT_EQ(told, (QStringList{QStringLiteral("You haven't ticked any duplicates"),
                                 QStringLiteral("No marked items are stored; use Store Marked command"),
                                 QStringLiteral("Currently checked & visible items stored")}));
    EXPECT_EQ(ticked().size(), 5u);
    EXPECT_TRUE(world.trigger("mark.keepFirst"));
    settle();
    EXPECT_THAT(ticked(), ElementsAre(1, 2, 4));
}

}  // namespace
}  // namespace kelvane::testing
