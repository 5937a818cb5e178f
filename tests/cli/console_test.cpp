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
    const auto forgotten = runCli({});
    EXPECT_EQ(forgotten.code, ExitCode::usage);
    EXPECT_EQ(forgotten.err, asked.out);
    EXPECT_EQ(forgotten.out + asked.err, "");
    for (const std::string verb : {"scan", "compare", "describe"})
        EXPECT_THAT(runCli({verb, "--help"}).out,
                    AllOf(HasSubstr("Usage: kelvane-cli " + verb), HasSubstr("Examples:")));
    EXPECT_THAT(runCli({"--version"}).out, StartsWith("kelvane-cli 0."));
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
        {{"scna", root},
         "unknown verb \"scna\" (did you mean scan?); known: scan, show, export, clean, undo, compare, describe"},
        {{"\x1b[31mred\n"}, "unknown verb \"\\x1b[31mred\\n\""},
        {{"--json"}, "unknown option \"--json\""},
        {{"scan"}, "scan needs a folder"},
        {{"scan", "--matches=System.Size", root}, "unknown option \"--matches\" (did you mean --match"},
        {{"scan", "-x", root}, "unknown option \"-x\""},
        {{"scan", root, "--category", "image"}, "did you mean images?"},
        {{"scan", root, "--match", "System.Sise"}, "unknown property \"System.Sise\" (did you mean System.Size"},
        {{"scan", root, "--match", "size"}, "describe --list"},
        {{"scan", root, "--masks="}, "--masks"},
        {{"scan", root, "--masks", " , "}, "--masks"},
        {{"scan", root, "--threads"}, "--threads"},
        {{"scan", root, "--threads", "0"}, "--threads takes"},
        {{"scan", root, "--threads", "257"}, "--threads takes"},
        {{"scan", root, "--threads", "99999999999999999999"}, "--threads takes"},
        {{"scan", root, "--similar", "0"}, "--similar takes"},
        {{"scan", root, "--similar", "101"}, "--similar takes"},
        {{"scan", root, "--similar", "9x"}, "--similar takes"},
        {{"scan", root, "--min-size", "many"}, "--min-size takes"},
        {{"scan", root, "--format", "jsn"}, "did you mean json?"},
        {{"scan", root, "--format", "csv", "--json"}, "exclude"},
        {{"scan", root, "--progress", "on"}, "known: auto, always, never"},
        {{"scan", root, "--no-content"}, "--match"},
        {{"scan", root, "--content", "--no-content"}, "exclude"},
        {{"scan", root, "--similar", "80"}, "similar contents cannot be compared for All file types"},
        {{"compare", file, file, "--similar", "80", "--category", "ebooks"}, "cannot be compared for"},
        {{"scan", root, "--settings", "x.ini"}, "x.ini: "},
        {{"scan", root + "/none"}, "/none: "},
        {{"scan", ""}, "an empty name"},
        {{"compare", file}, "compare needs two files"},
        {{"compare", file, file, file}, "compare needs two files"},
        {{"compare", file, root}, "is a folder"},
        {{"compare", file, root + "/none"}, "/none: "},
        {{"compare", file, file, "--format", "null"}, "formats: text, json, csv"},
        {{"show"}, "show needs the file of a saved scan"},
        {{"show", file}, ": Error reading and/or corrupt contents file: "},
        {{"show", root + "/none"}, "/none: "},
        {{"export", file, "--format", "json"}, "known: csv, tsv"},
        {{"undo", "x"}, "undo takes one number"},
        {{"clean", file, "--keep", "oldest"}, ": Error reading and/or corrupt contents file: "},
        {{"show", file, file}, "one argument too many"},
        {{"show", file, "--summary", "--format", "null"}, "--summary and --format null exclude each other"},
        {{"scan", root, "--save", file}, "is no saved scan; --overwrite replaces it"},
        {{"scan", root, "--save", root}, "not a regular file"},
        {{"scan", root, "--save", root + "/none/x"}, "/none/x: "},
        {{"describe"}, "describe needs one file"},
        {{"describe", root + "/none"}, "/none: "},
        {{"describe", root, "--as", "audio"}, "not a regular file"},
        {{"describe", file, "--format", "csv"}, "formats: text, json"},
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

TEST(BadOutput, IsReportedUnlessTheReaderHasLeft)
{
    struct FailingBuffer final : std::stringbuf {
        int sync() override { return -1; }
    };
    const auto platform = makePlatform();
    const CancelFlag cancel;
    for (const auto failure : {std::errc::no_space_on_device, std::errc::broken_pipe}) {
        FailingBuffer buffer;
        std::ostream out(&buffer);
        std::ostringstream err;
        const auto why = [failure] { return make_error_code(failure); };
        const ExitCode code = runConsole({"--help"}, *platform, {out, err, cancel, {}, why});
        const bool gone = failure == std::errc::broken_pipe;
        EXPECT_EQ(code, gone ? ExitCode::done : ExitCode::incomplete);
        EXPECT_EQ(err.str(), gone ? "" : "kelvane-cli: cannot write the results: No space left on device\n");
    }
}

}  // namespace
}  // namespace kelvane
