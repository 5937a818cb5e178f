#include <gmock/gmock.h>

#include <nlohmann/json.hpp>

#include "console_run.h"
#include "support/temp_tree.h"

namespace kelvane {
namespace {

using nlohmann::json;
using testing::ConsoleRun;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

class IgnoreVerb : public ::testing::Test {
protected:
    IgnoreVerb()
    {
        for (const char* name : {"a", "b", "c"})
            tree_.write(name, "same");
    }

    [[nodiscard]] std::string path(const std::string& name) const { return tree_.path(name).string(); }
    ConsoleRun run(Arguments arguments) { return testing::runCli(arguments, {}, platform_); }
    ConsoleRun ignore(Arguments arguments)
    {
        arguments.insert(arguments.begin(), "ignore");
        return run(std::move(arguments));
    }
    ConsoleRun scan(Arguments more = {})
    {
        more.insert(more.begin(), {"scan", "--no-protect", tree_.path().string()});
        return run(std::move(more));
    }
    json list() { return json::parse(ignore({"--list", "--json"}).out).at("declarations"); }

    testing::TempTree tree_;
    testing::QuietPlatform platform_;
};

TEST_F(IgnoreVerb, ScansLeaveOutWhatWasDeclaredUntilItIsForgotten)
{
    EXPECT_EQ(ignore({path("a"), path("b"), path("c")}).code, ExitCode::done);
    const ConsoleRun left = scan();
    EXPECT_THAT(left.out, IsEmpty());
    EXPECT_THAT(left.err, HasSubstr("3 pairs declared as not duplicates were left out; --with-ignored includes them"));
    const ConsoleRun with = scan({"--with-ignored"});
    EXPECT_THAT(with.out, HasSubstr("Group 1: 3 files"));
    EXPECT_THAT(with.err, Not(HasSubstr("--with-ignored")));

    tree_.write("d", "same");
    EXPECT_EQ(ignore({path("a"), path("d")}).code, ExitCode::done);
    EXPECT_EQ(list().size(), 2u);
    EXPECT_EQ(list()[1].at("number"), 2);
    EXPECT_EQ(list()[1].at("files")[0].at("size"), 4);
    EXPECT_THAT(ignore({"--list"}).out, HasSubstr(", 3 files:\n"));
    EXPECT_EQ(ignore({"--forget", "1", "--forget", "1"}).code, ExitCode::done);
    ASSERT_EQ(list().size(), 1u);
    EXPECT_EQ(list()[0].at("files").size(), 2u);
    const ConsoleRun some = scan();
    EXPECT_THAT(some.out, HasSubstr("Group 1: 3 files"));
    EXPECT_THAT(some.err, HasSubstr("1 pair declared as not duplicates was left out"));
    EXPECT_EQ(ignore({"--forget-all"}).code, ExitCode::done);
    EXPECT_THAT(list(), IsEmpty());
}

TEST_F(IgnoreVerb, ALargerDeclarationTakesThePlaceOfASmallerOne)
{
    for (const Arguments& files : {Arguments{"b", "a"}, {"a", "b"}, {"a", "c"}, {"c", "a", "b"}}) {
        Arguments paths;
        for (const std::string& file : files)
            paths.push_back(path(file));
        ASSERT_EQ(ignore(paths).code, ExitCode::done);
    }
    ASSERT_EQ(list().size(), 1u);
    EXPECT_EQ(list()[0].at("files").size(), 3u);
}

TEST_F(IgnoreVerb, AnIniFileMayBeNew)
{
    const std::string ini = path("own.ini");
    EXPECT_EQ(ignore({"--list", "--settings", ini}).code, ExitCode::usage);
    EXPECT_EQ(ignore({path("a"), path("b"), "--settings", ini}).code, ExitCode::done);
    EXPECT_THAT(list(), IsEmpty());
    EXPECT_THAT(ignore({"--list", "--settings", ini}).out, HasSubstr(", 2 files:\n"));
    EXPECT_THAT(scan({"--settings", ini}).err, HasSubstr("1 pair declared"));
    EXPECT_EQ(run({"settings", "import", ini}).code, ExitCode::done) << "although nothing else is set there";
    EXPECT_EQ(list().size(), 1u);
    EXPECT_EQ(run({"settings", "export", path("again.ini")}).code, ExitCode::done);
}

TEST_F(IgnoreVerb, RefusesWhatItCannotKeep)
{
    tree_.hardLink("a too", "a");
    ASSERT_EQ(ignore({path("a"), path("b")}).code, ExitCode::done);
    const struct {
        Arguments arguments;
        const char* message;
    } cases[] = {
        {{}, "ignore needs two files or more"},
        {{path("a")}, "ignore needs two files or more"},
        {{path("a"), path("b"), "--list"}, "ignore needs two files or more"},
        {{"--json"}, "ignore needs two files or more"},
        {{path("a"), path("a too")}, "are one file"},
        {{path("a"), path("none")}, "none: "},
        {{path("a"), tree_.path().string()}, "not a regular file"},
        {{"--forget", "1", "--forget", "2"}, "there is no declaration 2"},
        {{"--forget", "1x"}, "shows, not \"1x\""},
        {{"--forget", "0"}, "there is no declaration 0"},
    };
    for (const auto& [arguments, message] : cases) {
        const ConsoleRun refused = ignore(arguments);
        EXPECT_EQ(refused.code, ExitCode::usage) << message;
        EXPECT_THAT(refused.err, HasSubstr(message));
    }
    EXPECT_EQ(list().size(), 1u);
    platform_.settings.writable = false;
    EXPECT_EQ(ignore({path("a"), path("c")}).code, ExitCode::incomplete);
    EXPECT_EQ(testing::runCli({"ignore", path("a"), path("b")}, {{}, true}, platform_).code, ExitCode::cancelled);
}

}  // namespace
}  // namespace kelvane
