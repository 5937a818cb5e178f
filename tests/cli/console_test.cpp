#include "cli/console.h"

#include <gmock/gmock.h>

#include "console_run.h"
#include "support/temp_tree.h"

namespace kelvane {
namespace {

using ::testing::AllOf;
using ::testing::HasSubstr;
using testing::runCli;
using ::testing::StartsWith;

TEST(Console, HelpIsAResultAndForgettingTheVerbAnError)
{
    const auto asked = runCli({"--help"});
    EXPECT_EQ(asked.code, ExitCode::done);
    EXPECT_THAT(asked.out, AllOf(HasSubstr("scan "), HasSubstr("compare "), HasSubstr("describe "), HasSubstr("130")));
    EXPECT_EQ(asked.err, "");
    const auto forgotten = runCli({});
    EXPECT_EQ(forgotten.code, ExitCode::usage);
    EXPECT_EQ(forgotten.err, asked.out);
    EXPECT_EQ(forgotten.out, "");
    EXPECT_THAT(runCli({"--version"}).out, StartsWith("kelvane-cli 0."));
}

TEST(Console, EveryVerbHelpsInPlainAscii)
{
    for (const char* verb : {"scan", "compare", "describe"}) {
        const auto help = runCli({verb, "--help"});
        EXPECT_EQ(help.code, ExitCode::done) << verb;
        EXPECT_THAT(help.out, AllOf(HasSubstr("Usage: kelvane-cli " + std::string(verb)), HasSubstr("Examples:"),
                                    HasSubstr("--format"), HasSubstr("Exit codes:")));
        EXPECT_TRUE(std::all_of(help.out.begin(), help.out.end(), [](char c) { return c > 0; })) << verb;
    }
}

struct BadInput {
    Arguments arguments;
    const char* message;
};

TEST(Console, BadInputIsNamedWithWhatMayHaveBeenMeant)
{
    const testing::TempTree tree;
    const std::string root = tree.path().string();
    const std::string file = tree.write("a", "x").string();
    const BadInput table[] = {
        {{"scna", root}, "unknown verb \"scna\" (did you mean scan?); known: scan, compare, describe"},
        {{"clean", root}, "unknown verb \"clean\""},
        {{"--json"}, "unknown option \"--json\""},
        {{"scan"}, "scan needs a folder"},
        {{"scan", "--matches=System.Size", root}, "unknown option \"--matches\" (did you mean --match"},
        {{"scan", "-x", root}, "unknown option \"-x\""},
        {{"scan", root, "--category", "image"}, "did you mean images?"},
        {{"scan", root, "--match", "System.Sise"}, "unknown property \"System.Sise\" (did you mean System.Size"},
        {{"scan", root, "--match", "size"}, "describe --list"},
        {{"scan", root, "--masks="}, "--masks"},
        {{"scan", root, "--threads"}, "--threads"},
        {{"scan", root, "--similar", "80"}, "similar contents cannot be compared for All file types"},
        {{"compare", file, file, "--similar", "80", "--category", "documents"}, "cannot be compared for Documents"},
        {{"scan", root, "--settings", "x.ini"}, "--settings is not built yet"},
        {{"scan", root + "/none"}, "/none: "},
        {{"scan", ""}, "an empty name"},
        {{"compare", file}, "compare needs two files"},
        {{"compare", file, file, file}, "compare needs two files"},
        {{"compare", file, root}, "is a folder"},
        {{"compare", file, root + "/none"}, "/none: "},
        {{"compare", file, file, "--format", "null"}, "text, json or csv"},
        {{"describe"}, "describe needs one file"},
        {{"describe", root + "/none"}, "/none: "},
        {{"describe", file, "--as", "text"}, "describe --as text is not built yet"},
        {{"describe", file, "--format", "csv"}, "text or json"},
    };
    for (const BadInput& row : table) {
        const auto run = runCli(row.arguments);
        const std::string line = ::testing::PrintToString(row.arguments);
        EXPECT_EQ(run.code, ExitCode::usage) << line;
        EXPECT_EQ(run.out, "") << line;
        EXPECT_THAT(run.err, AllOf(StartsWith("kelvane-cli: "), HasSubstr(row.message))) << line;
    }
}

TEST(Console, WhatIsNeitherFileNorFolderIsRefused)
{
    testing::MemoryPlatform platform;
    platform.memory.addFile("/a", "x");
    platform.memory.addOther("/socket");
    for (const Arguments& arguments : {Arguments{"compare", "/a", "/socket"}, Arguments{"describe", "/socket"}}) {
        const auto run = runCli(arguments, {}, platform);
        EXPECT_EQ(run.code, ExitCode::usage);
        EXPECT_THAT(run.err, StartsWith("kelvane-cli: /socket: "));
        EXPECT_EQ(run.out, "");
    }
}

TEST(Console, MessagesCannotDisturbTheTerminal)
{
    EXPECT_THAT(runCli({"\x1b[31mred\n"}).err, HasSubstr("unknown verb \"\\x1b[31mred\\n\""));
}

class BadOutput : public ::testing::Test {
protected:
    ExitCode runInto(std::ostream& out, const Arguments& arguments, std::error_code failure)
    {
        const auto platform = makePlatform();
        const CancelFlag cancel;
        return runConsole(arguments, *platform, {out, err_, cancel, {}, [failure] { return failure; }});
    }
    // A stream whose first flush fails.
    struct Failing final : std::stringbuf {
        int sync() override { return -1; }
    };
    std::ostringstream err_;
};

TEST_F(BadOutput, AFullDeviceIsReported)
{
    Failing buffer;
    std::ostream out(&buffer);
    EXPECT_EQ(runInto(out, {"--help"}, make_error_code(std::errc::no_space_on_device)), ExitCode::incomplete);
    EXPECT_THAT(err_.str(), HasSubstr("cannot write the results: No space left on device"));
}

TEST_F(BadOutput, AReaderThatLeavesEarlyIsNoFailure)
{
    Failing buffer;
    std::ostream out(&buffer);
    EXPECT_EQ(runInto(out, {"--help"}, make_error_code(std::errc::broken_pipe)), ExitCode::done);
    EXPECT_EQ(err_.str(), "");
}

}  // namespace
}  // namespace kelvane
