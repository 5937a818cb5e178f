// Names that only Linux allows, and folders that only Linux has.
#include <gmock/gmock.h>

#include <map>
#include <nlohmann/json.hpp>

#include "base/words.h"
#include "console_run.h"
#include "support/temp_tree.h"

namespace kelvane {
namespace {

using nlohmann::json;
using ::testing::HasSubstr;
using ::testing::Not;
using testing::runCli;
using ::testing::StartsWith;
using ::testing::UnorderedElementsAre;

class NamesOfLinux : public ::testing::Test {
protected:
    testing::ConsoleRun scan(Arguments more) const
    {
        Arguments arguments = {"scan", "--no-protect", tree_.path().string()};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return runCli(arguments);
    }

    testing::TempTree tree_;
};

TEST_F(NamesOfLinux, AnyNameSurvivesInTheFormatsForPrograms)
{
    const std::string strange = "new\nline \"q\", \xFF";
    tree_.write(strange, "same");
    tree_.write("z", "same");
    const std::string root = tree_.path().string();

    EXPECT_THAT(splitWords(scan({"--format", "null"}).out, '\0'),
                UnorderedElementsAre(root + '/' + strange, root + "/z"));

    const json document = json::parse(scan({"--json"}).out);
    std::map<std::string, json> files;
    for (const json& file : document.at("groups").at(0).at("files"))
        files.emplace(file.at("path"), file);
    ASSERT_EQ(files.count(root + "/new\nline \"q\", \xEF\xBF\xBD"), 1u);
    EXPECT_EQ(files.begin()->second.at("pathBytes"), root + "/new%0Aline%20%22q%22%2C%20%FF");
    EXPECT_FALSE(files.at(root + "/z").contains("pathBytes"));

    const std::string csv = scan({"--format", "csv"}).out;
    EXPECT_THAT(csv, StartsWith("group,approximate,size,modified,path,path_bytes\r\n1,false,4,"));
    EXPECT_THAT(csv, HasSubstr("\"" + root + "/new\nline \"\"q\"\", \xEF\xBF\xBD\"," + root + "/new%0Aline"));
    EXPECT_THAT(csv, HasSubstr("," + root + "/z,\r\n"));

    EXPECT_THAT(scan({}).out, HasSubstr("/new\\nline \"q\", \xEF\xBF\xBD\n"));
}

TEST_F(NamesOfLinux, AProtectedRootIsNamedWithTheOptionThatAdmitsIt)
{
    const auto run = runCli({"scan", "/proc", "/usr/lib"});
    EXPECT_EQ(run.code, ExitCode::usage);
    EXPECT_EQ(run.out, "");
    EXPECT_THAT(run.err, HasSubstr("/usr/lib: lies in a protected folder; --no-protect admits it\n"));
}

TEST_F(NamesOfLinux, StrangeNamesAreDescribed)
{
    const std::string path = tree_.write("\xFF\n", "x").string();
    const json document = json::parse(runCli({"describe", "--json", path}).out);
    EXPECT_THAT(document.at("path").get<std::string>(), ::testing::EndsWith("/\xEF\xBF\xBD\n"));
    EXPECT_THAT(document.at("pathBytes").get<std::string>(), ::testing::EndsWith("/%FF%0A"));
    EXPECT_THAT(runCli({"describe", path}).out, Not(HasSubstr("\n\n")));
}

}  // namespace
}  // namespace kelvane
