#include "clean_world.h"

namespace kelvane {
namespace {

using nlohmann::json;
using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::Not;

class CleanRun : public testing::CleanWorld {
protected:
    // Which of the five files are there, and whose names they are: "a1 b1=a1 ..." for links.
    // Its size and time stay.
    void alterUnseen() const
    {
        const auto then = std::filesystem::last_write_time(tree_.path("in/c/1"));
        tree_.write("in/c/1", "SAME");
        std::filesystem::last_write_time(tree_.path("in/c/1"), then);
    }

    [[nodiscard]] std::string state() const
    {
        std::string words;
        const auto named = [](const std::string& name) { return std::string{name[0], name[2]}; };
        const std::array names = {"a/1", "b/1", "c/1", "b/2", "c/2"};
        for (std::size_t at = 0; at < names.size(); ++at) {
            const auto path = tree_.path("in") / names[at];
            if (!exists(path))
                continue;
            words += named(names[at]);
            for (std::size_t before = 0; before < at; ++before) {
                const auto other = tree_.path("in") / names[before];
                if (exists(other) && equivalent(path, other)) {
                    words += "=" + named(names[before]);
                    break;
                }
            }
            words += ' ';
        }
        return words;
    }

    // A person who gives this answer, and what was asked.
    testing::Surroundings person(std::string answer)
    {
        testing::Surroundings around;
        around.answer = [this, answer = std::move(answer)](std::string_view question, CancelFlag& cancel) {
            asked_ += question;
            if (answer == "^C")
                cancel.cancel();
            return answer == "^C" ? std::nullopt : std::optional(answer);
        };
        return around;
    }

    std::string asked_;
};

constexpr const char* untouched = "a1 b1 c1 b2 c2 ";

TEST_F(CleanRun, PutsLinksInThePlaceOfCopiesAndTellsOfEach)
{
    const auto run = clean({"--keep", "oldest", "--link", "hard", "--json"});
    EXPECT_EQ(run.code, ExitCode::done) << run.err;
    EXPECT_EQ(state(), "a1 b1=a1 c1=a1 b2 c2=b2 ");
    const json document = json::parse(run.out);
    EXPECT_EQ(document.at("dryRun"), false);
    EXPECT_EQ(document.at("run"), 1);
    EXPECT_EQ(document.at("action"), "link");
    EXPECT_EQ(document.at("sums").at("done"), 3);
    EXPECT_EQ(document.at("sums").at("freed"), 14);
    const json first = document.at("items").at(0);
    EXPECT_EQ(below(first.at("path")), "b/1");
    EXPECT_EQ(below(first.at("kept").at("path")), "a/1");
    EXPECT_EQ(first.at("result"), "done");
    EXPECT_EQ(first.at("link"), "hard");
    const auto again = clean({"--keep", "oldest", "--link", "hard"});
    EXPECT_EQ(again.code, ExitCode::incomplete) << "the list is older than the links";
    EXPECT_EQ(state(), "a1 b1=a1 c1=a1 b2 c2=b2 ");
}

TEST_F(CleanRun, SaysWhatWentAndHowToTakeItBack)
{
    const auto run = clean({"--keep", "oldest", "--link", "hard", "--verbose"});
    EXPECT_EQ(below(run.out), "hard link: b/1 (kept: a/1; frees 4 bytes)\n"
                              "hard link: c/1 (kept: a/1; frees 4 bytes)\n"
                              "hard link: b/2 (kept: c/2; frees 6 bytes)\n");
    EXPECT_EQ(run.err, "3 files replaced by links, 14 bytes freed\n"
                       "This was run 1; 'kelvane-cli undo 1' takes it back.\n");
}

TEST_F(CleanRun, AsksFirstAndTakesOnlyYesForYes)
{
    for (const char* no : {"", "n", "no", "yo", "^C"}) {
        const auto run = clean({"--keep", "oldest", "--link", "hard"}, person(no));
        EXPECT_EQ(run.code, ExitCode::cancelled) << no;
        EXPECT_THAT(run.err, AllOf(HasSubstr("3 files in 2 groups would become links"), HasSubstr("Go on? [y/N]")));
        EXPECT_EQ(state(), untouched) << no;
    }
    asked_.clear();
    EXPECT_EQ(clean({"--keep", "oldest", "--link", "hard", "--yes"}, person("n")).code, ExitCode::done);
    EXPECT_EQ(asked_, "");
    EXPECT_EQ(state(), "a1 b1=a1 c1=a1 b2 c2=b2 ");
}

TEST_F(CleanRun, DeletesForGoodOnlyWhenAPersonSaysSo)
{
    const auto refused = clean({"--keep", "oldest", "--delete-permanently"});
    EXPECT_EQ(refused.code, ExitCode::usage);
    EXPECT_THAT(refused.err, HasSubstr("--yes says that it is meant"));
    EXPECT_EQ(state(), untouched);
    const auto run = clean({"--keep", "oldest", "--delete-permanently"}, person("Y"));
    EXPECT_EQ(run.code, ExitCode::done);
    EXPECT_EQ(state(), "a1 c2 ");
    EXPECT_THAT(run.err, AllOf(HasSubstr("3 files deleted for good, 14 bytes freed\n"),
                               HasSubstr("cannot be taken back"), Not(HasSubstr("undo"))));
}

TEST_F(CleanRun, WhatIsNotAsItWasStaysAndTheRestGoes)
{
    const auto then = std::filesystem::last_write_time(tree_.path("in/c/1"));
    tree_.write("in/c/1", "SAME");
    std::filesystem::last_write_time(tree_.path("in/c/1"), then);
    tree_.write("in/c/2", "changed");
    const auto run = clean({"--keep", "oldest", "--link", "hard", "--json"});
    EXPECT_EQ(run.code, ExitCode::incomplete);
    EXPECT_EQ(state(), "a1 b1=a1 c1 b2 c2 ");
    EXPECT_EQ(tree_.read("in/c/1") + tree_.read("in/c/2"), "SAMEchanged");
    const json items = json::parse(run.out).at("items");
    EXPECT_EQ(items.at(0).at("result"), "done");
    EXPECT_EQ(items.at(1).at("why"), "different") << "time and size are those that the scan saw";
    EXPECT_EQ(items.at(2).at("why"), "keptChanged");
}

TEST_F(CleanRun, AFileThatOnlyLooksEqualDoesNotGoForGood)
{
    alterUnseen();
    EXPECT_EQ(clean({"--keep", "oldest", "--delete-permanently", "--yes"}).code, ExitCode::incomplete);
    EXPECT_EQ(state(), "a1 c1 c2 ");
}

TEST_F(CleanRun, WithoutTheComparisonAFileThatOnlyLooksEqualGoes)
{
    alterUnseen();
    const auto run = clean({"--keep", "oldest", "--link", "hard", "--no-compare", "--progress", "always"});
    EXPECT_EQ(run.code, ExitCode::done);
    EXPECT_THAT(run.err, HasSubstr("putting links in place, 1 of 3 files"));
    EXPECT_EQ(state(), "a1 b1=a1 c1=a1 b2 c2=b2 ");
}

TEST_F(CleanRun, CtrlCBeforeTheFirstFileLeavesAllAlone)
{
    testing::Surroundings around;
    around.cancelled = true;
    EXPECT_EQ(clean({"--keep", "oldest"}, around).code, ExitCode::cancelled);
    EXPECT_EQ(state(), untouched);
}

TEST_F(CleanRun, LogsWhereItIsToldAndReplacesNothingButLogs)
{
    tree_.write("precious", "text");
    EXPECT_EQ(clean({"--keep", "oldest", "--log", file("precious")}).code, ExitCode::usage);
    EXPECT_EQ(clean({"--keep", "oldest", "--log", file("none/log")}).code, ExitCode::usage);
    EXPECT_EQ(tree_.read("precious") + state(), std::string("text") + untouched);
    for (const char* kind : {"hard", "symbolic"}) {
        const auto run = clean({"--keep", "oldest", "--link", kind, "--log", file("log")});
        EXPECT_THAT(run.err, HasSubstr("Log: "));
        EXPECT_THAT(tree_.read("log"), AllOf(HasSubstr("\xEF\xBB\xBF***"), HasSubstr("FILES HANDLED ----"))) << kind;
    }
}

TEST_F(CleanRun, DoesNothingWithoutAJournal)
{
    tree_.write("own/state", "a file where the folder of journals would be");
    const auto run = clean({"--keep", "oldest", "--link", "hard"});
    EXPECT_EQ(run.code, ExitCode::incomplete);
    EXPECT_THAT(run.err, HasSubstr("the journal of clean-ups cannot be written"));
    EXPECT_EQ(state(), untouched);
}

}  // namespace
}  // namespace kelvane
