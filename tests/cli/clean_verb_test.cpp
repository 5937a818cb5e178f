#include "clean_world.h"

namespace kelvane {
namespace {

using nlohmann::json;
using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::Not;
using testing::runCli;

class CleanVerb : public testing::CleanWorld {
protected:
    void SetUp() override
    {
        if (!makePlatform()->fileOperations().canTrash(tree_.path("in")).ok())
            GTEST_SKIP() << "no trash for the temporary folder, so that plans mark nothing for it";
    }

    testing::ConsoleRun clean(Arguments more)
    {
        more.emplace_back("--dry-run");
        return CleanWorld::clean(more);
    }

    // The marked files below the root, in the order of the plan.
    std::string marked(Arguments more)
    {
        more.emplace_back("--json");
        std::string names;
        const auto run = clean(more);
        if (run.out.empty())
            return run.err;
        const json document = json::parse(run.out);
        for (const json& command : document.at("commands"))
            names += below(command.at("path").get<std::string>()) + ' ';
        return names;
    }
};

TEST_F(CleanVerb, RulesChainInTheOrderOfTheCommandLine)
{
    EXPECT_EQ(marked({"--keep", "oldest"}), "b/1 c/1 b/2 ");
    EXPECT_EQ(marked({"--keep", "newest"}), "a/1 c/1 c/2 ");
    EXPECT_EQ(marked({"--keep", "newest", "--keep", "last"}), "a/1 b/1 c/2 ");
    EXPECT_EQ(marked({"--keep-under", file("in/c"), "--keep", "first"}), "a/1 b/1 b/2 ");
    EXPECT_EQ(marked({"--keep", "biggest", "--keep-under", file("in/c"), "--keep", "first"}), "a/1 b/1 b/2 ");
    EXPECT_EQ(marked({"--keep", "oldest", "--keep-under", file("in/c"), "--keep", "first"}), "b/1 c/1 b/2 ");
    EXPECT_EQ(marked({"--prefer", file("in/a"), "--prefer", file("in/c/"), "--keep", "newest"}), "b/1 c/1 b/2 ");
    EXPECT_EQ(marked({"--keep", "first", "--protect", file("in/c")}), "b/1 ");
}

TEST_F(CleanVerb, FoldersAreNamedAsPeopleNameThem)
{
    const auto before = std::filesystem::current_path();
    std::filesystem::current_path(tree_.path("in/a"));
    const std::string relative = marked({"--keep", "first", "--protect", "../c/."});
    std::filesystem::current_path(before);
    EXPECT_EQ(relative, "b/1 ");
    if (!testing::TempTree::canLink())
        return;
    tree_.symlink("link", tree_.path("in"));
    EXPECT_EQ(marked({"--keep", "first", "--protect", file("link/c")}), "b/1 ") << "a scan by the real name";
    (void)runCli({"scan", "--no-protect", file("link"), "--save", file("one.ikvs")});
    const json linked = json::parse(clean({"--keep", "first", "--protect", file("in/c"), "--json"}).out);
    EXPECT_EQ(linked.at("sums").at("protected"), 2) << "a scan through the link";
    EXPECT_EQ(linked.at("commands").size(), 1u);
}

TEST_F(CleanVerb, PrintsThePlanAndChangesNothing)
{
    const auto run = clean({"--keep", "oldest", "--protect", file("in/b")});
    EXPECT_EQ(run.code, ExitCode::done);
    EXPECT_EQ(below(run.out), "to the trash: c/1 (kept: b/1; frees 4 bytes)\n");
    EXPECT_EQ(run.err, "\n1 file in 1 group would go to the trash; 4 bytes would come free when it is emptied\n"
                       "2 files would be marked, but lie in protected folders\n"
                       "This was a dry run; nothing was changed.\n");
    EXPECT_THAT(clean({"--keep", "oldest", "--delete-permanently"}).out, HasSubstr("delete for good: "));
    EXPECT_THAT(clean({"--keep", "oldest", "--link", "hard"}).out, HasSubstr("hard link: "));
    EXPECT_THAT(clean({"--keep", "oldest", "--link", "symbolic"}).out, HasSubstr("symbolic link: "));
    const json document = json::parse(clean({"--keep", "oldest", "--json", "--link", "hard"}).out);
    EXPECT_EQ(document.at("action"), "link");
    EXPECT_EQ(document.at("sums").at("frees"), 14);
    EXPECT_EQ(document.at("commands").at(0).at("link"), "hard");
    EXPECT_EQ(document.at("commands").at(0).at("ways"), json({"hard"}));
    EXPECT_EQ(document.at("commands").at(0).at("loses"), json({"times"})) << "of b/1, which is younger than a/1";
    EXPECT_THAT(clean({"--keep", "oldest", "--link", "hard", "--no-compare"}).err,
                AllOf(HasSubstr("would lose of their own: times (3)\n"), HasSubstr("nothing will be compared")));
    EXPECT_EQ(tree_.read("in/c/1") + tree_.read("in/b/2"), "samelonger");
}

TEST_F(CleanVerb, RefusesToLoseEveryCopyAndNamesTheGroups)
{
    const auto run = clean({"--keep-under", file("in/a"), "--json"});
    EXPECT_EQ(run.code, ExitCode::usage);
    EXPECT_EQ(json::parse(run.out).at("groupsLost").at(0).at("files").size(), 2u);
    EXPECT_THAT(below(run.err),
                AllOf(HasSubstr("kelvane-cli: Some duplicate groups have all items marked for removal\n"),
                      HasSubstr("--keep first"), HasSubstr(":\nb/2\nc/2\n"), Not(HasSubstr("b/1"))));
    tree_.remove("in/b/2");
    tree_.remove("in/c/1");
    const auto survivors = clean({"--keep-under", file("in/a"), "--json"});
    EXPECT_EQ(survivors.code, ExitCode::incomplete) << "files are gone";
    EXPECT_EQ(json::parse(survivors.out).at("commands").size(), 1u) << "what is left of a group is never marked";
}

TEST_F(CleanVerb, LeavesWhatChangedSinceTheScanAlone)
{
    tree_.write("in/c/1", "something else");
    setTime("in/b/2", 5);
    const auto run = clean({"--keep", "first"});
    EXPECT_EQ(run.code, ExitCode::incomplete);
    EXPECT_EQ(below(run.out), "to the trash: b/1 (kept: a/1; frees 4 bytes)\n"
                              "left alone: c/1: changed since the scan\n"
                              "left alone: c/2: its kept copy changed since the scan\n");
    EXPECT_THAT(run.err, AllOf(HasSubstr("1 file in 1 group would go"), HasSubstr("2 files left alone\n")));
    const json document = json::parse(clean({"--keep", "first", "--json"}).out);
    EXPECT_EQ(document.at("sums").at("frees"), 4);
    EXPECT_EQ(document.at("skipped").at(0).at("why"), "changed");
    EXPECT_EQ(document.at("skipped").at(1).at("why"), "keptChanged");
}

}  // namespace
}  // namespace kelvane
