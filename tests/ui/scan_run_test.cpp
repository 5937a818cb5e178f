#include <QCheckBox>
#include <QDragEnterEvent>
#include <QLabel>
#include <QMessageBox>
#include <QMimeData>
#include <QTest>
#include <future>

#include "support/ui/scan_person.h"
#include "ui/scan/scan_watcher.h"

namespace kelvane::testing {
namespace {

using ::testing::HasSubstr;

void writeCopies(const TempTree& tree)
{
    tree.write("files/a", "one and the same");
    tree.write("files/below/b", "one and the same");
    tree.write("files/c", "three of a kind");
    tree.write("files/d", "three of a kind");
    tree.write("files/below/e", "three of a kind");
    tree.write("files/f", "like no other");
}

const NamedGroups copies{{"a", "b"}, {"c", "d", "e"}};

// At low priority the scan runs on a thread of its own where the system cannot raise a priority again.
class ScanAtPriority : public ::testing::TestWithParam<std::uint32_t> {};

TEST_P(ScanAtPriority, FillsTheListWithTheCopiesOfADroppedFolder)
{
    DesktopWorld world({.change = [](Settings& settings) { settings.flags |= GetParam(); }, .files = writeCopies});
    QStringList told;
    QObject::connect(&world.link(), &WindowLink::statusTold, [&](const QString& text) { told.append(text); });
    dropFolder(world, "scan.folderList", world.tree.path("files"));
    ASSERT_TRUE(scanBy(world, "scan.find"));

    EXPECT_EQ(listedGroups(world), copies);
    EXPECT_TRUE(waitUntil([&] { return world.link().rows().count() == 5; })) << "the main thread's copy of the list";
    EXPECT_THAT(told.join(u'\n').toStdString(), HasSubstr("5 duplicates found in 0:0"));
    const Settings settings = world.desktop().settings();
    ASSERT_TRUE(settings.lastScan);
    EXPECT_EQ(settings.lastScan->roots, world.tree.path("files").string());
    EXPECT_EQ(settings.lastScanFlags, settings.lastScan->flags);
    ASSERT_EQ(settings.scanHistory.size(), 1u);
    EXPECT_GT(settings.scanHistory.front().when, FileTime{});
    EXPECT_EQ(world.ask<std::size_t>([](Workbench& bench) { return bench.session()->columns.size(); }), 1u);
    EXPECT_EQ(world.ask<std::uint64_t>([](Workbench& bench) { return bench.session()->figures->candidates; }), 6u);
}

INSTANTIATE_TEST_SUITE_P(Priorities, ScanAtPriority, ::testing::Values(0u, option_flag::lowPriority));

TEST(ScanRun, StartsTheLastOneAgainWhateverTheFormSaysByNow)
{
    DesktopWorld world({.files = writeCopies});
    dropFolder(world, "scan.folderList", world.tree.path("files"));
    ASSERT_TRUE(scanBy(world, "scan.find"));
    EXPECT_TRUE(world.trigger("scan.new"));
    world.tree.write("files/g", "like no other");
    EXPECT_TRUE(world.trigger("scan.again"));
    const NamedGroups more{{"a", "b"}, {"c", "d", "e"}, {"f", "g"}};
    EXPECT_TRUE(waitUntil([&] { return world.link().job() == Job::none && world.link().rows().count() == 7; }));
    EXPECT_EQ(listedGroups(world), more);
    EXPECT_EQ(world.desktop().settings().scanHistory.size(), 1u) << "the same definition is one entry";
}

TEST(ScanRun, AsksBeforeMarksAreLost)
{
    DesktopWorld world({.files = writeCopies});
    dropFolder(world, "scan.folderList", world.tree.path("files"));
    ASSERT_TRUE(scanBy(world, "scan.find"));
    world.onWindowThread([](Workbench& bench) {
        std::vector<ItemId> all;
        bench.results().forEachItem([&](ItemId id) { all.push_back(id); });
        bench.results().mark(std::vector{all.front()}, Mark::ticked, true);
    });
    const auto ticked = [&] { return world.link().rows().figures().ticked.items; };
    ASSERT_TRUE(waitUntil([&] { return ticked() == 1; }));
    for (const auto answer : {QMessageBox::No, QMessageBox::Yes}) {
        EXPECT_TRUE(world.trigger("scan.again"));
        auto* const box = world.await<QMessageBox>("scan.forgetMarks");
        ASSERT_TRUE(box);
        EXPECT_EQ(world.link().job(), Job::none);
        EXPECT_EQ(ticked(), 1u);
        box->button(answer)->click();
        EXPECT_TRUE(waitUntil([&] { return world.find<QMessageBox>("scan.forgetMarks") == nullptr; }));
    }
    EXPECT_TRUE(waitUntil([&] { return world.link().job() == Job::none && ticked() == 0; }));
    EXPECT_EQ(listedGroups(world), copies);
}

TEST(ScanRun, StartsTheLastOneOfItsOwnWindowAgain)
{
    DesktopWorld world({.files = writeCopies});
    dropFolder(world, "scan.folderList", world.tree.path("files"));
    ASSERT_TRUE(scanBy(world, "scan.find"));
    MainWindow& first = world.window();
    world.openWindow();
    scanPane(world).clear();
    dropFolder(world, "mainWindow", world.tree.path("files/below"));
    ASSERT_TRUE(
        waitUntil([&] { return scanPane(world).order().definition.roots == world.tree.path("files/below").string(); }));
    ASSERT_TRUE(scanBy(world, "scan.find"));

    world.use(first);
    world.tree.write("files/g", "like no other");
    EXPECT_TRUE(world.trigger("scan.again"));
    EXPECT_TRUE(waitUntil([&] { return world.link().job() == Job::none && world.link().rows().count() == 7; }));
}

TEST(ScanRun, ComparesByWhatListedPluginsSayOfFiles)
{
    DesktopWorld world({.files = [](const TempTree& tree) {
        tree.write("files/a.txt", "one text");
        tree.write("files/b.txt", "another text");
        tree.write("files/c.bin", "a file that the plug-in is not asked about");
    }});
    world.desktop().change([](Settings& settings) { settings.contentPlugins = {{KELVANE_SAMPLE_PLUGIN, {}}}; });
    ScanOrder order = scanPane(world).order();
    order.definition.set(scan_flag::contents, false);
    order.definition.properties = "Plugin.sample_plugin.Number";
    order.definition.roots = world.tree.path("files").string();
    scanPane(world).showOrder(order);
    ASSERT_TRUE(scanBy(world, "scan.find"));
    EXPECT_EQ(listedGroups(world), (NamedGroups{{"a.txt", "b.txt"}}));
}

// Starts a scan that waits at its first report of progress.
void startHeld(DesktopWorld& world)
{
    dropFolder(world, "scan.folderList", world.tree.path("files"));
    EXPECT_TRUE(world.trigger("scan.start"));
    world.find<QAction>("scan.pause")->setChecked(true);
    EXPECT_TRUE(waitUntil([&] { return world.link().job() == Job::scanning; }));
}

TEST(ScanRun, HoldsAndGoesOnWhileTheWindowIsServed)
{
    DesktopWorld world({.files = writeCopies});
    startHeld(world);
    EXPECT_TRUE(world.find<QWidget>("scan.progress")->isVisible());
    EXPECT_EQ(world.ask<Job>([](Workbench& bench) { return bench.job(); }), Job::scanning);
    EXPECT_EQ(world.link().job(), Job::scanning);
    EXPECT_FALSE(world.find<QAction>("scan.start")->isEnabled());

    click(world, "scan.pauseButton");
    EXPECT_TRUE(waitUntil([&] { return world.link().job() == Job::none; }));
    EXPECT_EQ(listedGroups(world), copies);
    EXPECT_FALSE(world.find<QWidget>("scan.progress")->isVisible());
}

TEST(ScanRun, EndsSoonAfterACancelAndSaysSo)
{
    DesktopWorld world({.files = writeCopies});
    QString told;
    QObject::connect(&world.link(), &WindowLink::statusTold, [&](const QString& text) { told = text; });
    startHeld(world);
    EXPECT_TRUE(world.trigger("scan.stop"));
    EXPECT_TRUE(waitUntil([&] { return world.link().job() == Job::none; }));
    EXPECT_TRUE(waitUntil([&] { return told.contains(QStringLiteral("cancelled")); })) << told.toStdString();
    EXPECT_EQ(world.find<QWidget>("scan.revise"), nullptr) << "a cancelled scan has not found nothing";
}

TEST(ScanRun, ClosesItsWindowWhileItRuns)
{
    DesktopWorld world({.files = writeCopies});
    MainWindow& scanning = world.window();
    startHeld(world);
    world.openWindow();
    world.closeWindow(scanning);
    EXPECT_EQ(world.application().windowCount(), 1u);
}

TEST(ScanRun, AsksToReviseWhereNothingIsFound)
{
    DesktopWorld world({.files = [](const TempTree& tree) {
        tree.write("files/a", "one");
        tree.write("files/b", "another");
    }});
    dropFolder(world, "scan.folderList", world.tree.path("files"));
    ASSERT_TRUE(scanBy(world, "scan.find"));
    world.await<QDialog>("scan.notice")->reject();
    auto* const box = world.await<QDialog>("scan.revise");
    ASSERT_NE(box, nullptr);
    box->reject();
    EXPECT_TRUE(waitUntil([&] { return world.find<QDialog>("scan.revise") == nullptr; }));
}

TEST(ScanRun, AsksNothingBeforeItsNoticeIsRead)
{
    DesktopWorld world(
        {.files = [](const TempTree& tree) { tree.write("files/a", "one"), tree.write("files/b", "two"); }});
    dropFolder(world, "scan.folderList", world.tree.path("files"));
    ASSERT_TRUE(scanBy(world, "scan.find"));
    auto* const notice = world.await<QMessageBox>("scan.notice");
    ASSERT_NE(notice, nullptr);
    QTest::qWait(100);
    const auto* const question = world.find<QDialog>("scan.revise");
    EXPECT_TRUE(notice->isVisible());
    EXPECT_FALSE(question != nullptr && question->isVisible());
    QTest::keyClick(notice, Qt::Key_Escape);
    auto* const box = world.await<QMessageBox>("scan.revise");
    ASSERT_NE(box, nullptr);
    QTest::keyClick(box, Qt::Key_Escape);
    EXPECT_TRUE(waitUntil([&] { return world.find<QDialog>("scan.revise") == nullptr; }));
}

TEST(ScanRun, SaysWhichFoldersWereNotSearchedAndWhy)
{
    for (const InterfaceMode mode : {InterfaceMode::beginner, InterfaceMode::advanced}) {
        DesktopWorld world({.mode = mode, .files = [](const TempTree& tree) {
                                writeCopies(tree);
                                tree.folder("<b>gone");
                            }});
        dropFolders(world, "mainWindow", {world.tree.path("files"), world.tree.path("<b>gone")});
        ASSERT_TRUE(waitUntil([&] {
            return scanPane(world).order().definition.roots.find("gone") != std::string::npos;
        })) << "all that was dropped is to be searched";
        std::filesystem::remove(world.tree.path("<b>gone"));
        ASSERT_TRUE(scanBy(world, mode == InterfaceMode::beginner ? "express.find" : "scan.find"));
        EXPECT_EQ(listedGroups(world), copies);
        const auto* const label = world.find<QLabel>("scan.notRead");
        EXPECT_TRUE(label->isVisible());
        EXPECT_THAT(label->text().toStdString(),
                    ::testing::ContainsRegex(world.tree.path("<b>gone").string() + ": .+"));

        dropFolder(world, "mainWindow", world.tree.path("files"));
        ASSERT_TRUE(
            waitUntil([&] { return scanPane(world).order().definition.roots.find("gone") == std::string::npos; }));
        ASSERT_TRUE(scanBy(world, mode == InterfaceMode::beginner ? "express.find" : "scan.find"));
        EXPECT_FALSE(label->isVisible());
    }
}

TEST(ScanRun, NamesTheFirstThatCannotBeReadAndCountsTheRest)
{
    DesktopWorld world;
    const QStringList lines = world.ask<QStringList>([](Workbench& bench) {
        const PauseSwitch pause;
        ScanWatcher watcher(bench, nullptr, pause);
        for (int number = 1; number <= 7; ++number)
            watcher.skipped({"/folder" + std::to_string(number), {ErrorKind::io, 0, "worn out"}});
        watcher.undescribed({"/no picture", {ErrorKind::io, 0, "no picture"}});
        return watcher.firstSkipped();
    });
    ASSERT_EQ(lines.size(), 4);
    EXPECT_EQ(lines.front(), QStringLiteral("/folder1: worn out"));
    EXPECT_TRUE(lines.back().contains(QStringLiteral("4"))) << lines.back().toStdString();
}

TEST(ScanRun, ReadsAListOfPluginsWithoutKeepingAnybodyFromTheSettings)
{
    DesktopWorld world;
    Settings settings = world.desktop().settings();
    settings.pluginList = u"/no such list.ini";
    const std::lock_guard held(world.application().sharedState());
    auto options = std::async(std::launch::async, [&] { return world.desktop().engineOptions(settings); });
    ASSERT_EQ(options.wait_for(patience), std::future_status::ready);
}

TEST(ScanRun, LeavesAloneWhatIsDroppedFromAnotherComputer)
{
    DesktopWorld world;
    QMimeData dropped;
    dropped.setUrls({QUrl(QStringLiteral("https://host/folder"))});
    for (QWidget* const target : {static_cast<QWidget*>(&world.window()), world.find<QWidget>("scan.folderList")}) {
        QDragEnterEvent over(QPoint(5, 5), Qt::CopyAction, &dropped, Qt::LeftButton, Qt::NoModifier);
        over.ignore();
        QCoreApplication::sendEvent(target, &over);
        EXPECT_FALSE(over.isAccepted()) << target->objectName().toStdString();
    }
}

TEST(ScanRun, ShowsItsNoticeUntilThePersonHasSeenEnoughOfIt)
{
    DesktopWorld world({.files = writeCopies});
    dropFolder(world, "scan.folderList", world.tree.path("files"));
    ASSERT_TRUE(scanBy(world, "scan.find"));
    auto* const notice = world.await<QMessageBox>("scan.notice");
    ASSERT_NE(notice, nullptr);
    notice->checkBox()->setChecked(true);
    notice->accept();
    EXPECT_NE(world.desktop().settings().noticesOff & notice_flag::firstScanShown, 0u);
    ASSERT_TRUE(scanBy(world, "scan.find"));
    EXPECT_TRUE(waitUntil([&] { return world.find<QMessageBox>("scan.notice") == nullptr; }));
}

}  // namespace
}  // namespace kelvane::testing
