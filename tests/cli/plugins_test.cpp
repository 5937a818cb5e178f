// Content plug-ins from the command line.
#include <gmock/gmock.h>

#include <nlohmann/json.hpp>

#include "base/utf.h"
#include "console_run.h"
#include "engine/document_world.h"
#include "support/temp_tree.h"

namespace kelvane {
namespace {

using nlohmann::json;
using ::testing::HasSubstr;
using testing::runCli;

class Plugins : public ::testing::Test {
protected:
    Plugins()
    {
        const auto sample = std::filesystem::absolute(KELVANE_SAMPLE_PLUGIN).string();
        tree_.write("list.ini", "[ContentPlugins]\n0=missing.wdx64\n1=" + sample + "\n");
        tree_.write("in/a.txt", "one text");
        tree_.write("in/b.txt", "another text");
        tree_.write("in/c.bin", "a file that the plug-in is not asked about");
    }
    testing::ConsoleRun run(Arguments arguments)
    {
        arguments.insert(arguments.end(), {"--settings", tree_.path("list.ini").string()});
        return runCli(arguments, {}, platform_);
    }

    testing::TempTree tree_;
    testing::QuietPlatform platform_;
};

TEST_F(Plugins, DescribeShowsTheirFieldsAndNamesOneThatIsMissing)
{
    const auto described = run({"describe", "--json", tree_.path("in/a.txt").string()});
    EXPECT_EQ(described.code, ExitCode::done);
    const json properties = json::parse(described.out).at("properties");
    EXPECT_EQ(properties.at("Plugin.sample_plugin.Number"), -7);
    EXPECT_EQ(properties.at("Plugin.sample_plugin.Wide"), "weit");
    EXPECT_FALSE(properties.contains("Plugin.sample_plugin.Nothing"));
    EXPECT_THAT(described.err, HasSubstr("missing.wdx64 is not used"));
    EXPECT_THAT(run({"describe", "--list"}).out, HasSubstr("Plugin.sample_plugin.Two_words\n"));
}

TEST_F(Plugins, ScanMatchesByTheirFields)
{
    const auto scanned = run({"scan", "--match", "Plugin.sample_plugin.Number", "--json", tree_.path("in").string()});
    EXPECT_EQ(scanned.code, ExitCode::done) << scanned.err;
    const json groups = json::parse(scanned.out).at("groups");
    ASSERT_EQ(groups.size(), 1u);
    EXPECT_EQ(groups.at(0).at("files").size(), 2u);
}

TEST_F(Plugins, TheirTextsServeDocumentsThatNothingElseReads)
{
    const auto file = tree_.write("in/words.smp", toUtf8(testing::madeUpText(1, 4000)));
    const auto described = run({"describe", "--as", "text", "--json", file.string()});
    EXPECT_EQ(described.code, ExitCode::done) << described.err;
    EXPECT_EQ(json::parse(described.out).at("text").at("length"), 4000);
}

}  // namespace
}  // namespace kelvane
