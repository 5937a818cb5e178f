#include <gmock/gmock.h>

#include <nlohmann/json.hpp>

#include "cleanup/journal.h"
#include "console_run.h"
#include "support/paths.h"
#include "support/temp_tree.h"

namespace kelvane {
namespace {

namespace fs = std::filesystem;
using nlohmann::json;
using ::testing::AllOf;
using ::testing::HasSubstr;

// Runs of hard links and of deletions for good, written by the journal as the clean-up does.
class UndoVerb : public ::testing::Test {
protected:
    UndoVerb()
    {
        platform_.ownPlaces = testing::FakePlaces(tree_.path("home"));
        for (const char* name : {"k", "a", "b", "c", "d"})
            tree_.write(name, "equal");
    }

    RunNumber run(CleanupAction action, const std::vector<std::string>& items, EntryState last = EntryState::done)
    {
        Journals journals(platform_.files(), platform_.output(), journalFolder(platform_.ownPlaces.state));
        auto writer = journals.begin(action, {133'000'000'000'000'000});
        EXPECT_TRUE(writer);
        for (const std::string& item : items)
            carryOut(**writer, action, item, &item == &items.back() ? last : EntryState::done);
        if (last != EntryState::intended) {
            EXPECT_TRUE((*writer)->end());
        }
        return (*writer)->number();
    }

    testing::ConsoleRun undo(Arguments more, const testing::Surroundings& around = {})
    {
        more.insert(more.begin(), "undo");
        return runCli(more, around, platform_);
    }

    [[nodiscard]] std::string file(std::string_view name) const { return tree_.path(name).string(); }
    [[nodiscard]] bool isLink(const char* name) const { return fs::equivalent(tree_.path(name), tree_.path("k")); }

    testing::TempTree tree_;
    testing::QuietPlatform platform_;

private:
    void carryOut(JournalWriter& writer, CleanupAction action, const std::string& item, EntryState state)
    {
        const auto stamp = [&](const fs::path& path) {
            return stampOf(platform_.files().details(path, Links::asThemselves).value());
        };
        const fs::path path = tree_.path(item);
        const fs::path kept = tree_.path("k");
        const auto entry =
            writer.intend({action, path, stamp(path), kept, stamp(kept), testing::native(item + "~"), FileMetadata{}});
        ASSERT_TRUE(entry);
        if (state == EntryState::intended)
            return;
        fs::remove(path);
        if (action == CleanupAction::link)
            fs::create_hard_link(kept, path);
        ASSERT_TRUE(writer.finish(*entry, state, action == CleanupAction::link ? LinkKind::hard : LinkKind::none, {}));
    }
};

TEST_F(UndoVerb, TakesTheLatestRunBackOfWhichAnythingIsLeft)
{
    EXPECT_EQ(undo({}).code, ExitCode::incomplete);
    EXPECT_TRUE(json::parse(undo({"--json"}).out).at("run").is_null());
    (void)run(CleanupAction::link, {"a", "b"});
    (void)run(CleanupAction::link, {"c"});
    (void)run(CleanupAction::deletePermanently, {"d"});
    const auto foreseen = undo({"--dry-run"});
    EXPECT_EQ(foreseen.out, "would come back: " + file("c") + "\n");
    EXPECT_THAT(foreseen.err, HasSubstr("dry run; nothing was changed"));
    EXPECT_TRUE(isLink("c"));
    const auto last = undo({});
    EXPECT_EQ(last.code, ExitCode::done) << last.err;
    EXPECT_EQ(last.out, "back: " + file("c") + "\n");
    EXPECT_EQ(last.err, "run 2: 1 file back (5 bytes)\n");
    EXPECT_TRUE(!isLink("c") && isLink("a"));
    tree_.remove("a");
    tree_.write("a", "new");
    const json first = json::parse(undo({"--json"}).out);
    EXPECT_EQ(first.at("run"), 1);
    EXPECT_EQ(first.at("restored"), 1);
    EXPECT_EQ(first.at("failed"), 1);
    EXPECT_EQ(first.at("bytes"), 5);
    EXPECT_EQ(first.at("items").at(0).at("path"), file("b"));
    EXPECT_EQ(first.at("items").at(0).at("link"), "hard");
    EXPECT_EQ(first.at("items").at(1).at("restored"), false);
    EXPECT_EQ(first.at("items").at(1).at("why"), "placeTaken");
    EXPECT_EQ(tree_.read("a"), "new");
    const auto again = undo({"2"});
    EXPECT_EQ(again.code, ExitCode::incomplete);
    EXPECT_THAT(again.err, HasSubstr("nothing to take back"));
    const auto forGood = undo({"3"});
    EXPECT_EQ(forGood.code, ExitCode::incomplete);
    EXPECT_EQ(forGood.out, "left alone: " + file("d") + ": it was deleted for good\n");
}

TEST_F(UndoVerb, TakesSingleItemsBackByAnyNameOfTheirFolder)
{
    (void)run(CleanupAction::link, {"a", "b", "c"});
    (void)run(CleanupAction::link, {"d"});
    if (testing::TempTree::canLink()) {
        tree_.symlink("other", tree_.path());
        EXPECT_EQ(undo({"--item", file("other/a")}).out, "back: " + file("a") + "\n");
    }
    const auto before = fs::current_path();
    fs::current_path(tree_.path("home"));
    const auto two = undo({"--item", "../b", "--item", "../elsewhere"});
    fs::current_path(before);
    EXPECT_EQ(two.code, ExitCode::incomplete);
    EXPECT_EQ(two.out, "back: " + file("b") + "\n");
    EXPECT_THAT(two.err, HasSubstr("../elsewhere: no run"));
    EXPECT_TRUE(isLink("c") && isLink("d"));
    EXPECT_EQ(undo({"2", "--item", file("c")}).code, ExitCode::incomplete);
    EXPECT_TRUE(isLink("c"));
}

TEST_F(UndoVerb, ListsTheRunsAndSettlesBeforeItActs)
{
    (void)run(CleanupAction::link, {"a", "b"});
    EXPECT_EQ(undo({"1", "--item", file("a")}).code, ExitCode::done);
    (void)run(CleanupAction::link, {"c", "d"}, EntryState::intended);
    const auto list = undo({"--list"});
    EXPECT_EQ(list.code, ExitCode::done);
    EXPECT_EQ(list.out, "run 1: 2022-06-18T04:26:40Z, links, 2 files; taken back: 1\n"
                        "run 2: 2022-06-18T04:26:40Z, links, 1 file; taken back: 0; undecided: 1\n");
    const json runs = json::parse(undo({"--list", "--json"}).out).at("runs");
    EXPECT_EQ(runs.at(0).at("undone"), 1);
    EXPECT_EQ(runs.at(1).at("undecided"), 1);
    const auto settled = undo({});
    EXPECT_EQ(settled.code, ExitCode::done);
    EXPECT_THAT(settled.err,
                AllOf(HasSubstr("run 2 was interrupted; of what was half done, 0 completed and 1 taken back\n"),
                      HasSubstr("run 2: 1 file back")));
    EXPECT_FALSE(isLink("c"));
}

TEST_F(UndoVerb, RefusesWhatItDoesNotUnderstandAndStopsWhenCancelled)
{
    (void)run(CleanupAction::link, {"a"});
    for (const Arguments& wrong :
         {Arguments{"7"}, {"x"}, {"1", "2"}, {"--list", "--dry-run"}, {"--format", "csv"}, {"0"}, {"7", "--list"}})
        EXPECT_EQ(undo(wrong).code, ExitCode::usage) << wrong.front();
    EXPECT_THAT(undo({"7"}).err, HasSubstr("there is no run of number 7"));
    testing::Surroundings pressed;
    pressed.cancelled = true;
    EXPECT_EQ(undo({}, pressed).code, ExitCode::cancelled);
    EXPECT_TRUE(isLink("a"));
    Journals journals(platform_.files(), platform_.output(), journalFolder(platform_.ownPlaces.state));
    const auto held = journals.reopen(RunNumber{1});
    ASSERT_TRUE(held);
    const auto busy = undo({"1"});
    EXPECT_EQ(busy.code, ExitCode::incomplete);
    EXPECT_THAT(busy.err, HasSubstr("another process works on it"));
}

TEST_F(UndoVerb, WhatADamagedJournalHasLostIsSaid)
{
    (void)run(CleanupAction::link, {"a", "b"});
    const fs::path folder = journalFolder(platform_.ownPlaces.state);
    for (const auto& entry : fs::directory_iterator(folder))
        if (entry.path().extension() == ".kvrun")
            fs::resize_file(entry.path(), fs::file_size(entry.path()) - 3);
    for (const Arguments& how : {Arguments{"--dry-run"}, Arguments{}}) {
        const auto undone = undo(how);
        EXPECT_EQ(undone.code, ExitCode::incomplete);
        EXPECT_THAT(undone.err, HasSubstr("damaged"));
    }
    EXPECT_FALSE(isLink("a"));
}

}  // namespace
}  // namespace kelvane
