// A clean-up with a trash of the tree's own, and with names and rights that Linux allows.
#include <sys/stat.h>

#include "clean_world.h"
#include "support/linux_environment.h"

namespace kelvane {
namespace {

using nlohmann::json;
using ::testing::AllOf;
using ::testing::HasSubstr;
using testing::WithVariable;

class LinuxCleanRun : public testing::CleanWorld {
protected:
    const WithVariable trash_{"XDG_DATA_HOME", file("data").c_str()};
};

TEST_F(LinuxCleanRun, MovesToTheTrashAndUndoBringsBack)
{
    tree_.folder("data");
    const auto run = clean({"--keep", "oldest", "--json"});
    EXPECT_EQ(run.code, ExitCode::done) << run.err;
    const json document = json::parse(run.out);
    EXPECT_EQ(document.at("sums").at("freed"), 0);
    EXPECT_EQ(document.at("sums").at("comesFreeWithTrash"), 14);
    for (const json& item : document.at("items")) {
        const std::string trashed = item.at("trashed").at("path");
        EXPECT_EQ(trashed.rfind(file("data/Trash/files/"), 0), 0u) << trashed;
        EXPECT_TRUE(std::filesystem::exists(trashed));
        EXPECT_FALSE(std::filesystem::exists(item.at("path").get<std::string>()));
    }
    EXPECT_EQ(testing::runCli({"undo"}, {}, platform_).code, ExitCode::done);
    EXPECT_EQ(tree_.read("in/b/1") + tree_.read("in/c/1") + tree_.read("in/b/2"), "samesamelonger");
}

TEST_F(LinuxCleanRun, NamesThatAreNoTextGoLikeAnyOther)
{
    tree_.folder("data");
    tree_.write("in/d/1\xFF\n", "odd");
    tree_.write("in/e/1\xFE", "odd");
    (void)save("one.ikvs");
    const auto plan = clean({"--keep", "first", "--link", "symbolic", "--dry-run"});
    EXPECT_THAT(plan.out, HasSubstr("d/1\xEF\xBF\xBD\\n")) << "shown, not sent to the terminal";
    const auto run = clean({"--keep", "first", "--link", "symbolic", "--json"});
    EXPECT_EQ(run.code, ExitCode::done) << run.err;
    EXPECT_TRUE(std::filesystem::is_symlink(tree_.path("in/e/1\xFE")));
    EXPECT_EQ(std::filesystem::read_symlink(tree_.path("in/e/1\xFE")), tree_.path("in/d/1\xFF\n"));
    EXPECT_THAT(run.out, AllOf(HasSubstr("e/1%FE\""), HasSubstr("d/1%FF%0A\"")));
}

TEST_F(LinuxCleanRun, TellsWhatLinksWouldLoseAndWhichVolumesHaveNoTrash)
{
    ASSERT_EQ(::chmod(file("in/b/1").c_str(), 0600), 0);
    const json plan = json::parse(clean({"--keep", "oldest", "--link", "hard", "--dry-run", "--json"}).out);
    EXPECT_EQ(plan.at("commands").at(0).at("loses"), json({"permissions", "times"}));
    EXPECT_EQ(plan.at("withoutTrash").size(), 0u);
}

TEST_F(LinuxCleanRun, SettingsAskForALogAndCountWhatWent)
{
    tree_.write("own.ini", "[general]\r\nbinFlags=524288\r\nnDeduped=5\r\n");
    const auto run = clean({"--keep", "oldest", "--link", "hard", "--settings", file("own.ini")});
    EXPECT_EQ(run.code, ExitCode::done);
    EXPECT_THAT(run.err, HasSubstr("Log: " + platform_.ownPlaces.temporary.string()));
    EXPECT_THAT(tree_.read("own.ini"), HasSubstr("nDeduped=8"));
}

}  // namespace
}  // namespace kelvane
