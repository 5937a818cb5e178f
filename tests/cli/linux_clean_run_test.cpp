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

// The real operations, but for a trash that may be missing, and with a hand on the work.
class HandledOperations final : public FileOperations {
public:
    explicit HandledOperations(FileOperations& real) : real_(real) {}
    bool hasTrash = true;
    std::function<void()> afterItem = [] {};

    BatchOutcome remove(std::span<const RemovalItem> items, RemovalSink& sink, const CancelFlag& cancel) override
    {
        Sink told(sink, afterItem);
        return real_.remove(items, told, cancel);
    }
    Status canTrash(const std::filesystem::path& path) override
    {
        return hasTrash ? real_.canTrash(path) : Error{ErrorKind::notSupported, 0, "read-only"};
    }
    bool isInTrash(const std::filesystem::path& path) override { return real_.isInTrash(path); }
    Status restore(const std::filesystem::path& trashed, const std::filesystem::path& place) override
    {
        return real_.restore(trashed, place);
    }
    Status forget(const std::filesystem::path& trashed) override { return real_.forget(trashed); }

private:
    struct Sink final : RemovalSink {
        Sink(RemovalSink& real, const std::function<void()>& afterItem) : real_(real), afterItem_(afterItem) {}
        bool before(std::size_t item) override { return real_.before(item); }
        Status placing(std::size_t item, const std::filesystem::path& trashed) override
        {
            return real_.placing(item, trashed);
        }
        void after(std::size_t item, const RemovalOutcome& outcome) override
        {
            real_.after(item, outcome);
            afterItem_();
        }
        RemovalSink& real_;
        const std::function<void()>& afterItem_;
    };
    FileOperations& real_;
};

class HandledPlatform final : public testing::QuietPlatform {
public:
    HandledOperations operations{QuietPlatform::fileOperations()};
    FileOperations& fileOperations() override { return operations; }
};

class LinuxCleanRun : public testing::CleanWorld {
protected:
    LinuxCleanRun()
    {
        tree_.folder("data");
        handled_.ownPlaces = platform_.ownPlaces;
    }
    testing::ConsoleRun cleanHandled(const Arguments& more, const testing::Surroundings& around = {})
    {
        Arguments arguments = {"clean", file("one.ikvs"), "--keep", "oldest", "--sort", "path"};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return testing::runCli(arguments, around, handled_);
    }

    HandledPlatform handled_;
    const WithVariable trash_{"XDG_DATA_HOME", file("data").c_str()};
};

TEST_F(LinuxCleanRun, MovesToTheTrashAndUndoBringsBack)
{
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

TEST_F(LinuxCleanRun, TellsWhatLinksWouldLose)
{
    ASSERT_EQ(::chmod(file("in/b/1").c_str(), 0600), 0);
    const json plan = json::parse(clean({"--keep", "oldest", "--link", "hard", "--dry-run", "--json"}).out);
    EXPECT_EQ(plan.at("commands").at(0).at("loses"), json({"permissions", "times"}));
}

TEST_F(LinuxCleanRun, FilesOfAVolumeWithoutATrashStayUnlessTheirDeletionIsAskedForByName)
{
    handled_.operations.hasTrash = false;
    const json plan = json::parse(cleanHandled({"--dry-run", "--json"}).out);
    EXPECT_EQ(plan.at("withoutTrash").at(0).at("files"), 3);
    EXPECT_EQ(plan.at("skipped").at(0).at("why"), "noTrash");
    const auto run = cleanHandled({"--yes"});
    EXPECT_EQ(run.code, ExitCode::incomplete);
    EXPECT_THAT(run.err, AllOf(HasSubstr("no trash here (read-only), so 3 files"), HasSubstr("3 files left alone\n")));
    EXPECT_EQ(tree_.read("in/b/1") + tree_.read("in/c/1") + tree_.read("in/b/2"), "samesamelonger");
    EXPECT_EQ(cleanHandled({"--delete-permanently", "--yes"}).code, ExitCode::done);
    EXPECT_FALSE(std::filesystem::exists(tree_.path("in/b/1")));
}

TEST_F(LinuxCleanRun, CtrlCEndsTheWorkAfterTheFileInHand)
{
    testing::Surroundings around;
    around.answer = [this](std::string_view, CancelFlag& cancel) {
        handled_.operations.afterItem = [&cancel] { cancel.cancel(); };
        return std::string("y");
    };
    const auto run = cleanHandled({"--json"}, around);
    EXPECT_EQ(run.code, ExitCode::cancelled);
    const json document = json::parse(run.out);
    EXPECT_EQ(document.at("cancelled"), true);
    EXPECT_EQ(document.at("sums").at("done"), 1);
    EXPECT_EQ(document.at("sums").at("notReached"), 2);
    EXPECT_EQ(document.at("items").at(2).at("result"), "notReached");
    EXPECT_FALSE(std::filesystem::exists(tree_.path("in/b/1")));
    EXPECT_EQ(tree_.read("in/c/1") + tree_.read("in/b/2"), "samelonger");
    EXPECT_EQ(testing::runCli({"undo", "1"}, {}, platform_).code, ExitCode::done);
    EXPECT_EQ(tree_.read("in/b/1"), "same");
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
