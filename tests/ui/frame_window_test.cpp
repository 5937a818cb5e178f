#include <QDockWidget>
#include <QLabel>
#include <QMenu>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QStatusBar>
#include <QTextBlock>
#include <QToolBar>
#include <QTreeWidget>

#include "support/ui/desktop_world.h"
#include "ui/frame/commands.h"

namespace kelvane::testing {
namespace {

bool isShown(const DesktopWorld& world, const char* command)
{
    const auto* const action = world.find<QAction>(command);
    return action != nullptr && action->isVisible();
}

// A job that runs until it is told to stop.
void workOn(DesktopWorld& world)
{
    world.link().run([](Workbench& bench) {
        const auto running = bench.begin(Job::scanning);
        while (!bench.cancel().cancelled())
            bench.serve();
    });
    ASSERT_TRUE(waitUntil([&] { return world.link().job() == Job::scanning; }));
}

TEST(FrameWindow, OpensASecondOneAndClosesBoth)
{
    DesktopWorld world;
    MainWindow& first = world.window();
    world.loadList({{"a", "b"}, {"c", "d", "e"}});
    EXPECT_EQ(world.link().rows().count(), 5u);
    EXPECT_EQ(world.link().rows().figures().groups, 2u);

    MainWindow& second = world.openWindow();
    EXPECT_NE(&second, &first);
    EXPECT_EQ(world.application().windowCount(), 2u);
    EXPECT_EQ(second.link().rows().count(), 0u) << "each window has a list of its own";

    world.closeWindow(first);
    EXPECT_EQ(world.application().windowCount(), 1u);
    EXPECT_THAT(DesktopWorld::windows(), ::testing::ElementsAre(&second));
}

TEST(FrameWindow, OffersWhatCanBeDoneNowAndWhatTheModeShows)
{
    DesktopWorld world({.mode = InterfaceMode::standard});
    CommandSet& commands = world.window().commands();
    int runs = 0;
    const auto count = [&runs] { ++runs; };
    commands.add({.name = "test.idle", .label = TextId{}, .menu = MenuId::tools, .run = count, .when = when::idle});
    commands.add({.name = "test.list", .label = TextId{}, .menu = MenuId::tools, .run = count, .when = when::hasItems});
    commands.add(
        {.name = "test.ticks", .label = TextId{}, .menu = MenuId::tools, .run = count, .when = when::hasTicks});
    commands.add({.name = "test.expert",
                  .label = TextId{},
                  .menu = MenuId::tools,
                  .run = count,
                  .leastMode = InterfaceMode::advanced});

    EXPECT_TRUE(world.trigger("test.idle"));
    EXPECT_FALSE(world.trigger("test.list")) << "there is no list yet";
    world.loadList({{"a", "b"}});
    EXPECT_TRUE(world.trigger("test.list"));
    EXPECT_FALSE(world.trigger("test.ticks"));
    world.onWindowThread([](Workbench& bench) { bench.results().invertTicks(); });
    EXPECT_TRUE(world.trigger("test.ticks"));
    workOn(world);
    EXPECT_FALSE(world.trigger("test.idle"));
    EXPECT_EQ(runs, 3);

    EXPECT_FALSE(isShown(world, "test.expert"));
    EXPECT_TRUE(world.trigger("view.advanced"));
    EXPECT_TRUE(isShown(world, "test.expert"));
    const auto kept = world.desktop().settings();
    EXPECT_TRUE((kept.flags & settings_flag::advanced) != 0 && (kept.flags & settings_flag::safeOptions) == 0);
}

TEST(FrameWindow, SaysBelowTheListWhatIsMarkedAndInView)
{
    DesktopWorld world;
    const auto* const marked = world.find<QLabel>("status.marked");
    const auto* const items = world.find<QLabel>("status.items");
    world.loadList({{"a", "b", "c"}});
    EXPECT_TRUE(waitUntil([&] { return items->text() == QStringLiteral("3 items"); }));
    world.onWindowThread([](Workbench& bench) { bench.results().invertTicks(); });
    EXPECT_TRUE(waitUntil([&] { return marked->text().startsWith(QStringLiteral("Marked 3")); }));

    world.onWindowThread([](Workbench& bench) { bench.tell(u"just so"); });
    EXPECT_EQ(world.window().statusBar()->currentMessage(), QStringLiteral("just so"));
    world.onWindowThread([](Workbench& bench) { bench.log(u"x: skipped"); });
    EXPECT_EQ(world.window().statusBar()->currentMessage(), QStringLiteral("just so"));
    const auto* const log = world.find<QPlainTextEdit>("log.lines");
    EXPECT_TRUE(waitUntil([&] { return log->toPlainText().endsWith(QStringLiteral("  x: skipped")); }));
    EXPECT_TRUE(log->toPlainText().contains(QStringLiteral("  just so\n")));
}

// A scan that could not read thousands of files once kept the window busy with its log for seconds.
TEST(FrameWindow, ShowsTheLatestOfManyLinesBitByBit)
{
    DesktopWorld world;
    const auto* const log = world.find<QPlainTextEdit>("log.lines");
    for (int line = 1; line <= 9'000; ++line)
        Q_EMIT world.link().logged(QStringLiteral("skipped %1").arg(line));
    EXPECT_LT(log->blockCount(), 1'000);
    EXPECT_TRUE(waitUntil([&] { return log->toPlainText().endsWith(QStringLiteral("  skipped 9000")); }));
    EXPECT_TRUE(log->document()->firstBlock().text().endsWith(QStringLiteral("  skipped 4001")));
}

TEST(FrameWindow, SumsGroupsUpAndLeadsToThem)
{
    DesktopWorld world;
    world.loadList({{"small1", "small2"}});
    world.onWindowThread([&world](Workbench& bench) {
        for (const char* name : {"files/big1", "files/big2", "files/big3"}) {
            const auto path = world.tree.write(name, std::string(4'096, 'x'));
            bench.results().add(bench.platform().shell().parse(path.native()).value(), 2, false);
        }
    });
    world.find<QDockWidget>("groups.pane")->show();
    world.find<QDockWidget>("groups.pane")->raise();
    auto* const biggest = world.find<QTreeWidget>("groups.biggest");
    ASSERT_TRUE(waitUntil([&] { return biggest->topLevelItemCount() == 2; }));
    EXPECT_EQ(biggest->topLevelItem(0)->text(0), QStringLiteral("8192 bytes"));
    EXPECT_EQ(world.find<QLabel>("groups.sum")->text(),
              QStringLiteral("Groups: 2   Duplicates in them: 5   Can go: 3 (8200 bytes)"));

    std::optional<ItemId> wanted;
    QObject::connect(&world.link(), &WindowLink::itemWanted, [&](ItemId item) { wanted = item; });
    Q_EMIT biggest->itemClicked(biggest->topLevelItem(0), 0);
    EXPECT_EQ(wanted, ItemId{2});
    EXPECT_TRUE(waitUntil([&] { return world.link().currentItem() == ItemId{2}; })) << "the list goes there";
}

TEST(FrameWindow, AsksBeforeItClosesOverWorkThatRuns)
{
    DesktopWorld world;
    workOn(world);
    const QPointer<MainWindow> window(&world.window());
    window->close();
    auto* box = world.await<QMessageBox>("closeBox");
    ASSERT_NE(box, nullptr);
    EXPECT_EQ(box->defaultButton(), box->button(QMessageBox::No));
    window->close();
    EXPECT_EQ(window->findChildren<QMessageBox*>(QStringLiteral("closeBox")).size(), 1) << "asked once";
    box->button(QMessageBox::No)->click();
    EXPECT_EQ(world.link().job(), Job::scanning);
    ASSERT_TRUE(waitUntil([&] { return world.find<QMessageBox>("closeBox") == nullptr; }));

    window->close();
    box = world.await<QMessageBox>("closeBox");
    ASSERT_NE(box, nullptr);
    box->button(QMessageBox::Yes)->click();
    EXPECT_TRUE(waitUntil([&] { return window.isNull(); }));
}

TEST(FrameWindow, StaysWhenTheWorkEndsBeforeThatIsAnswered)
{
    DesktopWorld world;
    workOn(world);
    const QPointer<MainWindow> window(&world.window());
    window->close();
    ASSERT_NE(world.await<QMessageBox>("closeBox"), nullptr);
    world.link().cancelJob();
    ASSERT_TRUE(waitUntil([&] { return world.find<QMessageBox>("closeBox") == nullptr; })) << "nothing to ask any more";
    EXPECT_EQ(world.link().job(), Job::none);
    // Whatever the window's thread was told before this has been done by then.
    world.onWindowThread([](Workbench&) {});
    ASSERT_FALSE(window.isNull()) << "what was found is there to be seen";
    EXPECT_TRUE(window->isVisible());
}

TEST(FrameWindow, ShowsOneQuestionAfterTheOtherAboveItsOwnWindow)
{
    DesktopWorld world;
    std::vector<bool> answers;
    for (int question = 0; question < 2; ++question)
        world.link().run([&answers, &world](Workbench& bench) {
            const bool yes = world.questions().askYesNo(u"Shall it be?\nThink of it.");
            bench.toMain([&answers, yes](WindowLink&) { answers.push_back(yes); });
        });
    const QPointer<QMessageBox> first = world.await<QMessageBox>("questionBox");
    ASSERT_NE(first, nullptr);
    EXPECT_EQ(first->parentWidget(), &world.window());
    EXPECT_EQ(first->text(), QStringLiteral("Shall it be?"));
    EXPECT_EQ(first->informativeText(), QStringLiteral("Think of it."));
    const auto visible = [&world] {
        int count = 0;
        for (const auto* box : world.window().findChildren<QMessageBox*>())
            count += box->isVisible() ? 1 : 0;
        return count;
    };
    static_cast<void>(waitUntil([&] { return visible() > 1; }, std::chrono::milliseconds(200)));
    EXPECT_EQ(visible(), 1);
    first->button(QMessageBox::Yes)->click();
    ASSERT_TRUE(waitUntil([&] { return visible() == 1 && (!first || !first->isVisible()); }));
    auto* const second = world.await<QMessageBox>("questionBox");
    ASSERT_NE(second, nullptr);
    second->reject();
    ASSERT_TRUE(waitUntil([&] { return answers.size() == 2; }));
    EXPECT_THAT(answers, ::testing::UnorderedElementsAre(true, false));
}

}  // namespace
}  // namespace kelvane::testing
