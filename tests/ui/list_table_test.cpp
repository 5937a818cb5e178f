// The list as a screen reader walks it.
#include <QAccessible>
#include <QHeaderView>

#include "support/ui/desktop_world.h"
#include "ui/list/results_table.h"

namespace kelvane::testing {
namespace {

constexpr int tick = ResultsTable::tickColumn, name = ResultsTable::nameColumn;

class ListTable : public ::testing::Test {
protected:
    ListTable()
    {
        world.loadList({{"b", "a", "c"}, {"e", "d"}});
        view().setFocus();
        EXPECT_TRUE(waitUntil([&] { return table().columnCount() == 6; }));
    }
    [[nodiscard]] ResultsView& view() const { return *world.find<ResultsView>("resultsView"); }
    [[nodiscard]] ResultsTable& table() const
    {
        return dynamic_cast<ResultsTable&>(*QAccessible::queryAccessibleInterface(&view()));
    }
    [[nodiscard]] static QString textOf(const QAccessibleInterface* cell) { return cell->text(QAccessible::Name); }
    [[nodiscard]] QString textAt(int row, int column) const { return textOf(table().cellAt(row, column)); }
    // Texts come from the window's thread.
    [[nodiscard]] bool says(int row, int column, const QString& text) const
    {
        return waitUntil([&] { return textAt(row, column) == text; });
    }
    void settle()
    {
        world.onWindowThread([](Workbench&) {});
    }

    DesktopWorld world;
};

TEST_F(ListTable, HasTitlesRowsTicksAndGroups)
{
    ASSERT_EQ(table().role(), QAccessible::Table);
    ASSERT_EQ(table().rowCount(), 5);
    EXPECT_TRUE(says(0, name, QStringLiteral("b")));
    EXPECT_TRUE(says(4, name, QStringLiteral("d")));
    const int group = table().columnCount() - 1;
    EXPECT_EQ(textAt(0, group), QStringLiteral("Group 1: 3 files"));
    EXPECT_EQ(textAt(4, group), QStringLiteral("Group 2: 2 files"));
    EXPECT_EQ(textAt(1, tick), QStringLiteral("not ticked"));
    EXPECT_EQ(table().columnDescription(name),
              world.find<QHeaderView>("listHeader")->model()->headerData(1, Qt::Horizontal).toString());
    EXPECT_EQ(table().columnDescription(group), QStringLiteral("Group"));
    QAccessibleInterface* const cell = table().cellAt(3, name);
    const auto headers = cell->tableCellInterface()->columnHeaderCells();
    ASSERT_EQ(headers.size(), 1);
    EXPECT_EQ(headers.front()->role(), QAccessible::ColumnHeader);
    EXPECT_EQ(textOf(headers.front()), table().columnDescription(name));
    EXPECT_EQ(table().cellAt(5, 0), nullptr);
    EXPECT_EQ(table().cellAt(0, 6), nullptr);
}

TEST_F(ListTable, EveryChildKnowsItsPlaceAndIsFoundThere)
{
    ASSERT_EQ(table().childCount(), 6 * 6) << "titles and five rows";
    for (int index = 0; index < table().childCount(); ++index) {
        QAccessibleInterface* const child = table().child(index);
        ASSERT_NE(child, nullptr);
        EXPECT_EQ(table().indexOfChild(child), index);
        EXPECT_EQ(child->parent(), &table());
        EXPECT_TRUE(child->isValid());
        if (child->role() == QAccessible::ColumnHeader)
            continue;
        const QPoint middle = child->rect().center();
        if (child->tableCellInterface()->columnIndex() <= name) {
            EXPECT_EQ(table().childAt(middle.x(), middle.y()), child) << index;
        }
    }
}

TEST_F(ListTable, TellsFocusSelectionAndTicksAndTakesActions)
{
    view().goTo(3, Qt::NoModifier);
    settle();
    QAccessibleInterface* const focused = table().focusChild();
    ASSERT_NE(focused, nullptr);
    EXPECT_TRUE(focused->state().focused);
    EXPECT_TRUE(focused->state().selected);
    EXPECT_FALSE(table().cellAt(2, name)->state().focused);
    EXPECT_EQ(table().selectedRows(), QList<int>{3});
    EXPECT_EQ(table().selectedCells().size(), 6);

    QAccessibleInterface* const box = table().cellAt(3, tick);
    EXPECT_TRUE(box->state().checkable);
    EXPECT_FALSE(box->state().checked);
    box->actionInterface()->doAction(QAccessibleActionInterface::toggleAction());
    settle();
    EXPECT_TRUE(box->state().checked);
    EXPECT_TRUE(waitUntil([&] {
        return table().rowDescription(3).startsWith(QStringLiteral("ticked, e, ")) &&
               table().rowDescription(3).endsWith(QStringLiteral(", Group 2: 2 files"));
    }));
    EXPECT_EQ(focused->text(QAccessible::Description), table().rowDescription(3));

    EXPECT_TRUE(table().selectRow(1));
    settle();
    EXPECT_EQ(view().currentRow(), 1u);
    EXPECT_TRUE(table().unselectRow(1));
    settle();
    EXPECT_EQ(table().selectedRowCount(), 0);
}

TEST_F(ListTable, ATableOfAnyLengthKeepsFewCellsAndOldOnesAreInvalidOnceTheirRowsAreGone)
{
    world.onWindowThread([](Workbench& bench) {
        const Ref<const ShellItem> file = bench.results().item(bench.results().itemAt(0)).file.itemRef();
        for (std::uint32_t group = 3; group < 10'000; ++group)
            for (int member = 0; member < 2; ++member)
                bench.results().add(file, group, false);
    });
    ASSERT_GT(table().rowCount(), 19'000);
    for (int row = 0; row < table().rowCount(); ++row)
        EXPECT_NE(table().cellAt(row, name), nullptr);
    EXPECT_LE(table().cellsHeld(), ResultsTable::mostCells);
    const int last = table().rowCount() - 1;
    QAccessibleInterface* const distant = table().cellAt(last, name);
    EXPECT_TRUE(distant->state().offscreen);
    EXPECT_TRUE(says(last, name, QStringLiteral("b"))) << "texts of rows out of sight come when they are asked for";
    world.onWindowThread([](Workbench& bench) { bench.results().clear(); });
    EXPECT_EQ(table().rowCount(), 0);
    EXPECT_FALSE(distant->isValid());
    EXPECT_EQ(textOf(distant), QString());
}

}  // namespace
}  // namespace kelvane::testing
