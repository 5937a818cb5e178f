#include <gmock/gmock.h>

#include <nlohmann/json.hpp>

#include "console_run.h"
#include "support/temp_tree.h"

namespace kelvane {
namespace {

using nlohmann::json;
using ::testing::HasSubstr;
using ::testing::MatchesRegex;
using ::testing::Not;
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
    EXPECT_THAT(values.at("System.DateModified").get<std::string>(), MatchesRegex("[0-9]{4}-.*T.*Z"));
    EXPECT_FALSE(values.contains("Stock.GroupID")) << "only a scan gives a group";
    EXPECT_FALSE(values.contains("Stock.Thumbnail")) << "an object is no value to print";
}

TEST_F(DescribeVerb, StrangeNamesAndFoldersToo)
{
    const std::string path = tree_.write("\xFF\n", "x").string();
    const json document = json::parse(runCli({"describe", "--json", path}).out);
    EXPECT_THAT(document.at("path").get<std::string>(), ::testing::EndsWith("/\xEF\xBF\xBD\n"));
    EXPECT_THAT(document.at("pathBytes").get<std::string>(), ::testing::EndsWith("/%FF%0A"));
    EXPECT_THAT(runCli({"describe", path}).out, Not(HasSubstr("\n\n")));
    EXPECT_EQ(properties(tree_.path().string()).at("Stock.IsFolder"), true);
    EXPECT_THAT(runCli({"describe", "--list"}).out, HasSubstr("Stock.HardLinks\n"));
}

}  // namespace
}  // namespace kelvane
