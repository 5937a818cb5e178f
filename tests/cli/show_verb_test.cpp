#include "base/words.h"
#include "saved_scan_world.h"

namespace kelvane {
namespace {

using nlohmann::json;
using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::StartsWith;
using ::testing::UnorderedElementsAre;

class ShowVerb : public testing::SavedScanWorld {
protected:
    ShowVerb()
    {
        tree_.write("in/a.txt", "same");
        tree_.write("in/b.txt", "same");
        tree_.write("in/sub/long.txt", "longer");
        tree_.write("in/z.txt", "longer");
    }
};

TEST_F(ShowVerb, SavesOverAnEarlierScanAndOverNothingElse)
{
    EXPECT_THAT(save("one.ikvs").err, HasSubstr(": 2 groups saved to " + file("one.ikvs")));
    const std::string kept = tree_.read("one.ikvs");
    EXPECT_EQ(save("one.ikvs").code, ExitCode::done);
    tree_.write("mine.txt", "dear");
    EXPECT_EQ(save("mine.txt").code, ExitCode::usage);
    EXPECT_EQ(tree_.read("mine.txt"), "dear");
    EXPECT_EQ(save("mine.txt", {"--overwrite"}).code, ExitCode::done);
    EXPECT_THAT(tree_.read("mine.txt"), StartsWith("IKV1"));
    const auto nothing = save("one.ikvs", {"--min-size", "1G"});
    EXPECT_EQ(nothing.code, ExitCode::done);
    EXPECT_THAT(nothing.err, HasSubstr(": nothing was saved, since nothing was found\n"));
    EXPECT_EQ(tree_.read("one.ikvs").size(), kept.size()) << "the file that was there stays";
}

TEST_F(ShowVerb, TellsOfFilesThatAreGone)
{
    (void)save("one.ikvs");
    tree_.remove("in/b.txt");
    const auto run = show("one.ikvs");
    EXPECT_EQ(run.code, ExitCode::incomplete);
    EXPECT_THAT(run.err, HasSubstr("one.ikvs: Some items could not be located (1 of 4)\n"));
    EXPECT_THAT(below(run.out), StartsWith("Group 1: 1 file, 4 bytes\na.txt\n\nGroup 2"));
    tree_.remove("in");
    const auto none = show("one.ikvs");
    EXPECT_EQ(none.code, ExitCode::usage);
    EXPECT_THAT(none.err, HasSubstr("one.ikvs: Error reading and/or corrupt contents file: none of its files (4)"));
    tree_.write("in/new.txt", "new");
    tree_.write("in/newer.txt", "new");
    (void)save("two.ikvs");
    const auto since = show("two.ikvs", {"--since", file("one.ikvs")});
    EXPECT_EQ(since.code, ExitCode::done) << "the earlier scan is asked as a record";
    EXPECT_THAT(below(since.out), AllOf(HasSubstr("+ new.txt\n"), HasSubstr("+ newer.txt\n")));
}

TEST_F(ShowVerb, CountsWithoutListing)
{
    (void)save("one.ikvs");
    const auto text = show("one.ikvs", {"--summary"});
    EXPECT_THAT(text.out, StartsWith("2 duplicates in 2 groups, 10 bytes could be freed; 4 files (20 bytes) in "));
    EXPECT_THAT(text.out, HasSubstr("\nSearched in "));
    EXPECT_EQ(text.err, "");
    EXPECT_EQ(show("one.ikvs", {"--summary", "--format", "csv"}).out, "groups,files,duplicates,freed\r\n2,4,2,10\r\n");
    const json document = json::parse(show("one.ikvs", {"--summary", "--json"}).out);
    EXPECT_EQ(document.at("stats").at("groups"), 2);
    EXPECT_FALSE(document.contains("groups"));
}

TEST_F(ShowVerb, AFlatListKeepsTheNumbersOfGroups)
{
    (void)save("one.ikvs");
    EXPECT_THAT(splitWords(below(show("one.ikvs", {"--ungrouped"}).out), '\n'),
                UnorderedElementsAre("1  a.txt", "1  b.txt", "2  z.txt", "2  sub/long.txt"));
    const std::string names = below(show("one.ikvs", {"--ungrouped", "--format", "null"}).out);
    EXPECT_THAT(splitWords(names, '\0'), UnorderedElementsAre("a.txt", "b.txt", "z.txt", "sub/long.txt"));
    const json document = json::parse(show("one.ikvs", {"--ungrouped", "--json"}).out);
    EXPECT_FALSE(document.contains("groups"));
    ASSERT_EQ(document.at("files").size(), 4u);
    EXPECT_EQ(document.at("files").at(2).at("group"), 2);
    EXPECT_EQ(document.at("stats").at("duplicates"), 2);
}

TEST_F(ShowVerb, FindsTheGroupOfAFileHoweverItIsNamed)
{
    (void)save("one.ikvs");
    tree_.hardLink("other name", "in/z.txt");
    const auto expected = StartsWith("Group 2: 2 files, 6 bytes each\n");
    const auto before = std::filesystem::current_path();
    std::filesystem::current_path(tree_.path("in/sub"));
    const std::string relative = below(show("one.ikvs", {"--groups-of", "../sub/./long.txt"}).out);
    std::filesystem::current_path(before);
    EXPECT_THAT(relative, expected);
    EXPECT_THAT(show("one.ikvs", {"--groups-of", file("other name")}).out, expected);
    const auto none = show("one.ikvs", {"--groups-of", file("one.ikvs")});
    EXPECT_EQ(none.code, ExitCode::incomplete);
    EXPECT_EQ(none.out, "");
    EXPECT_THAT(none.err, HasSubstr("one.ikvs: is in no group of "));
    EXPECT_THAT(none.err, Not(HasSubstr("No duplicates found")));
}

TEST_F(ShowVerb, MarksWhatIsNewSinceAnEarlierScan)
{
    (void)save("old.ikvs");
    EXPECT_EQ(show("old.ikvs", {"--since", file("old.ikvs")}).out, "");
    tree_.write("in/c.txt", "same");
    (void)save("new.ikvs");
    EXPECT_THAT(
        below(show("new.ikvs", {"--since", file("old.ikvs")}).out),
        AllOf(StartsWith("Group 1: 3 files, 4 bytes each\n"), HasSubstr("\n  a.txt\n"), HasSubstr("\n+ c.txt\n")));
    const json document = json::parse(show("new.ikvs", {"--since", file("old.ikvs"), "--json"}).out);
    for (const json& entry : document.at("groups").at(0).at("files"))
        EXPECT_EQ(entry.at("new"), entry.at("path").get<std::string>().ends_with("c.txt"));
    EXPECT_THAT(show("new.ikvs", {"--since", file("old.ikvs"), "--format", "csv"}).out,
                StartsWith("group,approximate,size,modified,path,path_bytes,new\r\n1,false,4,"));
    const auto damaged = show("new.ikvs", {"--since", file("in/a.txt")});
    EXPECT_EQ(damaged.code, ExitCode::usage);
    EXPECT_THAT(damaged.out, IsEmpty());
}

TEST_F(ShowVerb, UnknownWordsAreNamedWithTheChoices)
{
    (void)save("one.ikvs");
    const std::pair<Arguments, std::string> table[] = {
        {{"show", "--sort", "sise"}, "unknown sort key \"sise\" (did you mean size?); known: size, name, path, "},
        {{"show", "--columns", "System.Siz"}, "unknown property \"System.Siz\" (did you mean System.Size"},
        {{"show", "--all-columns"}, "--all-columns needs --filter"},
        {{"show", "--columns", "System.Size", "--format", "null"}, "--columns and --format null exclude each other"},
        {{"clean", "--dry-run"}, "clean needs a rule"},
        {{"clean", "--dry-run", "--keep", "bigest"},
         "unknown rule \"bigest\" (did you mean biggest?); known: biggest, "},
        {{"clean", "--dry-run", "--keep", "first", "--link", "soft"}, "known: hard, symbolic, clone, auto"},
        {{"clean", "--dry-run", "--keep", "first", "--link", "hard", "--delete"}, "--delete and --link exclude"},
        {{"clean", "--dry-run", "--keep", "first", "--protect", file("none")}, "/none: "},
    };
    for (auto [arguments, message] : table) {
        arguments.insert(arguments.begin() + 1, file("one.ikvs"));
        const auto run = testing::runCli(arguments);
        EXPECT_EQ(run.code, ExitCode::usage) << message;
        EXPECT_EQ(run.out, "") << message;
        EXPECT_THAT(testing::posix(testing::native(run.err)), HasSubstr(message));
    }
}

}  // namespace
}  // namespace kelvane
