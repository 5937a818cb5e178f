#include <gmock/gmock.h>

#include <nlohmann/json.hpp>

#include "console_run.h"
#include "support/temp_tree.h"

namespace kelvane {
namespace {

using nlohmann::json;
using ::testing::HasSubstr;
using testing::runCli;

class CompareVerb : public ::testing::Test {
protected:
    testing::ConsoleRun compare(const char* a, const char* b, Arguments more) const
    {
        Arguments arguments = {"compare", tree_.path(a).string(), tree_.path(b).string()};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return runCli(arguments);
    }
    json compareJson(const char* a, const char* b, Arguments more) const
    {
        more.push_back("--json");
        return json::parse(compare(a, b, more).out);
    }
    testing::TempTree tree_;
};

TEST_F(CompareVerb, EqualFilesMatchStageByStageInEveryFormat)
{
    tree_.write("a", "same");
    tree_.write("b", "same");
    EXPECT_EQ(compareJson("a", "b", {}), json::parse(R"({"result": 0, "match": true, "approximate": false,
        "sameFile": false, "score": null, "stages": [
        {"stage": 1, "name": "System.Size", "a": 4, "b": 4, "difference": null, "allowed": null, "equal": true},
        {"stage": 2, "name": "content", "a": null, "b": null, "difference": null, "allowed": null, "equal": true}]})"));
    EXPECT_EQ(compare("a", "b", {"--format", "csv"}).out, "stage,name,a,b,difference,allowed,score,equal\r\n"
                                                          "1,System.Size,4,4,,,,true\r\n2,content,,,,,,true\r\n");
    const auto text = compare("a", "b", {});
    EXPECT_EQ(text.code, ExitCode::done);
    EXPECT_EQ(text.out, "A: " + tree_.path("a").string() + "\nB: " + tree_.path("b").string() +
                            "\n\n"
                            "stage  compared     A  B  result\n"
                            "1      System.Size  4  4  equal\n"
                            "2      content            equal\n"
                            "\nThe files match.\n");
}

TEST_F(CompareVerb, TheStageThatPartsIsTheLastOne)
{
    tree_.write("a", "one");
    tree_.write("b", "two");
    tree_.write("c", "three");
    const auto content = compare("a", "b", {});
    EXPECT_EQ(content.code, ExitCode::incomplete);
    EXPECT_THAT(content.out, HasSubstr("part at stage 2."));
    const json size = compareJson("a", "c", {});
    EXPECT_EQ(size.at("result"), 1);
    EXPECT_EQ(size.at("stages").size(), 1u);
}

TEST_F(CompareVerb, HugeFilesSaySoWhenTheyWereSampled)
{
    std::string bytes(24 << 20, 'x');
    tree_.write("a", bytes);
    bytes[(10 << 20) + 1] = 'y';  // just behind the head, before the first sample
    tree_.write("b", bytes);
    EXPECT_EQ(compareJson("a", "b", {}).at("approximate"), true);
    EXPECT_THAT(compare("a", "b", {}).out, HasSubstr("equal (sampled)"));
}

TEST_F(CompareVerb, SimilarValuesShowHowFarTheyAreApart)
{
    tree_.write("a", std::string(1000, 'x'));
    tree_.write("b", std::string(1105, 'x'));
    const json answer = compareJson("a", "b", {"--match", "System.Size", "--similar", "90"});
    EXPECT_EQ(answer.at("match"), true);
    EXPECT_EQ(answer.at("stages").at(0).at("difference"), 9);
    EXPECT_EQ(answer.at("stages").at(0).at("allowed"), 10);
}

// They were read from memory that was freed already.
TEST_F(CompareVerb, TextsThatDifferAreShown)
{
    tree_.write("one name that is long enough for a place of its own", "x");
    tree_.write("another name that is long enough for a place of its own", "x");
    const json stage =
        compareJson("one name that is long enough for a place of its own",
                    "another name that is long enough for a place of its own", {"--match", "System.FileName"})
            .at("stages")
            .at(0);
    EXPECT_EQ(stage.at("a"), "one name that is long enough for a place of its own");
    EXPECT_EQ(stage.at("b"), "another name that is long enough for a place of its own");
}

TEST_F(CompareVerb, ItIsSaidWhatAScanWouldNotEvenCompare)
{
    tree_.write("a.jpg", "same");
    tree_.write("b.txt", "same");
    tree_.hardLink("c.jpg", "a.jpg");
    const auto masked = compare("a.jpg", "b.txt", {"--masks", "jpg", "--min-size", "5"});
    EXPECT_THAT(masked.err, HasSubstr("b.txt: note: a scan with these masks leaves this file out"));
    EXPECT_THAT(masked.err, HasSubstr("a.jpg: note: a scan leaves files of this size out"));
    EXPECT_EQ(compareJson("a.jpg", "c.jpg", {}).at("sameFile"), true);
    EXPECT_THAT(compare("a.jpg", "c.jpg", {}).out, HasSubstr("lead to one file"));
}

TEST_F(CompareVerb, AFileThatCannotBeReadIsNamed)
{
    testing::MemoryPlatform platform;
    platform.memory.addFile("/a", "same");
    platform.memory.addFile("/b", "same");
    platform.memory.setHook([](const std::string& operation, const std::string& path) -> std::optional<Error> {
        if (operation == "open" && path == "/b")
            return Error{ErrorKind::accessDenied, 13, "Permission denied"};
        return std::nullopt;
    });
    const auto run = runCli({"compare", "/a", "/b"}, {}, platform);
    EXPECT_EQ(run.code, ExitCode::usage);
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(run.err, "kelvane-cli: /b: Permission denied\n");
    EXPECT_EQ(runCli({"compare", "/a", "/b", "--match", "System.Size"}, {}, platform).code, ExitCode::done);
}

TEST_F(CompareVerb, CancellingLeavesNothingHalfPrinted)
{
    tree_.write("a", "same");
    tree_.write("b", "same");
    const auto run = runCli({"compare", "--json", tree_.path("a").string(), tree_.path("b").string()}, {{}, true});
    EXPECT_EQ(run.code, ExitCode::cancelled);
    EXPECT_EQ(run.out, "");
}

}  // namespace
}  // namespace kelvane
