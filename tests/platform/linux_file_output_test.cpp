// Links, access rights and locks as Linux has them.
#include <csignal>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "platform/file_output.h"
#include "platform/linux/adapters.h"
#include "support/temp_tree.h"

namespace kelvane::testing {
namespace {

std::span<const std::byte> asBytes(std::string_view text)
{
    return std::as_bytes(std::span(text));
}

mode_t modeOf(const std::filesystem::path& path)
{
    struct stat status = {};
    EXPECT_EQ(::lstat(path.c_str(), &status), 0) << path;
    return status.st_mode & 07777;
}

class LinuxFileOutputTest : public ::testing::Test {
protected:
    TempTree tree_;
    std::unique_ptr<FileOutput> output_ = makeLinuxFileOutput();
};

TEST_F(LinuxFileOutputTest, NewFilesAndFoldersAreTheirOwnersAlone)
{
    ASSERT_TRUE(replaceContents(*output_, tree_.path("new"), asBytes("x")));
    EXPECT_EQ(modeOf(tree_.path("new")), 0600u);
    ASSERT_TRUE(output_->append(tree_.path("log")));
    EXPECT_EQ(modeOf(tree_.path("log")), 0600u);
    ASSERT_TRUE(output_->createFolders(tree_.path("folder")));
    EXPECT_EQ(modeOf(tree_.path("folder")), 0700u);
}

TEST_F(LinuxFileOutputTest, ReplacingKeepsModeAndLinks)
{
    const std::filesystem::path real = tree_.write("real/kelvane.ini", "old");
    ASSERT_EQ(::chmod(real.c_str(), 0640), 0);
    tree_.symlink("middle", "real/kelvane.ini");
    tree_.symlink("kelvane.ini", tree_.path("middle"));
    ASSERT_TRUE(replaceContents(*output_, tree_.path("kelvane.ini"), asBytes("new")));
    EXPECT_TRUE(std::filesystem::is_symlink(tree_.path("kelvane.ini")));
    EXPECT_TRUE(std::filesystem::is_symlink(tree_.path("middle")));
    EXPECT_EQ(tree_.read("real/kelvane.ini"), "new");
    EXPECT_EQ(modeOf(real), 0640u);

    // A link may stand before the file that it is for.
    tree_.symlink("early", "real/later");
    ASSERT_TRUE(replaceContents(*output_, tree_.path("early"), asBytes("first")));
    EXPECT_TRUE(std::filesystem::is_symlink(tree_.path("early")));
    EXPECT_EQ(tree_.read("real/later"), "first");

    tree_.symlink("circle", "circle");
    EXPECT_FALSE(replaceContents(*output_, tree_.path("circle"), asBytes("new")));
}

TEST_F(LinuxFileOutputTest, NeverWaitsAtAPipe)
{
    ASSERT_EQ(::mkfifo(tree_.path("pipe").c_str(), 0600), 0);
    EXPECT_FALSE(output_->append(tree_.path("pipe")));
}

// As root this once took /dev/full away.
TEST_F(LinuxFileOutputTest, NeverReplacesWhatIsNoFile)
{
    ASSERT_EQ(::mkfifo(tree_.path("pipe").c_str(), 0600), 0);
    tree_.symlink("link to pipe", "pipe");
    for (const char* name : {"pipe", "link to pipe"})
        EXPECT_EQ(replaceContents(*output_, tree_.path(name), asBytes("new")).error().kind, ErrorKind::wrongType);
    EXPECT_TRUE(std::filesystem::is_fifo(tree_.path("pipe")));
    EXPECT_FALSE(std::filesystem::exists(tree_.path("pipe.kvnew")));
}

TEST_F(LinuxFileOutputTest, ALinkAndItsFileShareOneLock)
{
    tree_.write("real/kelvane.ini", "x");
    tree_.symlink("kelvane.ini", "real/kelvane.ini");
    const Result<std::unique_ptr<FileLock>> held = output_->lock(tree_.path("kelvane.ini"), 0);
    ASSERT_TRUE(held);
    EXPECT_FALSE(output_->lock(tree_.path("real/kelvane.ini"), 0));
}

// A lock that somebody deleted or that a killed process left must neither shut everyone out nor let two in.
TEST_F(LinuxFileOutputTest, LocksSurviveTheLossOfTheirFile)
{
    const std::filesystem::path path = tree_.path("kelvane.ini");
    std::filesystem::path lockFile = path;
    lockFile += ".kvlock";
    {
        const Result<std::unique_ptr<FileLock>> held = output_->lock(path, 0);
        ASSERT_TRUE(std::filesystem::remove(lockFile));
    }
    tree_.write("kelvane.ini.kvlock", "left behind");
    EXPECT_TRUE(output_->lock(path, 0));
    EXPECT_FALSE(std::filesystem::exists(lockFile));
}

TEST_F(LinuxFileOutputTest, TheEndOfAProcessLetsItsLockGo)
{
    const std::filesystem::path path = tree_.path("kelvane.ini");
    int ready[2] = {};
    ASSERT_EQ(::pipe(ready), 0);
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        const Result<std::unique_ptr<FileLock>> held = output_->lock(path, 0);
        static_cast<void>(::write(ready[1], held ? "y" : "n", 1));
        for (;;)
            ::pause();
    }
    char answer = 0;
    ASSERT_EQ(::read(ready[0], &answer, 1), 1);
    EXPECT_EQ(answer, 'y');
    EXPECT_FALSE(output_->lock(path, 0));
    ::kill(child, SIGKILL);
    ASSERT_EQ(::waitpid(child, nullptr, 0), child);
    EXPECT_TRUE(output_->lock(path, 0));
    ::close(ready[0]);
    ::close(ready[1]);
}

}  // namespace
}  // namespace kelvane::testing
