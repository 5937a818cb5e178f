#include "cleanup/cleanup_run.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "cleanup/cleanup_message.h"
#include "cleanup/run_world.h"
#include "cleanup/summary_page.h"

namespace kelvane {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using testing::RunWorld;

constexpr CleanupRequest recycle{};
constexpr CleanupRequest links{CleanupAction::link};

ItemOutcome done(LinkKind link = LinkKind::none)
{
    ItemOutcome outcome;
    outcome.result = ItemResult::done;
    outcome.link = link;
    return outcome;
}

ItemOutcome failed(CleanupFault fault, int systemCode, std::string text, std::int32_t code = 0)
{
    ItemOutcome outcome;
    outcome.result = ItemResult::failed;
    outcome.failure = CleanupFailure{fault, {ErrorKind::io, systemCode, std::move(text)}};
    outcome.code = code;
    return outcome;
}

constexpr const char* logHead = "\xEF\xBB\xBF*** search for ERROR to see any problems ***\r\n\r\nCategory: Photos\r\n";

// Native separators of a log as tests write them.
std::string posixText(std::string text)
{
    if (!testing::pathsArePosix)
        std::replace(text.begin(), text.end(), '\\', '/');
    return text;
}

TEST(CleanupLog, OfLinksIsAsItIsDocumented)
{
    RunWorld world({{"/a", "/b", "/c\n*"}, {"/d/\xC3\xA4", "/d/e", "/d/f", "/d/g", "/d/h"}});
    world.clock.milliseconds = 0xABCDEF;
    world.options.writeLog = true;
    world.context.facts.metadataLoss = [](const ShellItem& item, const ShellItem&) {
        return item.path() == testing::native("/b") ? metadata_loss::owner : std::uint8_t{0};
    };
    PassOutcome total;
    total.cancel = CancelState::linkRunSettled;
    ItemOutcome declined;
    declined.result = ItemResult::declined;
    const CleanupReport report = world.run(links,
                                           {done(LinkKind::hard),
                                            done(LinkKind::symbolic),
                                            done(LinkKind::clone),
                                            declined,
                                            failed(CleanupFault::system, 13, "Permission\ndenied"),
                                            {}},
                                           total);
    EXPECT_EQ(
        posixText(world.log()),
        std::string(logHead) +
            "Duplicates clean-up summary\r\nAction: Link\r\nMarked items: 6\r\nTheir size: 600 bytes\r\n"
            "All are items of the file system: True\r\nCan be brought back from the trash: False\r\n"
            "Comes free: 600 bytes\r\n"
            "Owner, rights, times or attributes that the link will not keep: 1 file\r\n\r\nFILES HANDLED ----\r\n\r\n"
            "/a\r\n\t[H] /b\r\n\t[S] /c\xEF\xBF\xBD*\r\n"
            "/d/\xC3\xA4\r\n\t[C] /d/e\r\n\t[!] /d/g\r\n\tERROR: xd Permission\xEF\xBF\xBD"
            "denied\r\n"
            "!ESC!\r\n\r\nItems with errors or skipped: 2\r\n");
    EXPECT_EQ(report.log, world.tree.path("temporary/kv_cleanupLog00abcdef.log"));
    EXPECT_EQ(world.memory.lastLog, report.log);
    EXPECT_THAT(world.questions.statuses, ElementsAre("creating links"));
}

TEST(CleanupLog, OfRemovalsIsAsItIsDocumented)
{
    RunWorld world({{"/a", "/b", "/c", "/d", "/usb/e"}});
    world.clock.milliseconds = 0xABCDEF;
    world.options.writeLog = true;
    PassOutcome total;
    total.recycled = true;
    (void)world.run(recycle,
                    {done(), failed(CleanupFault::system, 5, "no", static_cast<std::int32_t>(0x80070005)),
                     failed(CleanupFault::changed, 0, "")},
                    total);
    EXPECT_EQ(
        posixText(world.log()),
        std::string(logHead) +
            "Duplicates clean-up summary\r\nAction: Delete\r\nMarked items: 4\r\nTheir size: 400 bytes\r\n"
            "All are items of the file system: True\r\nCan be brought back from the trash: True\r\n"
            "Comes free when the trash is emptied: 300 bytes\r\n"
            "Left alone: 1 file (its volume has no trash)\r\n\r\nFILES HANDLED ----\r\n\r\n"
            "/b\r\n/c\r\n\tERROR: x80070005\r\n/d\r\n\tERROR: x0 it is not the file any more that the scan saw\r\n"
            "\r\nLEFT ALONE ----\r\n\r\n/usb/e\r\n\tits volume has no trash\r\n"
            "\r\nItems with errors or skipped: 3\r\n");
    ASSERT_EQ(world.questions.trashless.size(), 1u);
    EXPECT_EQ(world.questions.trashless[0].items, 1u);
}

TEST(CleanupLog, TakesANewNameInTheCommonFolderAndReplacesWhatThePersonNamed)
{
    RunWorld world({{"/a", "/b"}, {"/c", "/d"}});
    world.clock.milliseconds = 0xABCDEF;
    world.options.writeLog = true;
    world.tree.write("temporary/kv_cleanupLog00abcdef.log", "of somebody else");
    EXPECT_EQ(world.run(recycle, {done()}).log.filename(), "kv_cleanupLog00abcdf0.log");
    EXPECT_EQ(world.log(), "of somebody else");
    EXPECT_EQ(world.tree.read("temporary/kv_cleanupLog00abcdf0.log").find("Items with errors"), std::string::npos);

    world.options.logFile = world.tree.write("mine.log", "older");
    EXPECT_EQ(world.run(recycle, {done()}).logFailure, std::nullopt);
    EXPECT_THAT(world.tree.read("mine.log"), HasSubstr("\r\n/d\r\n"));
}

TEST(CleanupRun, TakesWhatWasHandledOffTheListAndTellsTheProportion)
{
    RunWorld world({{"/a", "/b", "/c", "/d"}});
    PassOutcome total;
    total.recycled = true;
    const CleanupReport report = world.run(recycle, {done(), failed(CleanupFault::changed, 0, ""), done()}, total);
    EXPECT_TRUE(report.ran && report.run);
    EXPECT_EQ(report.removed, 2u);
    EXPECT_EQ(report.reclaimed, 200u);
    EXPECT_THAT(world.questions.notices,
                ElementsAre("Clean-up complete!\n2 items cleaned up, reclaimed 200 bytes disk space\n"
                            "Some marked items weren't processed and remain in view\n\n"
                            "Deleted items are in your RECYCLE BIN\n"
                            "Emtpy your recycle bin to remove them for good\n"));
    EXPECT_EQ(world.marks(), "-x");
    EXPECT_EQ(world.model.inView(Mark::selected).items, 0u);
    EXPECT_FALSE(world.model.canUndo()) << "what is gone must not come back to the list";
    EXPECT_FALSE(world.journals.read(*report.run)->ended) << "the device was never asked to keep what was done";
    ASSERT_EQ(report.items.size(), 3u);
    EXPECT_EQ(report.items[1].failure->fault, CleanupFault::changed);

    // The rest, told in the status line, and without a word when nothing went.
    world.options.quietSummary = true;
    const CleanupReport nothing = world.run(recycle, {failed(CleanupFault::changed, 0, "")});
    EXPECT_EQ(nothing.message, u"");
    EXPECT_TRUE(world.journals.read(*nothing.run)->ended);
    EXPECT_TRUE(world.questions.statuses.empty());
    EXPECT_EQ(world.run(recycle, {done()}).removed, 1u);
    EXPECT_THAT(world.questions.statuses,
                ElementsAre("Clean-up complete!\n1 items cleaned up, reclaimed 100 bytes disk space\n"));
    EXPECT_EQ(world.questions.notices.size(), 1u);
}

TEST(CleanupRun, CountsNoLoneSurvivorAsCleanedUpAndRemembersWhatIsNotToBeShownAgain)
{
    RunWorld world({{"/a", "/b"}, {"/c", "/d"}});
    world.model.dropLoneSurvivors(true);
    world.questions.notShownAgain = true;
    const CleanupReport report = world.run(recycle, {done(), failed(CleanupFault::changed, 0, "")});
    EXPECT_EQ(report.removed, 1u);
    EXPECT_EQ(world.marks(), "-x");
    EXPECT_THAT(toUtf8(report.message), HasSubstr("remain in view"));
    EXPECT_EQ(report.noticesOff, cleanup_notice::summary);
}

TEST(CleanupRun, LeavesOnlyWhatIsReallyGoneOffTheListWhenTheSystemBrokeOff)
{
    RunWorld world({{"/a", "/b", "/c"}, {"/d", "/e"}});
    PassOutcome total;
    total.cancel = CancelState::requested;
    world.cancel.cancel();
    world.files.remove("/c");
    world.files.remove("/d");
    const CleanupReport report = world.run(recycle, {done(), done()}, total);
    EXPECT_EQ(world.marks(), "-x x");
    EXPECT_EQ(report.removed, 1u) << "nobody had marked the other one";
    EXPECT_EQ(report.reclaimed, 100u);
}

TEST(CleanupRun, DoesNothingBeforeItIsAgreedToAndCanBeWrittenDown)
{
    const auto untouched = [](RunWorld& world, const CleanupRequest& request) {
        const CleanupReport report = world.run(request, {done(), done(), done()});
        EXPECT_FALSE(report.ran);
        EXPECT_EQ(world.passes, 0);
        EXPECT_EQ(world.model.itemCount(), 3u);
        return report.refused ? report.refused->detail : "";
    };
    RunWorld declined({{"/a", "/b", "/usb/c"}});
    declined.questions.confirmed = false;
    EXPECT_EQ(untouched(declined, recycle), "");
    EXPECT_EQ(declined.questions.summaries.size(), 1u);
    declined.questions.trashlessAnswer = Trashless::stop;
    EXPECT_EQ(untouched(declined, recycle), "");
    EXPECT_EQ(declined.questions.summaries.size(), 1u);
    EXPECT_EQ(declined.journals.list()->size(), 0u);

    RunWorld noJournal({{"/a", "/b", "/c"}});
    noJournal.tree.write("journals", "a file where the folder should be");
    EXPECT_THAT(untouched(noJournal, recycle), HasSubstr("the journal of clean-ups cannot be written"));

    RunWorld besideAnother({{"/a", "/b", "/c"}});
    const auto other = besideAnother.journals.claim();
    EXPECT_THAT(untouched(besideAnother, recycle), HasSubstr("another clean-up is going on"));

    RunWorld trashless({{"/a", "/usb/b", "/usb/c"}});
    EXPECT_EQ(untouched(trashless, recycle), "Sorry these items cannot be deleted");
    EXPECT_THAT(trashless.questions.statuses, ElementsAre("Sorry these items cannot be deleted"));
    trashless.definition.properties = "System.Title";
    EXPECT_EQ(untouched(trashless, links), "Linking is possible only for local filesystem & size-identical items");
    trashless.model.clearTicks();
    EXPECT_EQ(untouched(trashless, recycle), "You haven't ticked any duplicates");
}

TEST(CleanupRun, DeletesForGoodOnlyWhereItWasAskedForByName)
{
    RunWorld world({{"/a", "/b", "/usb/c<d"}});
    world.questions.trashlessAnswer = Trashless::deleteForGood;
    world.definition.setCategory(Category::folders);  // a list of folders takes no links, it deletes
    const CleanupReport report = world.run(links, {done(), done()});
    EXPECT_EQ(report.plan.commands[0].action, CleanupAction::recycle);
    EXPECT_EQ(report.plan.commands[1].action, CleanupAction::deletePermanently);
    ASSERT_EQ(world.questions.summaries.size(), 1u);
    const std::string& page = world.questions.summaries[0];
    EXPECT_THAT(page, HasSubstr("<p>Can be brought back from the trash: False</p>"));
    EXPECT_THAT(page, HasSubstr("Deleted for good, for there is no trash: 1 file in "));
    EXPECT_EQ(page.find("<%"), std::string::npos);
    EXPECT_EQ(world.model.itemCount(), 1u);
}

TEST(CleanupRun, WalksTheListForWhatVanishedAndStopsWhenAsked)
{
    std::vector<std::string> paths;
    for (int number = 0; number < 101; ++number)
        paths.push_back("/f" + std::to_string(number));
    RunWorld world({paths});
    const auto archive = ShellItem::make(nullptr, testing::native("/z.zip"), {FileKind::regular, 0, {}, {}, {}},
                                         ShellItem::Place::archive);
    world.model.add(ShellItem::make(archive, testing::native("in"), {FileKind::regular, 0, {}, {}, {}},
                                    ShellItem::Place::insideArchive),
                    2, false);
    world.files.addFile("/z.zip", "");
    for (const char* path : {"/f3", "/f50"})
        world.files.remove(path);
    std::vector<std::string> told;
    const auto tell = [&](std::u16string_view words) { told.push_back(toUtf8(words)); };
    world.cancel.cancel();
    EXPECT_THAT(purgeVanished(world.model, world.files, world.cancel, tell), IsEmpty());
    EXPECT_THAT(told, ElementsAre("Checking items...(ESC to cancel)"));
    world.cancel.reset();
    EXPECT_THAT(purgeVanished(world.model, world.files, world.cancel), ElementsAre(ItemId{50}, ItemId{3}));
    world.files.remove("/z.zip");
    EXPECT_THAT(purgeVanished(world.model, world.files, world.cancel), ElementsAre(ItemId{101}));
    world.files.setHook([](const std::string&, const std::string&) { return Error{ErrorKind::io, 5, {}}; });
    EXPECT_THAT(purgeVanished(world.model, world.files, world.cancel), IsEmpty()) << "nobody knows";
    EXPECT_EQ(world.model.itemCount(), 99u);
}

}  // namespace
}  // namespace kelvane
