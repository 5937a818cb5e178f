// What is remembered of the list between lists, windows and runs.
#include <QHeaderView>

#include "app/engine_settings.h"
#include "support/ui/desktop_world.h"
#include "ui/list/list_files.h"
#include "ui/list/list_header.h"
#include "ui/list/results_pane.h"

namespace kelvane::testing {
namespace {

using ::testing::ElementsAre;

std::shared_ptr<MemorySettingsStore> anEmptyStore()
{
    return std::make_shared<MemorySettingsStore>();
}

std::vector<std::string> columnsOf(const DesktopWorld& world)
{
    return world.find<ListHeader>("listHeader")->namesInOrder();
}

std::vector<std::string> namesOf(DesktopWorld& world)
{
    return world.ask<std::vector<std::string>>([](Workbench& bench) {
        std::vector<std::string> names;
        bench.results().forEachRow(
            [&](ItemId id) { names.push_back(bench.results().item(id).file.item().path().filename().string()); });
        return names;
    });
}

// A list as a scan leaves it, in the order of its groups.
void scanned(DesktopWorld& world, Category category, const std::vector<std::string>& given = {})
{
    std::vector<std::filesystem::path> paths;
    for (const char* const name : {"b", "c", "a"})
        paths.push_back(world.tree.write(std::string("files/") + name, "the same"));
    world.onWindowThread([&](Workbench& bench) {
        const auto running = bench.begin(Job::scanning);
        const Settings settings = bench.desktop().settings();
        ListSession& session = bench.beginList(settings, engineOptionsFrom(settings));
        CScanNode definition;
        definition.setCategory(category);
        session.definition = definition;
        for (const std::string& name : given)
            session.columns.push_back(session.access.catalogue.byName(name));
        bench.toMain([](WindowLink& link) { Q_EMIT link.listBegan(); });
        for (const auto& path : paths)
            bench.results().add(bench.platform().shell().parse(path.native()).value(), 1, false);
    });
    world.onWindowThread([](Workbench&) {});  // what the end of the job led to
    world.onWindowThread([](Workbench&) {});
}

void choose(DesktopWorld& world, const std::vector<std::string>& names)
{
    world.find<ResultsPane>("resultsPane")->useColumns(names);
    world.onWindowThread([](Workbench&) {});
}

const std::string name = "System.FileName", folder = "System.ItemFolderPathDisplay", size = "System.Size",
                  date = "System.DateModified", title = "System.Title", type = "System.ItemTypeText";

TEST(ListMemory, KeepsColumnsTheirOrderAndWidthsInOtherWindowsAndAfterAStart)
{
    const auto store = anEmptyStore();
    {
        DesktopWorld world({.kept = store});
        scanned(world, Category::documents);
        EXPECT_THAT(columnsOf(world), ElementsAre(name, folder, size, date));
        choose(world, {name, type, size});
        auto* const header = world.find<ListHeader>("listHeader");
        header->moveSection(3, 1);  // as a mouse does: the size before the name
        world.onWindowThread([](Workbench&) {});
        EXPECT_THAT(columnsOf(world), ElementsAre(size, name, type));
        header->resizeSection(2, 321);
        world.openWindow();
        scanned(world, Category::documents);
        EXPECT_THAT(columnsOf(world), ElementsAre(size, name, type));
        EXPECT_EQ(world.find<ListHeader>("listHeader")->sectionSize(2), 321);
    }
    DesktopWorld world({.kept = store});
    scanned(world, Category::documents);
    EXPECT_THAT(columnsOf(world), ElementsAre(size, name, type));
    EXPECT_EQ(world.find<ListHeader>("listHeader")->sectionSize(2), 321);
    choose(world, {});
    EXPECT_THAT(columnsOf(world), ElementsAre(name, folder, size, date));
    EXPECT_NE(world.find<ListHeader>("listHeader")->sectionSize(1), 321) << "defaults are wanted for widths as well";
}

TEST(ListMemory, ColumnsThatAScanGivesStayWithScansThatGiveThem)
{
    DesktopWorld world;
    scanned(world, Category::audio, {title});
    EXPECT_THAT(columnsOf(world), ElementsAre(name, folder, size, date, title));
    choose(world, {title, name, size});
    scanned(world, Category::documents);
    EXPECT_THAT(columnsOf(world), ElementsAre(name, size));
    scanned(world, Category::audio, {title, size, type});
    EXPECT_THAT(columnsOf(world), ElementsAre(title, name, size, type));
    choose(world, {name, size});
    scanned(world, Category::audio, {title, type});
    EXPECT_THAT(columnsOf(world), ElementsAre(name, size)) << "what was taken away is not wanted";
}

TEST(ListMemory, KeepsTheSortOrderAndWhetherGroupsAreTornApart)
{
    const auto store = anEmptyStore();
    {
        DesktopWorld world({.kept = store});
        scanned(world, Category::documents);
        EXPECT_THAT(namesOf(world), ElementsAre("b", "c", "a"));
        auto* const header = world.find<QHeaderView>("listHeader");
        Q_EMIT header->sectionClicked(1);
        Q_EMIT header->sectionClicked(1);  // downwards
        EXPECT_TRUE(world.trigger("view.keepGrouped"));
        EXPECT_THAT(namesOf(world), ElementsAre("c", "b", "a"));
        world.openWindow();
        scanned(world, Category::documents);
        EXPECT_THAT(namesOf(world), ElementsAre("c", "b", "a"));
    }
    DesktopWorld world({.kept = store});
    EXPECT_FALSE(world.find<QAction>("view.keepGrouped")->isChecked());
    scanned(world, Category::documents);
    EXPECT_THAT(namesOf(world), ElementsAre("c", "b", "a"));
    EXPECT_FALSE(world.link().rows().figures().grouped);
    const auto* const header = world.find<QHeaderView>("listHeader");
    EXPECT_TRUE(header->isSortIndicatorShown());
    EXPECT_EQ(header->sortIndicatorOrder(), Qt::DescendingOrder);
    EXPECT_TRUE(world.trigger("view.unsorted"));
    scanned(world, Category::documents);
    EXPECT_THAT(namesOf(world), ElementsAre("b", "c", "a"));
}

TEST(ListMemory, PicturesAreThumbnailsUntilThePersonWantsDetails)
{
    DesktopWorld world;
    auto& view = *world.find<ResultsView>("resultsView");
    scanned(world, Category::documents);
    EXPECT_FALSE(view.showsThumbnails());
    scanned(world, Category::images);
    EXPECT_TRUE(view.showsThumbnails());
    EXPECT_TRUE(world.find<QAction>("list.thumbnails")->isChecked());
    EXPECT_TRUE(world.trigger("list.details"));
    scanned(world, Category::images);
    EXPECT_FALSE(view.showsThumbnails());
    EXPECT_TRUE(world.trigger("list.thumbnails"));
    scanned(world, Category::documents);
    EXPECT_FALSE(view.showsThumbnails()) << "other lists are as they were";
    EXPECT_TRUE(world.find<QAction>("list.details")->isChecked());
}

}  // namespace
}  // namespace kelvane::testing
