// Columns of the list: how wide they are, which there are, in what order, and sorting by them from the keyboard.
#include <QDialogButtonBox>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QPushButton>
#include <QTest>

#include "support/ui/desktop_world.h"
#include "ui/core/shown_values.h"
#include "ui/list/list_header.h"
#include "ui/list/results_view.h"
#include "ui/list/row_painter.h"

namespace kelvane::testing {
namespace {

using ::testing::ElementsAre;

std::vector<std::string> namesFromTop(DesktopWorld& world)
{
    return world.ask<std::vector<std::string>>([](Workbench& bench) {
        std::vector<std::string> names;
        bench.results().forEachRow(
            [&](ItemId id) { names.push_back(bench.results().item(id).file.item().path().filename().string()); });
        return names;
    });
}

TEST(ListColumns, AreAtFirstWideEnoughForWhatTheyShow)
{
    DesktopWorld world;
    world.loadList({{"b", "a"}}, std::string(9'999, 'x'));
    auto* const header = world.find<QHeaderView>("listHeader");
    ASSERT_TRUE(waitUntil([&] { return header->count() == 5; }));
    const QFontMetrics letters = world.find<ResultsView>("resultsView")->fontMetrics();
    constexpr int size = 3, date = 4;
    for (const QString& text : {shownSize(9'999), shownSize(1'023ULL << 20)})
        EXPECT_GE(header->sectionSize(size), letters.horizontalAdvance(text) + 2 * cellMargin) << text.toStdString();
    EXPECT_GE(header->sectionSize(date),
              letters.horizontalAdvance(QStringLiteral("2026-11-22 13:50")) + 2 * cellMargin);
}

TEST(ListColumns, AreChosenBySearchAndComeBack)
{
    DesktopWorld world;
    world.loadList({{"b", "a"}});
    auto* const header = world.find<QHeaderView>("listHeader");
    ASSERT_TRUE(waitUntil([&] { return header->count() == 5; }));
    ASSERT_TRUE(world.trigger("list.columns"));
    auto* const list = world.await<QListWidget>("columnsList");
    ASSERT_NE(list, nullptr);
    world.find<QLineEdit>("columnsSearch")->setText(QStringLiteral("System.FileExtension"));
    QListWidgetItem* found = nullptr;
    for (int row = 0; row < list->count(); ++row)
        found = list->item(row)->isHidden() ? found : list->item(row);
    ASSERT_NE(found, nullptr);
    found->setCheckState(Qt::Checked);
    world.find<QWidget>("columnsDialog")->findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok)->click();
    EXPECT_TRUE(waitUntil([&] { return header->count() == 6; }));

    ASSERT_TRUE(waitUntil([&] { return world.find<QWidget>("columnsDialog") == nullptr; }));
    ASSERT_TRUE(world.trigger("list.columns"));
    ASSERT_NE(world.await("columnsDialog"), nullptr);
    world.find<QPushButton>("columnsReset")->click();
    EXPECT_TRUE(waitUntil([&] { return header->count() == 5; }));
}

TEST(ListColumns, AreMovedWithoutAMouse)
{
    DesktopWorld world;
    world.loadList({{"b", "a"}});
    auto* const header = world.find<ListHeader>("listHeader");
    ASSERT_TRUE(waitUntil([&] { return header->count() == 5; }));
    ASSERT_TRUE(world.trigger("list.columns"));
    auto* const list = world.await<QListWidget>("columnsList");
    ASSERT_NE(list, nullptr);
    auto* const up = world.find<QPushButton>("columnsUp");
    EXPECT_EQ(up->shortcut(), QKeySequence(Qt::ALT | Qt::Key_Up));
    list->setCurrentRow(2);
    const QString size = list->currentItem()->text();
    for (int times = 0; times < 3; ++times)  // the last one has no effect
        up->click();
    EXPECT_EQ(list->currentRow(), 0);
    EXPECT_EQ(list->currentItem()->text(), size);
    EXPECT_EQ(list->currentItem()->checkState(), Qt::Checked);
    world.find<QPushButton>("columnsDown")->click();
    EXPECT_EQ(list->currentRow(), 1);
    world.find<QWidget>("columnsDialog")->findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok)->click();
    EXPECT_TRUE(waitUntil([&] { return header->namesInOrder().at(1) == "System.Size"; }));
}

TEST(ListSortMenu, SortsByAColumnAndTurnsTheOrderRound)
{
    DesktopWorld world;
    world.loadList({{"b", "a", "c"}});
    auto* const header = world.find<ListHeader>("listHeader");
    ASSERT_TRUE(waitUntil([&] { return header->count() == 5; }));
    auto* const command = world.find<QAction>("view.sort");
    EXPECT_FALSE(command->shortcut().isEmpty());
    QMenu* const menu = command->menu();
    const auto open = [&] { return world.trigger("view.sort") && waitUntil([&] { return menu->isVisible(); }); };
    ASSERT_TRUE(open());
    ASSERT_EQ(menu->actions().size(), 4 + 1 + 2) << "columns and directions";
    EXPECT_EQ(menu->actions().at(0)->text(), header->columns().at(0).title);
    EXPECT_FALSE(menu->actions().at(6)->isEnabled()) << "there is no order to turn round";
    QTest::keyClick(menu, Qt::Key_Return);
    EXPECT_THAT(namesFromTop(world), ElementsAre("a", "b", "c"));

    ASSERT_TRUE(open());
    EXPECT_EQ(menu->activeAction(), menu->actions().at(0));
    EXPECT_TRUE(menu->actions().at(0)->isChecked());
    EXPECT_TRUE(menu->actions().at(5)->isChecked());
    menu->actions().at(6)->trigger();
    menu->close();
    EXPECT_THAT(namesFromTop(world), ElementsAre("c", "b", "a"));
    EXPECT_EQ(header->sortIndicatorOrder(), Qt::DescendingOrder);
}

}  // namespace
}  // namespace kelvane::testing
