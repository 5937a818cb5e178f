#include <QClipboard>
#include <QFileDialog>
#include <QMenu>
#include <QMessageBox>
#include <QProgressBar>
#include <QPushButton>
#include <QTest>
#include <thread>

#include "support/fake_questions.h"
#include "support/ui/desktop_world.h"
#include "ui/list/list_files.h"
#include "ui/list/list_progress.h"
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

TEST(ListFiles, FiguresOfTheScanAreKeptWithTheRows)
{
    DesktopWorld world;
    world.loadList({{"b", "a"}});
    const std::filesystem::path file = world.tree.path("kept.ikvs");
    world.onWindowThread([&](Workbench& bench) {
        bench.session()->figures.emplace().filesSeen = 4711;
        saveListedResults(bench, file);
    });
    world.loadList({{"c", "d"}});
    world.onWindowThread([&](Workbench& bench) { openResults(bench, file); });
    EXPECT_EQ(world.ask<std::uint64_t>([](Workbench& bench) { return bench.session()->figures.value().filesSeen; }),
              4711u);
}

TEST(ListFiles, WhatCannotBeWrittenIsNamedAndWhy)
{
    DesktopWorld world;
    world.loadList({{"b", "a"}});
    const std::filesystem::path file = world.tree.path("no folder/kept.ikvs");
    world.onWindowThread([&](Workbench& bench) { saveListedResults(bench, file); });
    auto* box = world.await<QMessageBox>("listProblem");
    ASSERT_NE(box, nullptr);
    EXPECT_THAT(box->text().toStdString(), HasSubstr(file.string() + " cannot be saved: "));
    box->accept();
    ASSERT_TRUE(waitUntil([&] { return world.find<QWidget>("listProblem") == nullptr; }));

    world.platform.ownPlaces.temporary = world.tree.path("no temporary folder");
    world.onWindowThread([](Workbench& bench) { exportTable(bench, u"title"); });
    box = world.await<QMessageBox>("listProblem");
    ASSERT_NE(box, nullptr);
    EXPECT_THAT(box->text().toStdString(), HasSubstr("no temporary folder cannot be written: "));
    EXPECT_EQ(world.link().job(), Job::none);
}

TEST(ListFiles, ATableIsWrittenOrCancelledWholly)
{
    DesktopWorld world;
    world.loadList({{"b", "a"}});
    const auto tables = [&] {
        const std::filesystem::directory_iterator files(world.platform.ownPlaces.temporary);
        return std::count_if(begin(files), end(files),
                             [](const auto& file) { return file.path().extension() == ".csv"; });
    };
    world.onWindowThread([](Workbench& bench) {
        const Ref<const ShellItem> file = bench.results().item(bench.results().itemAt(0)).file.itemRef();
        for (int row = 0; row < 40'000; ++row)
            bench.results().add(file, 3, false);
    });
    const auto connection = QObject::connect(&world.link(), &WindowLink::jobChanged, &world.window(), [&](Job job) {
        if (job == Job::saving)
            world.link().cancelJob();
    });
    QString told;
    QObject::connect(&world.link(), &WindowLink::statusTold, &world.window(),
                     [&](const QString& text) { told = text; });
    world.onWindowThread([](Workbench& bench) { exportTable(bench, u"title"); });
    EXPECT_EQ(told, QStringLiteral("Cancelled: no table was written"));
    EXPECT_EQ(tables(), 0);
    QObject::disconnect(connection);
    world.onWindowThread([](Workbench& bench) { exportTable(bench, u"title"); });
    EXPECT_EQ(tables(), 1);
    EXPECT_EQ(world.platform.otherPrograms.files.size(), 1u);
}

TEST(ListFiles, LongWorkShowsHowFarItIsLetsOthersInAndIsCancelled)
{
    DesktopWorld world;
    world.loadList({{"b", "a"}});
    bool ended = false;
    world.link().run([&](Workbench& bench) {
        const auto running = bench.begin(Job::saving);
        WorkCount count;
        ListProgress progress(bench, QStringLiteral("Working"));
        ended = progress.aside(count, [&] {
            count.total = 4;
            count.done = 1;
            while (!bench.cancel().cancelled())
                std::this_thread::yield();
            return true;
        });
    });
    auto* const cancel = world.await<QPushButton>("listProgressCancel");
    ASSERT_NE(cancel, nullptr);
    auto* const bar = world.find<QProgressBar>("listProgressBar");
    EXPECT_TRUE(waitUntil([&] { return bar->maximum() > 0 && bar->value() * 4 == bar->maximum(); }));
    world.onWindowThread([](Workbench& bench) { bench.results().invertTicks(); });
    EXPECT_EQ(world.link().rows().figures().ticked.items, 2u) << "marks are set meanwhile";
    cancel->click();
    EXPECT_TRUE(waitUntil([&] { return world.link().job() == Job::none; }));
    EXPECT_TRUE(ended);
    EXPECT_TRUE(waitUntil([&] { return !cancel->isVisible(); }));
}

TEST(ListItems, ShiftF10OpensTheirMenuAtTheCurrentRow)
{
    DesktopWorld world;
    world.loadList({{"b", "a"}});
    auto* const view = world.find<ResultsView>("resultsView");
    view->goTo(1, Qt::NoModifier);
    QTest::keyClick(view, Qt::Key_F10, Qt::ShiftModifier);
    auto* const menu = world.await<QMenu>("listMenu");
    ASSERT_NE(menu, nullptr);
    EXPECT_TRUE(menu->actions().contains(world.find<QAction>("item.properties")));
    menu->close();
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
    ASSERT_TRUE(waitUntil([&] { return world.link().job() == Job::none; }));
    FakeQuestions nobody;
    CRegistryAccess kept(settingsPorts(world.platform));
    kept.load(nobody);
    EXPECT_EQ(kept.settings().ignoredGroups.size(), 1u) << "at once, not when the program ends";
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
