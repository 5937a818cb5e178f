#include <QClipboard>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QHeaderView>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>

#include "support/ui/desktop_world.h"
#include "ui/list/list_files.h"
#include "ui/list/results_view.h"

namespace kelvane::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;

std::vector<std::pair<std::uint32_t, std::string>> rowsOf(DesktopWorld& world)
{
    return world.ask<std::vector<std::pair<std::uint32_t, std::string>>>([](Workbench& bench) {
        std::vector<std::pair<std::uint32_t, std::string>> rows;
        bench.results().forEachRow([&](ItemId id) {
            rows.emplace_back(bench.results().item(id).groupNumber(),
                              bench.results().item(id).file.item().path().filename().string());
        });
        return rows;
    });
}

TEST(ListFiles, SavedResultsAreOpenedAgainInTheSameOrder)
{
    DesktopWorld world;
    world.loadList({{"b", "a"}, {"c", "d", "e"}});
    const auto before = rowsOf(world);
    const std::filesystem::path file = world.tree.path("kept.ikvs");
    ASSERT_TRUE(world.trigger("list.save"));
    auto* const dialog = world.await<QFileDialog>("saveResultsDialog");
    ASSERT_NE(dialog, nullptr);
    Q_EMIT dialog->fileSelected(QString::fromStdString(file.string()));
    dialog->reject();
    world.onWindowThread([](Workbench& bench) { bench.results().clear(); });
    EXPECT_EQ(world.link().rows().count(), 0u);

    world.onWindowThread([&](Workbench& bench) { openResults(bench, file); });
    EXPECT_EQ(rowsOf(world), before);
    EXPECT_EQ(world.link().rows().count(), 5u);
    EXPECT_EQ(world.desktop().settings().recentDocuments.paths.front(), file.u16string());
}

TEST(ListFiles, AFileThatCannotBeOpenedIsNamedAndTheListStays)
{
    DesktopWorld world;
    world.loadList({{"b", "a"}});
    const std::filesystem::path file = world.tree.write("broken.ikvs", "no results at all");
    world.onWindowThread([&](Workbench& bench) { openResults(bench, file); });
    auto* const box = world.await<QMessageBox>("listProblem");
    ASSERT_NE(box, nullptr);
    EXPECT_THAT(box->text().toStdString(), HasSubstr(file.string()));
    EXPECT_EQ(world.link().rows().count(), 2u);
    EXPECT_TRUE(world.desktop().settings().recentDocuments.paths.empty());
    box->accept();
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

TEST(ListItems, TagsAreSetAndFilteredBy)
{
    DesktopWorld world({.change = [](Settings& settings) {
        settings.tagColors = {{u"red", 0xFF}, {u"blue", 0xFF0000}};
    }});
    world.loadList({{"b", "a"}, {"c", "d"}});
    world.find<ResultsView>("resultsView")->goTo(2, Qt::NoModifier);
    const auto choose = [&](const char* menu, int index) {
        QMenu* const tags = world.find<QMenu>(menu);
        Q_EMIT tags->aboutToShow();
        tags->actions().at(index)->trigger();
        world.onWindowThread([](Workbench&) {});
    };
    choose("item.tag", 2);
    EXPECT_EQ(world.link().rows().at(2).tag, 2);
    choose("view.tag", 2);
    EXPECT_EQ(world.link().rows().count(), 1u);
    EXPECT_TRUE(world.trigger("view.showAll"));
    world.onWindowThread([](Workbench&) {});
    EXPECT_EQ(world.link().rows().count(), 4u);
}

TEST(ListItems, DeclaredFilesAreRememberedAfterAQuestion)
{
    DesktopWorld world;
    world.loadList({{"b", "a"}, {"c", "d"}});
    auto* const view = world.find<ResultsView>("resultsView");
    view->goTo(0, Qt::NoModifier);
    view->goTo(1, Qt::ShiftModifier);
    world.onWindowThread([](Workbench&) {});
    ASSERT_TRUE(world.trigger("item.notDuplicates"));
    auto* const question = world.await<QMessageBox>("declareQuestion");
    ASSERT_NE(question, nullptr);
    question->button(QMessageBox::Ok)->click();
    ASSERT_TRUE(waitUntil([&] { return !world.desktop().settings().ignoredGroups.empty(); }));
    EXPECT_EQ(world.desktop().settings().ignoredGroups.front().files.size(), 2u);
}

TEST(ListItems, PathsOfAllSelectedFilesAreCopied)
{
    DesktopWorld world;
    world.loadList({{"b", "a"}});
    world.find<ResultsView>("resultsView")->selectAll();
    world.onWindowThread([](Workbench&) {});
    ASSERT_TRUE(world.trigger("item.copyPaths"));
    world.onWindowThread([](Workbench&) {});
    EXPECT_EQ(QApplication::clipboard()->text().toStdString(),
              world.tree.path("files/b").string() + "\n" + world.tree.path("files/a").string());
}

}  // namespace
}  // namespace kelvane::testing
