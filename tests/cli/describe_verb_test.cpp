#include <gmock/gmock.h>

#include <nlohmann/json.hpp>

#include "console_run.h"
#include "support/temp_tree.h"

namespace kelvane {
namespace {

using nlohmann::json;
using ::testing::HasSubstr;
using ::testing::MatchesRegex;
using testing::runCli;

class DescribeVerb : public ::testing::Test {
protected:
    json properties(const std::string& path) const
    {
        return json::parse(runCli({"describe", "--json", path}).out).at("properties");
    }
    testing::TempTree tree_;
};

TEST_F(DescribeVerb, ValuesHaveTheirOwnJsonTypes)
{
    const std::string path = tree_.write("song.mp3", "12345").string();
    tree_.hardLink("second", "song.mp3");
    const json values = properties(path);
    EXPECT_EQ(values.at("System.Size"), 5);
    EXPECT_EQ(values.at("System.FileName"), "song.mp3");
    EXPECT_EQ(values.at("Stock.HardLinks"), 2);
    EXPECT_EQ(values.at("Stock.IsFolder"), false);
    EXPECT_THAT(values.at("System.DateModified").get<std::string>(), MatchesRegex("....-.*T.*Z"));
    EXPECT_FALSE(values.contains("Stock.GroupID")) << "only a scan gives a group";
    EXPECT_FALSE(values.contains("Stock.Thumbnail")) << "an object is no value to print";
}

TEST_F(DescribeVerb, FoldersAndTheListToo)
{
    EXPECT_EQ(properties(tree_.path().string()).at("Stock.IsFolder"), true);
    EXPECT_THAT(runCli({"describe", "--list"}).out, HasSubstr("Stock.HardLinks\n"));
}

}  // namespace
}  // namespace kelvane
