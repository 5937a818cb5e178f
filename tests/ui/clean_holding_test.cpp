// What comes between a question and the act: another clean-up, a cancel, a window that closes, keys meant for others.
#include <QCommandLinkButton>
#include <QListWidget>
#include <QTreeView>
#include <QWindow>

#include "app/cleanup_tools.h"
#include "base/desktop_texts/clean.h"
#include "ui/clean/choice_dialog.h"
#include "ui/clean/settling.h"
#include "ui/clean_world.h"
#include "ui/core/text.h"

namespace kelvane::testing {
namespace {

using ::testing::ElementsAre;

// Up to the page; what follows is up to the test.
void goToThePage(CleanWorld& clean, const char* choice = "choiceDelete")
{
    ASSERT_TRUE(clean.world.trigger("clean.start"));
    ASSERT_TRUE(clean.click("cleanupChoice", choice));
    ASSERT_TRUE(clean.world.await<QDialog>("cleanupSummary"));
}

bool isShown(CleanWorld& clean, const char* name)
{
    const auto* const widget = clean.world.find<QWidget>(name);
    return widget != nullptr && widget->isVisible();
}

TEST(CleanHolding, AnotherCleanupKeepsItFromBeginningAndThatIsSeen)
{
    CleanWorld clean;
    clean.tick({"a2"});
    CleanupTools other(clean.world.platform);
    ASSERT_NO_FATAL_FAILURE(goToThePage(clean));
    {
        const auto claimed = other.journals().claim();
        ASSERT_TRUE(claimed);
        ASSERT_TRUE(clean.click("cleanupSummary", "cleanupGo"));
        ASSERT_TRUE(clean.answer("cleanupTrouble", QMessageBox::Ok)) << "a line below the list is easily missed";
        ASSERT_TRUE(clean.isOver());
    }
    EXPECT_TRUE(clean.allExist());
    EXPECT_FALSE(isShown(clean, "cleanProgress"));
    EXPECT_EQ(clean.world.find<QWidget>("status.cleaning"), nullptr);
}

TEST(CleanHolding, CancelledWhileThePlanIsMadeNothingIsAskedAnyMore)
{
    CleanWorld clean;
    clean.tick({"a2"});
    ASSERT_TRUE(clean.world.trigger("clean.start"));
    ASSERT_TRUE(clean.world.await<QDialog>("cleanupChoice"));
    clean.world.link().cancelJob();
    ASSERT_TRUE(clean.click("cleanupChoice", "choiceLinks"));
    ASSERT_TRUE(clean.isOver());
    EXPECT_EQ(clean.world.find<QDialog>("cleanupSummary"), nullptr);
    EXPECT_TRUE(clean.allExist());
}

TEST(CleanHolding, GroupsThatChangeBehindThePageStopIt)
{
    CleanWorld clean;
    clean.tick({"b2"});
    ASSERT_NO_FATAL_FAILURE(goToThePage(clean));
    // What is kept for b2 stands in another group now, whose files nobody compared with it.
    clean.world.onWindowThread([](Workbench& bench) {
        const std::vector<ItemId> both{bench.results().itemAt(0), bench.results().itemAt(3)};
        bench.results().mark(both, Mark::selected, true);
        EXPECT_TRUE(bench.results().regroupSelection());
    });
    ASSERT_TRUE(clean.click("cleanupSummary", "cleanupGo"));
    ASSERT_TRUE(clean.isOver());
    EXPECT_TRUE(clean.allExist());
}

constexpr int many = 6'000;  // enough to still be at work when the window is to close

void cleanMany(CleanWorld& clean)
{
    std::vector<std::string> names;
    for (int number = 0; number < many; ++number)
        names.push_back("m" + std::to_string(number));
    clean.load({names});
    clean.world.onWindowThread([](Workbench& bench) {
        bench.results().invertTicks();
        const ItemId first = bench.results().itemAt(0);
        bench.results().mark({&first, 1}, Mark::ticked, false);
    });
    ASSERT_NO_FATAL_FAILURE(goToThePage(clean));
    ASSERT_TRUE(clean.click("cleanupSummary", "cleanupGo"));
    ASSERT_TRUE(waitUntil([&] { return !clean.exists("m1"); }));
    ASSERT_TRUE(waitUntil([&] { return isShown(clean, "status.cleaning"); })) << "the status line tells of it";
}

bool isGone(const QPointer<MainWindow>& window)
{
    return waitUntil([&] { return window.isNull(); });
}

TEST(CleanHolding, ClosingTheWindowAsksOnceAndStops)
{
    CleanWorld clean;
    MainWindow& working = clean.world.window();
    clean.world.openWindow();  // so that the program goes on
    clean.world.use(working);
    const QPointer<MainWindow> window = &working;
    ASSERT_NO_FATAL_FAILURE(cleanMany(clean));
    window->close();
    ASSERT_TRUE(clean.answer("closeBox", QMessageBox::No));
    ASSERT_TRUE(waitUntil([&] { return clean.world.find<QWidget>("closeBox") == nullptr; }));
    window->close();
    ASSERT_TRUE(clean.answer("closeBox", QMessageBox::Yes));
    ASSERT_TRUE(clean.world.await<QWidget>("cleanupDone")) << "what was done is told, and no second question asked";
    EXPECT_FALSE(isShown(clean, "cleanupStop"));
    ASSERT_TRUE(clean.answer("cleanupDone", QMessageBox::Ok));
    EXPECT_TRUE(isGone(window));
    EXPECT_TRUE(clean.exists("m0"));
    EXPECT_TRUE(clean.exists("m" + std::to_string(many - 1))) << "it was stopped";
    clean.world.use(*DesktopWorld::windows().front());
}

TEST(CleanHolding, EndOfTheProgramWaitsForWhoeverWantsItDone)
{
    CleanWorld clean;
    const QPointer<MainWindow> window = &clean.world.window();
    ASSERT_NO_FATAL_FAILURE(cleanMany(clean));
    clean.world.application().post(CloseAllWindows{});
    ASSERT_TRUE(clean.answer("cleanupStop", QMessageBox::No));
    ASSERT_TRUE(clean.answer("cleanupDone", QMessageBox::Ok));
    EXPECT_TRUE(isGone(window));
    EXPECT_TRUE(clean.exists("m0"));
    EXPECT_FALSE(clean.exists("m" + std::to_string(many - 1))) << "all of it was done";
}

TEST(CleanHolding, GuideCanBeReadWhileItIsAskedFor)
{
    CleanWorld clean;
    clean.tick({"a2"});
    ASSERT_TRUE(clean.world.trigger("clean.start"));
    auto* const choice = clean.world.await<QDialog>("cleanupChoice");
    ASSERT_TRUE(choice);
    Q_EMIT choice->findChild<QLabel*>(QStringLiteral("cleanupHelp"))->linkActivated(QStringLiteral("help"));
    auto* const guide = clean.world.await<QWidget>("guideWindow");
    ASSERT_TRUE(guide);
    auto* const chapters = guide->findChild<QListWidget*>(QStringLiteral("guideChapters"));
    const int before = chapters->currentRow();
    const QPoint first = chapters->viewport()->mapTo(guide, chapters->visualItemRect(chapters->item(0)).center());
    QTest::mouseClick(guide->windowHandle(), Qt::LeftButton, {}, first);  // as the system hands it over
    EXPECT_TRUE(waitUntil([&] { return chapters->currentRow() == 0; }, std::chrono::seconds(2)));
    EXPECT_NE(before, 0);
    ASSERT_TRUE(clean.escape("cleanupChoice"));
    ASSERT_TRUE(clean.isOver());
}

// Also where another button is the default one.
TEST(CleanHolding, ReturnIsForTheButtonThatHasTheFocus)
{
    CleanWorld clean;
    clean.tick({"a2"});
    ASSERT_TRUE(clean.world.trigger("clean.start"));
    auto* const choice = clean.world.await<QDialog>("cleanupChoice");
    ASSERT_TRUE(choice);
    auto* const save = choice->findChild<QWidget*>(QStringLiteral("choiceSave"));
    save->setFocus();
    QTest::keyClick(save, Qt::Key_Return);
    ASSERT_TRUE(clean.isOver());
    EXPECT_EQ(clean.world.find<QDialog>("cleanupSummary"), nullptr) << "the default is to delete";

    Trashless answer = Trashless::leaveAlone;
    auto* const trashless = new TrashlessDialog(&clean.world.window(), {}, [&](Trashless given) { answer = given; });
    trashless->open();
    auto* const stop = trashless->findChild<QWidget*>(QStringLiteral("noTrashStop"));
    stop->setFocus();
    QTest::keyClick(stop, Qt::Key_Return);
    EXPECT_EQ(answer, Trashless::stop);
}

TEST(CleanHolding, DirectDeletionIsForKeysInTheListAlone)
{
    CleanWorld clean;
    clean.world.onWindowThread([](Workbench& bench) {
        const ItemId second = bench.results().itemAt(1);
        bench.results().mark({&second, 1}, Mark::selected, true);
    });
    MainWindow& window = clean.world.window();
    window.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    clean.world.find<QWidget>("pane.marking")->show();
    auto* const elsewhere = clean.world.find<QWidget>("markingFolders");
    elsewhere->setFocus();
    ASSERT_TRUE(waitUntil([&] { return elsewhere->hasFocus(); }));
    QTest::keyClick(elsewhere, Qt::Key_Delete, Qt::ShiftModifier);
    ASSERT_TRUE(clean.isOver());
    EXPECT_TRUE(clean.allExist());

    auto* const list = clean.world.find<QWidget>("resultsView");
    list->setFocus();
    ASSERT_TRUE(waitUntil([&] { return list->hasFocus(); }));
    QTest::keyClick(list, Qt::Key_Delete, Qt::ShiftModifier);
    EXPECT_TRUE(waitUntil([&] { return !clean.exists("a2"); }));
    ASSERT_TRUE(clean.isOver());
    EXPECT_THAT(clean.inView(), ElementsAre("a1", "a3", "b1", "b2"));

    ASSERT_TRUE(clean.world.trigger("clean.undo"));
    ASSERT_TRUE(clean.answer("undoConfirm", QMessageBox::Yes));
    ASSERT_TRUE(clean.answer("undoTold", QMessageBox::Ok));
    EXPECT_TRUE(clean.exists("a2"));
}

TEST(CleanHolding, DirectDeletionSaysWhatStaysAndWhy)
{
    CleanWorld clean;
    clean.world.onWindowThread([](Workbench& bench) {
        const std::vector<ItemId> both{bench.results().itemAt(0), bench.results().itemAt(1)};
        bench.results().mark(both, Mark::selected, true);
    });
    clean.world.tree.write("files/a2", "written meanwhile");
    clean.world.find<QWidget>("resultsView")->setFocus();
    ASSERT_TRUE(clean.world.trigger("clean.deleteDirectly"));
    auto* const dialog = clean.world.await<QDialog>("cleanupStays");
    ASSERT_NE(dialog, nullptr);
    const auto* const rows = dialog->findChild<QTreeView*>()->model();
    ASSERT_EQ(rows->rowCount(), 1);
    EXPECT_TRUE(rows->index(0, 0).data().toString().endsWith(QStringLiteral("a2")));
    EXPECT_EQ(rows->index(0, 1).data().toString(), shown(textOf(CleanupObstacle::changed)));
    EXPECT_TRUE(!clean.exists("a1") && clean.exists("a2"));
}

TEST(CleanHolding, ManyUndecidedFilesAreAListThatFitsTheScreen)
{
    constexpr int count = 60;
    CleanWorld clean;
    clean.world.onWindowThread([&](Workbench& bench) {
        CleanupTools tools(bench.platform());
        auto journal = tools.journals().begin(CleanupAction::recycle, bench.platform().clock().now());
        ASSERT_TRUE(journal);
        for (int number = 0; number < count; ++number) {
            JournalIntent intent;
            intent.item = clean.world.tree.path("files/gone" + std::to_string(number));
            ASSERT_TRUE((*journal)->intend(intent));
        }
        ASSERT_TRUE((*journal)->flush());
    });
    clean.world.onWindowThread([](Workbench& bench) { settleEarlierRuns(bench); });
    auto* const told = clean.world.await<QDialog>("settledRuns");
    ASSERT_TRUE(told);
    auto* const items = told->findChild<QTreeView*>(QStringLiteral("itemsTable"));
    ASSERT_TRUE(items);
    EXPECT_EQ(items->model()->rowCount(), count);
    EXPECT_LT(told->height(), 700);
    EXPECT_TRUE(items->model()->index(0, 0).data().toString().endsWith(QStringLiteral("gone0")));
    ASSERT_TRUE(clean.isOver());
}

TEST(CleanHolding, JournalsThatCannotBeReadAreNotCalledEmpty)
{
    CleanWorld clean;
    const std::filesystem::path folder = clean.world.ask<std::filesystem::path>(
        [](Workbench& bench) { return CleanupTools(bench.platform()).journals().folder(); });
    std::filesystem::create_directories(folder.parent_path());
    std::filesystem::create_symlink(std::string(300, 'x'), folder);  // a name that no file system takes
    ASSERT_TRUE(clean.world.trigger("clean.undo"));
    auto* const told = clean.world.await<QMessageBox>("undoTold");
    ASSERT_TRUE(told);
    EXPECT_NE(told->text(), shown(desktop_text::undoNothing));
    ASSERT_TRUE(clean.answer("undoTold", QMessageBox::Ok));
    ASSERT_TRUE(clean.world.trigger("clean.runs"));
    auto* const runs = clean.world.await<QDialog>("earlierRuns");
    ASSERT_TRUE(runs);
    EXPECT_TRUE(waitUntil([&] {
        auto* const none = runs->findChild<QLabel*>(QStringLiteral("runsNone"));
        return none->isVisible() && none->text() != shown(desktop_text::runsNone);
    }));
}

}  // namespace
}  // namespace kelvane::testing
