#include <gmock/gmock.h>

#include <algorithm>
#include <map>
#include <nlohmann/json.hpp>
#include <set>

#include "base/words.h"
#include "console_run.h"
#include "support/paths.h"
#include "support/temp_tree.h"

namespace kelvane {
namespace {

using nlohmann::json;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using testing::runCli;
using ::testing::StartsWith;
using ::testing::UnorderedElementsAre;
using Names = std::multiset<std::string>;

// Protection keeps out of the temporary folder of some systems; what it does is tested on its own.
class ScanVerb : public ::testing::Test {
protected:
    testing::ConsoleRun scan(Arguments more, const testing::Surroundings& around = {}) const
    {
        Arguments arguments = {"scan", "--no-protect", tree_.path().string()};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return runCli(arguments, around);
    }

    // As a scan shows it.
    std::string root() const { return makePlatform()->paths().comparable(tree_.path().string()); }

    // The groups as sets of paths below the root.
    std::multiset<Names> groups(Arguments more) const
    {
        more.push_back("--json");
        std::multiset<Names> sets;
        const json document = json::parse(scan(more).out);
        for (const auto& group : document.at("groups")) {
            Names names;
            for (const auto& file : group.at("files"))
                names.insert(
                    testing::posix(testing::native(file.at("path").get<std::string>().substr(root().size() + 1))));
            sets.insert(names);
        }
        return sets;
    }

    testing::TempTree tree_;
};

TEST_F(ScanVerb, FindsEveryExactCopyOfAtLeastOneByte)
{
    tree_.write("a", "same");
    tree_.write("sub/b.txt", "same");
    tree_.write("c", "Same");
    tree_.write("d", "longer");
    tree_.write(".hidden/d", "longer");
    tree_.write("empty1", "");
    tree_.write("empty2", "");
    tree_.hardLink("a link", "a");
    if (testing::TempTree::canLink()) {
        tree_.symlink("d link", tree_.path("d"));
        tree_.symlink("sub/loop", tree_.path());
    }
    for (const Arguments& links : {Arguments{}, Arguments{"--follow-links"}}) {
        const auto found = groups(links);
        ASSERT_EQ(found.size(), 2u);
        EXPECT_TRUE(found.count({".hidden/d", "d"}) == 1 || found.count({".hidden/d", "d link"}) == 1);
        EXPECT_TRUE(found.count({"a", "sub/b.txt"}) == 1 || found.count({"a link", "sub/b.txt"}) == 1);
    }
}

TEST_F(ScanVerb, OptionsChooseTheFiles)
{
    tree_.write("a.jpg", "same");
    tree_.write("b.jpg", "same");
    tree_.write("sub/c.txt", "same");
    tree_.write("e1", "");
    tree_.write("e2", "");
    EXPECT_THAT(groups({}), ElementsAre(Names{"a.jpg", "b.jpg", "sub/c.txt"}));
    EXPECT_THAT(groups({"--masks", "jpg"}), ElementsAre(Names{"a.jpg", "b.jpg"}));
    EXPECT_THAT(groups({"--category", "images"}), ElementsAre(Names{"a.jpg", "b.jpg"}));
    EXPECT_THAT(groups({"--no-subfolders"}), ElementsAre(Names{"a.jpg", "b.jpg"}));
    EXPECT_THAT(groups({"--same-type"}), ElementsAre(Names{"a.jpg", "b.jpg"}));
    EXPECT_THAT(groups({"--min-size", "5"}), IsEmpty());
    EXPECT_THAT(groups({"--ignore-small"}), IsEmpty());
    EXPECT_THAT(groups({"--min-size", "0"}),
                UnorderedElementsAre(Names{"a.jpg", "b.jpg", "sub/c.txt"}, Names{"e1", "e2"}));
}

TEST_F(ScanVerb, JsonHoldsDefinitionStatisticsAndGroups)
{
    tree_.write("a", "same");
    tree_.write("b", "same");
    const json document = json::parse(scan({"--json", "--min-size", "2", "--masks", "*"}).out);
    json expected = json::parse(R"({"category": "all", "properties": ["System.Size"], "similarity": 100, "minSize": 2,
        "flags": ["content", "skip-links", "skip-empty", "subfolders"]})");
    expected["roots"] = {{{"path", root()}}};
    json definition = document.at("definition");
    definition.erase("masks");
    EXPECT_EQ(definition, expected);
    json stats = document.at("stats");
    for (const char* phase : {"gathering", "sorting", "comparing"})
        EXPECT_TRUE(stats.at("phases").at(phase).is_number()) << phase;
    EXPECT_TRUE(stats.at("seconds").is_number());
    stats.merge_patch({{"phases", nullptr}, {"seconds", nullptr}});
    EXPECT_EQ(stats, json::parse(R"({"files": 2, "bytes": 8, "groups": 1, "duplicates": 1, "skipped": 0, "bytesRead": 8,
        "filesSeen": 2, "folders": 1, "offlineSkipped": 0, "withoutValue": 0, "comparisons": 1})"));
    const json& group = document.at("groups").at(0);
    EXPECT_EQ(group.at("id"), 1);
    EXPECT_EQ(group.at("approximate"), false);
    const json& file = group.at("files").at(0);
    EXPECT_EQ(file.at("size"), 4);
    EXPECT_THAT(file.at("modified").get<std::string>(), ::testing::MatchesRegex("....-..-..T.*Z"));
}

TEST_F(ScanVerb, ABadRootIsNamedAndTheOthersGoOn)
{
    tree_.write("a", "same");
    tree_.write("b", "same");
    const std::string missing = (std::filesystem::path(root()) / "missing").string();
    const auto run = scan({missing});
    EXPECT_EQ(run.code, ExitCode::incomplete);
    EXPECT_THAT(run.out, StartsWith("Group 1"));
    EXPECT_THAT(run.err, HasSubstr("kelvane-cli: " + missing + ": "));
    const auto twice = scan({tree_.path().string(), "--verbose"});
    EXPECT_EQ(twice.code, ExitCode::done) << "a root inside another one is no fault";
    EXPECT_THAT(twice.err, HasSubstr("is already covered by"));
}

TEST_F(ScanVerb, UnreadableFilesAreCountedAndListedOnRequest)
{
    testing::MemoryPlatform platform;
    for (const char* name : {"/r/a", "/r/b", "/r/locked"})
        platform.memory.addFile(name, "same");
    platform.memory.setHook([](const std::string& operation, const std::string& path) -> std::optional<Error> {
        if (operation == "open" && path == "/r/locked")
            return Error{ErrorKind::accessDenied, 13, "Permission denied"};
        return std::nullopt;
    });
    const auto brief = runCli({"scan", "/r"}, {}, platform);
    EXPECT_EQ(brief.code, ExitCode::incomplete);
    EXPECT_THAT(brief.out, StartsWith("Group 1: 2 files"));
    EXPECT_THAT(brief.err, HasSubstr("1 file or folder could not be read; --verbose lists them"));
    EXPECT_THAT(brief.err, Not(HasSubstr("locked")));
    const auto verbose = runCli({"scan", "/r", "--verbose", "--json"}, {}, platform);
    EXPECT_THAT(verbose.err, HasSubstr("locked: Permission denied\n"));
    EXPECT_EQ(json::parse(verbose.out).at("stats").at("skipped"), 1);
}

TEST_F(ScanVerb, ACancelledScanPrintsNothing)
{
    tree_.write("a", "same");
    tree_.write("b", "same");
    for (const char* format : {"text", "json", "csv", "null"}) {
        const auto run = scan({"--format", format}, {{}, true});
        EXPECT_EQ(run.code, ExitCode::cancelled) << format;
        EXPECT_EQ(run.out, "") << format;
        EXPECT_THAT(run.err, HasSubstr("cancelled")) << format;
    }
}

TEST_F(ScanVerb, GroupsStandApartAndTheSummaryElsewhere)
{
    const auto nothing = scan({});
    EXPECT_EQ(nothing.code, ExitCode::done);
    EXPECT_EQ(nothing.out, "");
    EXPECT_THAT(nothing.err, StartsWith("No duplicates found; 0 files"));
    for (const char* name : {"1a", "2a", "1bb", "2bb"})
        tree_.write(name, name + 1);
    const std::string root = (std::filesystem::path(this->root()) / "").string();
    const auto withoutRoots = [&](std::string text) {
        for (std::size_t at = 0; (at = text.find(root)) != std::string::npos;)
            text.erase(at, root.size() + 1);
        return text;
    };
    const auto text = scan({});
    EXPECT_EQ(withoutRoots(text.out),
              "Group 1: 2 files, 1 byte each\na\na\n\nGroup 2: 2 files, 2 bytes each\nbb\nbb\n");
    EXPECT_THAT(text.err, StartsWith("\n2 duplicates in 2 groups, 3 bytes could be freed; 4 files (6 bytes) in "));
    EXPECT_EQ(withoutRoots(scan({"--format", "null"}).out), std::string("a\0a\0\0bb\0bb\0", 11));
}

TEST_F(ScanVerb, ProgressIsDrawnOnATerminalAndErased)
{
    tree_.write("a", "same");
    tree_.write("b", "same");
    EXPECT_THAT(scan({}).err, Not(HasSubstr("phase 1")));
    EXPECT_THAT(scan({"--progress", "never"}, {80, false}).err, Not(HasSubstr("phase 1")));
    EXPECT_THAT(scan({"--progress", "always"}).err, HasSubstr("phase 1"));
    const std::string drawn = scan({"--json"}, {80, false}).err;
    EXPECT_THAT(drawn, HasSubstr("phase 1"));
    EXPECT_THAT(drawn, ::testing::EndsWith(" \r")) << "the line is wiped at the end";
}

TEST_F(ScanVerb, AFolderMayBeNamedLikeAVerbOrAnOption)
{
    for (const char* name : {"compare/a", "compare/b", "--json/a", "--json/b"})
        tree_.write(name, "same");
    const auto before = std::filesystem::current_path();
    std::filesystem::current_path(tree_.path());
    const auto verb = runCli({"scan", "--no-protect", "compare"});
    const auto option = runCli({"scan", "--no-protect", "--", "--json"});
    std::filesystem::current_path(before);
    EXPECT_THAT(testing::posix(testing::native(verb.out)), HasSubstr("/compare/a\n"));
    EXPECT_THAT(testing::posix(testing::native(option.out)), HasSubstr("/--json/a\n"));
}

}  // namespace
}  // namespace kelvane
