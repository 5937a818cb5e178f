#include "cleanup/settle.h"

#include <fstream>
#include <functional>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <map>
#include <set>

#include "platform/platform.h"
#include "support/faulty_held_files.h"
#include "support/paths.h"
#include "support/temp_tree.h"

namespace kelvane {
namespace {

using testing::native;
using testing::TempTree;

// A trash that is a folder; its note of a file has ".note" behind the file's name.
class FolderTrash final : public FileOperations {
public:
    BatchOutcome remove(std::span<const RemovalItem>, RemovalSink&, const CancelFlag&) override { return {}; }
    Status canTrash(const std::filesystem::path&) override { return {}; }
    bool isInTrash(const std::filesystem::path&) override { return false; }
    Status restore(const std::filesystem::path&, const std::filesystem::path&) override { return Error{}; }
    Status forget(const std::filesystem::path& trashed) override
    {
        std::filesystem::path note = trashed;
        note += ".note";
        std::filesystem::remove(note);
        return {};
    }
};

// Every file of one folder: what its name leads to, and the contents that it has itself.
using Listing = std::map<std::string, std::string>;

std::string contentOf(const std::filesystem::path& path)
{
    std::ifstream file(path, std::ios::binary);
    return file ? std::string(std::istreambuf_iterator<char>(file), {}) : std::string("leads nowhere");
}

Listing listingOf(const std::filesystem::path& folder)
{
    Listing listing;
    for (const auto& entry : std::filesystem::directory_iterator(folder))
        listing[entry.path().filename().string()] = contentOf(entry.path());
    return listing;
}

std::set<std::string> contentsIn(const std::filesystem::path& folder)
{
    std::set<std::string> contents;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        if (!entry.is_symlink())
            contents.insert(contentOf(entry.path()));
    }
    return contents;
}

const std::string content = "the bytes that both have";

// One entry of a run, in a folder of its own: "item", "kept", and the names beside the item.
struct Scene {
    std::string what;
    std::string folder;
    Listing before;
    std::set<std::string> contents;
};

class SettleTest : public ::testing::TestWithParam<bool> {
protected:
    SettleTest() { plan_.canExchange = GetParam(); }

    // An item and its kept file as they were seen.
    JournalIntent prepare(const std::string& folder, CleanupAction action)
    {
        JournalIntent intent;
        intent.action = action;
        intent.item = tree_.write(folder + "/item", content);
        intent.kept = tree_.write(folder + "/kept", content);
        intent.itemWas = stampOf(*platform_->files().details(intent.item, Links::asThemselves));
        intent.keptWas = stampOf(*platform_->files().details(intent.kept, Links::asThemselves));
        intent.temporary = native("temp");
        return intent;
    }

    // Puts `what` under the name; "old" and "hard" are names of the item's and of the kept file.
    void place(const std::string& folder, const std::string& name, const std::string& what)
    {
        const std::string path = folder + "/" + name;
        if (what == "old")
            tree_.hardLink(path, folder + "/holder");
        else if (what == "hard")
            tree_.hardLink(path, folder + "/kept");
        else if (what == "symbolic")
            tree_.symlink(path, tree_.path(folder + "/kept"));
        else if (what == "copy")
            tree_.write(path, content);
        else if (what == "part")
            tree_.write(path, content.substr(0, 7));
        else if (what == "zeros")
            tree_.write(path, content.substr(0, 7) + std::string(9, '\0'));
        else if (what == "other")
            tree_.write(path, "somebody's own " + name);
    }

    void arrange(const std::string& folder, const std::map<std::string, std::string>& names, const std::string& kept)
    {
        std::filesystem::rename(tree_.path(folder + "/item"), tree_.path(folder + "/holder"));
        for (const auto& [name, what] : names)
            place(folder, name, what);
        std::filesystem::remove(tree_.path(folder + "/holder"));
        if (kept == "changed")
            std::ofstream(tree_.path(folder + "/kept")) << "written to since";  // the same file
        else if (kept == "gone")
            std::filesystem::remove(tree_.path(folder + "/kept"));
    }

    Scene sceneOf(const std::string& what, const std::string& folder)
    {
        const auto path = tree_.path(folder);
        return {what, folder, listingOf(path), contentsIn(path)};
    }

    std::vector<SettledRun> settle()
    {
        const PassPorts ports{held_, trash_, platform_->files(), platform_->paths(), platform_->clock()};
        return settleUnfinished(journals_, ports).value();
    }

    // What holds whatever was found: no content is lost, what a name leads to is not lost, and a second look changes
    // nothing more.
    void expectNothingLost(const std::vector<Scene>& scenes)
    {
        std::vector<Listing> after;
        for (const Scene& scene : scenes) {
            SCOPED_TRACE(scene.what);
            const auto contents = contentsIn(tree_.path(scene.folder));
            for (const std::string& one : scene.contents) {
                const bool mayGo = content.starts_with(one.substr(0, one.find('\0')));  // a copy that was being made
                EXPECT_TRUE(contents.contains(one) || (mayGo && contents.contains(content))) << "lost: " << one;
            }
            after.push_back(listingOf(tree_.path(scene.folder)));
            const bool led = scene.before.contains("item") && scene.before.at("item") != "leads nowhere";
            const bool leads = after.back().contains("item") && after.back()["item"] != "leads nowhere";
            EXPECT_TRUE(leads || !led);
        }
        settle();
        for (std::size_t i = 0; i < scenes.size(); ++i)
            EXPECT_EQ(listingOf(tree_.path(scenes[i].folder)), after[i]) << scenes[i].what;
    }

    TempTree tree_;
    std::unique_ptr<Platform> platform_ = makePlatform();
    testing::FaultPlan plan_;
    testing::FaultyHeldFiles held_{platform_->heldFiles(), plan_};
    FolderTrash trash_;
    Journals journals_{platform_->files(), platform_->output(), tree_.path("journals")};
};

INSTANTIATE_TEST_SUITE_P(Exchange, SettleTest, ::testing::Bool());

struct Case {
    std::string item, temporary, aside, kept;
    EntryState state;
    std::string itemAfter;  // what its name leads to; the temporary names are free, but for
    std::string left;       // the one of these that is told
};

// The order of a replacement, and what people may do to it before it is settled.
TEST_P(SettleTest, ReplacementsComeToOneEndOrTheOther)
{
    const auto undecided = EntryState::intended;
    std::vector<Case> cases{
        {"old", "", "", "same", EntryState::notDone, content, ""},
        {"old", "hard", "", "same", EntryState::notDone, content, ""},
        {"old", "hard", "old", "same", EntryState::notDone, content, ""},
        {"old", "hard", "", "gone", EntryState::notDone, content, ""},
        {"old", "hard", "", "changed", EntryState::notDone, content, ""},
        {"hard", "", "old", "same", EntryState::done, content, ""},
        {"hard", "old", "", "same", EntryState::done, content, ""},
        {"hard", "", "", "same", EntryState::done, content, ""},
        {"hard", "old", "", "gone", EntryState::done, content, ""},
        {"hard", "old", "", "changed", EntryState::notDone, content, ""},
        {"hard", "", "old", "changed", EntryState::notDone, content, ""},
        {"", "old", "", "same", EntryState::notDone, content, ""},
        {"", "hard", "old", "same", EntryState::notDone, content, ""},
        {"", "hard", "", "same", EntryState::notDone, "", ""},
        {"other", "hard", "old", "same", undecided, "somebody's own item", "temp.old"},
        {"other", "old", "", "same", undecided, "somebody's own item", "temp"},
        {"other", "hard", "", "same", EntryState::notDone, "somebody's own item", ""},
        {"old", "other", "", "same", EntryState::notDone, content, "temp"},
    };
    if (TempTree::canLink()) {
        const std::vector<Case> symbolic{
            {"old", "symbolic", "", "same", EntryState::notDone, content, ""},
            {"old", "symbolic", "old", "gone", EntryState::notDone, content, ""},
            {"symbolic", "old", "", "same", EntryState::done, content, ""},
            {"symbolic", "", "old", "same", EntryState::done, content, ""},
            {"symbolic", "", "", "same", EntryState::done, content, ""},
            {"symbolic", "old", "", "gone", EntryState::notDone, content, ""},
            {"symbolic", "", "old", "gone", EntryState::notDone, content, ""},
            {"symbolic", "old", "", "changed", EntryState::notDone, content, ""},
        };
        cases.insert(cases.end(), symbolic.begin(), symbolic.end());
    }
    std::vector<Scene> scenes;
    {
        const auto writer = std::move(journals_.begin(CleanupAction::link, {}).value());
        for (const Case& one : cases) {
            const std::string folder = "scene" + std::to_string(scenes.size());
            ASSERT_TRUE(writer->intend(prepare(folder, CleanupAction::link)).ok());
            arrange(folder, {{"item", one.item}, {"temp", one.temporary}, {"temp.old", one.aside}}, one.kept);
            scenes.push_back(sceneOf(one.item + "|" + one.temporary + "|" + one.aside + "|" + one.kept, folder));
        }
    }
    const auto told = settle();
    ASSERT_EQ(told.size(), 1U);
    const auto entries = journals_.read(RunNumber{1}).value().entries;
    std::map<std::filesystem::path, std::string> left;
    for (const Unsettled& one : told[0].unsettled)
        left[one.item] = one.left.filename().string();
    EXPECT_EQ(told[0].completed + told[0].takenBack + left.size(), cases.size());
    for (std::size_t i = 0; i < cases.size(); ++i) {
        SCOPED_TRACE(scenes[i].what);
        EXPECT_EQ(entries[i].state, cases[i].state);
        if (cases[i].state == EntryState::done) {
            EXPECT_EQ(entries[i].link, cases[i].item == "hard" ? LinkKind::hard : LinkKind::symbolic);
        }
        Listing now = listingOf(tree_.path(scenes[i].folder));
        EXPECT_EQ(now["item"], cases[i].itemAfter);
        EXPECT_EQ(left[entries[i].intent.item], cases[i].left);
        EXPECT_EQ(now.contains("temp"), cases[i].left == "temp");
        EXPECT_EQ(now.contains("temp.old"), cases[i].left == "temp.old");
    }
    expectNothingLost(scenes);
}

// Also what no way leads to.
TEST_P(SettleTest, NoStateOfAReplacementLosesAnything)
{
    std::vector<std::string> things{"", "old", "hard", "other"};
    if (TempTree::canLink())
        things.push_back("symbolic");
    std::vector<Scene> scenes;
    {
        const auto writer = std::move(journals_.begin(CleanupAction::link, {}).value());
        for (const auto& item : things)
            for (const auto& temporary : things)
                for (const auto& aside : things)
                    for (const std::string kept : {"same", "changed", "gone"}) {
                        const std::string folder = std::to_string(scenes.size());
                        ASSERT_TRUE(writer->intend(prepare(folder, CleanupAction::link)).ok());
                        arrange(folder, {{"item", item}, {"temp", temporary}, {"temp.old", aside}}, kept);
                        scenes.push_back(sceneOf(item + "|" + temporary + "|" + aside + "|" + kept, folder));
                    }
    }
    settle();
    expectNothingLost(scenes);
}

TEST_P(SettleTest, LinksThatWereBeingSplitAreLinksOrCopies)
{
    std::vector<LinkKind> kinds{LinkKind::hard, LinkKind::clone};
    if (TempTree::canLink())
        kinds.push_back(LinkKind::symbolic);
    const std::map<LinkKind, std::string> links{
        {LinkKind::hard, "hard"}, {LinkKind::clone, "old"}, {LinkKind::symbolic, "symbolic"}};
    // What the way of splitting leads through with a kept file that is as it was.
    const std::map<std::string, EntryState> ways{{"link|", EntryState::done},       {"link|part", EntryState::done},
                                                 {"link|zeros", EntryState::done},  {"link|copy", EntryState::done},
                                                 {"copy|link", EntryState::undone}, {"copy|", EntryState::undone},
                                                 {"other|link", EntryState::undone}};
    std::vector<Scene> scenes;
    {
        const auto writer = std::move(journals_.begin(CleanupAction::link, {}).value());
        for (const LinkKind kind : kinds)
            for (const std::string item : {"", "link", "copy", "other"})
                for (const std::string spare : {"", "link", "part", "zeros", "copy", "other"})
                    for (const std::string kept : {"same", "changed", "gone"}) {
                        const std::string folder = std::to_string(scenes.size());
                        const auto entry = writer->intend(prepare(folder, CleanupAction::link)).value();
                        ASSERT_TRUE(writer->finish(entry, EntryState::done, kind));
                        ASSERT_TRUE(writer->intendUndo(entry, native("spare")));
                        const auto real = [&](const std::string& one) { return one == "link" ? links.at(kind) : one; };
                        arrange(folder, {{"item", real(item)}, {"spare", real(spare)}}, kept);
                        scenes.push_back(sceneOf(item + "|" + spare + (kept == "same" ? "" : "|" + kept), folder));
                    }
    }
    settle();
    const auto entries = journals_.read(RunNumber{1}).value().entries;
    for (std::size_t i = 0; i < scenes.size(); ++i) {
        const auto way = ways.find(scenes[i].what);
        if (way == ways.end())
            continue;
        SCOPED_TRACE(scenes[i].what + " of " + links.at(entries[i].link));
        EXPECT_EQ(entries[i].state, way->second);
        EXPECT_FALSE(listingOf(tree_.path(scenes[i].folder)).contains("spare"));
    }
    expectNothingLost(scenes);
}

TEST_P(SettleTest, RemovalsAreDecidedByWhereTheItemIs)
{
    struct Removal {
        bool forGood, inPlace, inTrash;
        EntryState state;      // of a removal
        EntryState undoState;  // of taking one back
        bool told;
    };
    const std::vector<Removal> removals{
        {false, true, false, EntryState::notDone, EntryState::undone, false},
        {false, false, true, EntryState::done, EntryState::done, false},
        {false, false, false, EntryState::done, EntryState::done, true},
        {true, true, false, EntryState::notDone, EntryState::undone, false},
        {true, false, false, EntryState::done, EntryState::undone, false},
    };
    std::vector<std::pair<Removal, bool>> wanted;
    std::vector<std::filesystem::path> trashed;
    {
        const auto writer = std::move(journals_.begin(CleanupAction::recycle, {}).value());
        for (const bool undo : {false, true})
            for (const Removal& one : removals) {
                if (undo && one.forGood)
                    continue;
                const std::string folder = std::to_string(wanted.size());
                auto intent = prepare(folder, one.forGood ? CleanupAction::deletePermanently : CleanupAction::recycle);
                const auto entry = writer->intend(intent).value();
                trashed.push_back(tree_.path(folder + "/trash/item"));
                tree_.write(folder + "/trash/item.note", "");
                ASSERT_TRUE(one.forGood || writer->placing(entry, trashed.back()).ok());
                const bool begun =
                    !undo || (writer->finish(entry, EntryState::done) && writer->intendUndo(entry, {}).ok());
                ASSERT_TRUE(begun);
                if (one.inTrash)
                    std::filesystem::rename(intent.item, trashed.back());
                else if (!one.inPlace)
                    std::filesystem::remove(intent.item);
                wanted.emplace_back(one, undo);
            }
    }
    const auto told = settle();
    ASSERT_EQ(told.size(), 1U);
    const JournalRun run = journals_.read(RunNumber{1}).value();
    EXPECT_TRUE(run.ended);
    std::set<std::filesystem::path> gone;
    for (const Unsettled& one : told[0].unsettled) {
        EXPECT_EQ(one.failure.fault, CleanupFault::gone);
        gone.insert(one.item);
    }
    for (std::size_t i = 0; i < wanted.size(); ++i) {
        SCOPED_TRACE(i);
        const auto& [one, undo] = wanted[i];
        EXPECT_EQ(run.entries[i].state, undo ? one.undoState : one.state);
        EXPECT_EQ(gone.contains(run.entries[i].intent.item), one.told);
        EXPECT_EQ(std::filesystem::exists(trashed[i].string() + ".note"), one.forGood || !one.inPlace);
        EXPECT_TRUE(one.forGood || run.entries[i].trashed == trashed[i]);
    }
    EXPECT_TRUE(settle().empty());
}

// The journal reached its device, and the names did not reach theirs before the power was lost.
TEST_P(SettleTest, WhatIsDoneByTheJournalOnlyIsSettledToo)
{
    struct Behind {
        CleanupAction action;
        LinkKind link;
        std::string item, temporary;
        EntryState state;
    };
    const auto link = CleanupAction::link;
    const std::vector<Behind> cases{
        {link, LinkKind::hard, "old", "", EntryState::notDone},
        {link, LinkKind::hard, "old", "hard", EntryState::notDone},
        {link, LinkKind::hard, "hard", "old", EntryState::done},
        {link, LinkKind::hard, "hard", "", EntryState::done},
        {link, LinkKind::hard, "other", "", EntryState::done},
        {link, LinkKind::clone, "old", "", EntryState::done},
        {CleanupAction::recycle, LinkKind::none, "old", "", EntryState::notDone},
        {CleanupAction::recycle, LinkKind::none, "", "", EntryState::done},
        {CleanupAction::deletePermanently, LinkKind::none, "old", "", EntryState::notDone},
    };
    std::vector<Scene> scenes;
    {
        const auto writer = std::move(journals_.begin(link, {}).value());
        for (const Behind& one : cases) {
            const std::string folder = std::to_string(scenes.size());
            const auto entry = writer->intend(prepare(folder, one.action)).value();
            ASSERT_TRUE(writer->finish(entry, EntryState::done, one.link));
            arrange(folder, {{"item", one.item}, {"temp", one.temporary}}, "same");
            scenes.push_back(sceneOf(one.item + "|" + one.temporary, folder));
        }
    }
    const auto told = settle();
    ASSERT_EQ(told.size(), 1U);
    EXPECT_EQ(told[0].completed, 1U);
    EXPECT_EQ(told[0].takenBack, 4U);
    EXPECT_TRUE(told[0].unsettled.empty());
    const JournalRun run = journals_.read(RunNumber{1}).value();
    EXPECT_TRUE(run.ended && !run.damaged);
    for (std::size_t i = 0; i < cases.size(); ++i) {
        EXPECT_EQ(run.entries[i].state, cases[i].state) << i;
        EXPECT_FALSE(listingOf(tree_.path(scenes[i].folder)).contains("temp")) << i;
    }
    expectNothingLost(scenes);
}

TEST_P(SettleTest, RunsInWorkAreLeftAloneAndOthersEndSilently)
{
    const auto going = std::move(journals_.begin(CleanupAction::link, {}).value());
    ASSERT_TRUE(going->intend(prepare("a", CleanupAction::link)).ok());
    {
        const auto over = std::move(journals_.begin(CleanupAction::link, {}).value());
        const auto entry = over->intend(prepare("b", CleanupAction::link)).value();
        ASSERT_TRUE(over->finish(entry, EntryState::notDone));
    }
    EXPECT_TRUE(settle().empty());
    EXPECT_THAT(journals_.unfinished().value(), ::testing::ElementsAre(RunNumber{1}));
}

// An item whose folder is away with its volume is asked about again, one whose folder was deleted is not.
TEST_P(SettleTest, AnItemWithoutItsFolderIsDecidedOnlyWhereItsVolumeIs)
{
    {
        const auto writer = std::move(journals_.begin(CleanupAction::link, {}).value());
        for (const std::string folder : {"deleted", "away"}) {
            JournalIntent intent = prepare(folder + "/below", CleanupAction::link);
            intent.itemWas.identity.volume += folder == "away" ? 1 : 0;
            ASSERT_TRUE(writer->intend(intent).ok());
            tree_.remove(folder);
        }
    }
    for (const std::size_t unsettled : {2U, 1U}) {
        const auto told = settle();
        ASSERT_EQ(told.size(), 1U);
        EXPECT_EQ(told[0].unsettled.size(), unsettled);
    }
    const auto entries = journals_.read(RunNumber{1}).value().entries;
    EXPECT_EQ(entries[0].state, EntryState::notDone);
    EXPECT_EQ(entries[1].state, EntryState::intended);
}

// Settling is killed or fails anywhere itself, and is settled by the next one.
TEST_P(SettleTest, AnInterruptedSettlingIsSettledAgain)
{
    for (const auto fault : {testing::Fault::once, testing::Fault::killed, testing::Fault::afterwards}) {
        bool struck = true;
        for (int n = 1; struck; ++n) {
            const std::string folder = "f" + std::to_string(static_cast<int>(fault)) + "-" + std::to_string(n);
            std::vector<Scene> scenes;
            {
                const auto writer = std::move(journals_.begin(CleanupAction::link, {}).value());
                for (const std::string kept : {"same", "changed"}) {
                    ASSERT_TRUE(writer->intend(prepare(folder + kept, CleanupAction::link)).ok());
                    arrange(folder + kept, {{"item", "hard"}, {GetParam() ? "temp" : "temp.old", "old"}}, kept);
                    scenes.push_back(sceneOf(kept, folder + kept));
                }
            }
            plan_.fail(fault, n, {ErrorKind::io, 5, "struck"});
            settle();
            struck = plan_.failed();
            SCOPED_TRACE(folder + " " + plan_.struck());
            plan_.fail(testing::Fault::none, 0);
            settle();
            EXPECT_TRUE(journals_.unfinished()->empty());
            for (const Scene& scene : scenes)
                EXPECT_EQ(listingOf(tree_.path(scene.folder)).size(), 2U) << scene.what;
            expectNothingLost(scenes);
        }
    }
}

}  // namespace
}  // namespace kelvane
