// Settings in an INI file while processes die and compete.
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "platform/ini_store.h"
#include "platform/linux/adapters.h"
#include "support/faulty_output.h"
#include "support/temp_tree.h"

namespace kelvane::testing {
namespace {

constexpr int killedCode = 9;

class LinuxIniStoreTest : public ::testing::Test {
protected:
    TempTree tree_;
    std::unique_ptr<FileSystem> files_ = makeLinuxFileSystem();
    std::unique_ptr<FileOutput> output_ = makeLinuxFileOutput();
    std::unique_ptr<TextFolding> folding_ = makeTextFolding();

    [[nodiscard]] std::unique_ptr<SettingsStore> store(FileOutput& output)
    {
        return makeIniStore(*files_, output, *folding_, tree_.path("kelvane.ini"));
    }

    // How the child ended: 0 when its work was done.
    template <class Work>
    static int inChild(Work work)
    {
        const pid_t child = ::fork();
        if (child == 0)
            ::_exit(work() ? 0 : 1);
        int status = 0;
        EXPECT_EQ(::waitpid(child, &status, 0), child);
        return WEXITSTATUS(status);
    }
};

TEST_F(LinuxIniStoreTest, AProcessThatDiesLeavesTheOldSettingsOrTheNewOnes)
{
    FaultyOutput faulty(*output_);
    faulty.onFault([] { ::_exit(killedCode); });
    std::u16string kept = u"old";
    int ended = killedCode;
    for (int operation = 1; ended == killedCode; ++operation) {
        const std::u16string text(100'000u + static_cast<unsigned>(operation), u'x');
        ended = inChild([&] {
            faulty.fail(FaultyOutput::Fault::killed, operation);
            const auto settings = store(faulty);
            static_cast<void>(settings->begin());
            static_cast<void>(settings->open(u"general", SettingsAccess::writing)->writeText(u"szText", text));
            return settings->commit() == SettingsCode::done;
        });
        std::u16string now = u"old";
        const auto settings = store(*output_);
        if (const auto section = settings->open(u"general", SettingsAccess::reading)) {
            EXPECT_EQ(section->readText(u"szText", now), SettingsCode::done);
        }
        EXPECT_EQ(settings->complaint(), "");
        EXPECT_TRUE(now == text || (now == kept && ended == killedCode)) << operation;
        kept = now;
    }
    EXPECT_EQ(ended, 0);
}

TEST_F(LinuxIniStoreTest, ProcessesThatWriteAtTheSameTimeLoseNothing)
{
    constexpr std::uint32_t turns = 50;
    std::vector<pid_t> children;
    for (const char16_t letter : {u'a', u'b', u'c'}) {
        const pid_t child = ::fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            const auto settings = store(*output_);
            bool done = true;
            for (std::uint32_t turn = 0; turn < turns; ++turn) {
                const std::u16string name = {letter, static_cast<char16_t>(u'\u4E00' + turn)};
                const auto section = settings->open(u"general", SettingsAccess::writing);
                done = done && section->writeNumber(name, turn) == SettingsCode::done;
            }
            ::_exit(done ? 0 : 1);
        }
        children.push_back(child);
    }
    for (const pid_t child : children) {
        int status = -1;
        ASSERT_EQ(::waitpid(child, &status, 0), child);
        EXPECT_EQ(status, 0);
    }
    const auto settings = store(*output_);
    EXPECT_EQ(settings->open(u"general", SettingsAccess::reading)->valueNames().size(), 3 * turns);
}

// The system's administrator may write everything, so the child becomes somebody else.
TEST_F(LinuxIniStoreTest, LeavesAProtectedFileAlone)
{
    const std::filesystem::path path = tree_.write("kelvane.ini", "[s]\nn=1\n");
    ASSERT_EQ(::chmod(path.c_str(), 0400), 0);
    const bool isRoot = ::geteuid() == 0;
    constexpr uid_t nobody = 65534;
    if (isRoot && (::chown(path.c_str(), nobody, nobody) != 0 || ::chown(tree_.path().c_str(), nobody, nobody) != 0))
        GTEST_SKIP() << "no other user to be";
    const auto settings = store(*output_);
    EXPECT_EQ(inChild([&] {
                  if (isRoot && ::setuid(nobody) != 0)
                      return false;
                  const auto section = settings->open(u"s", SettingsAccess::writing);
                  return !settings->isWritable() && section->writeNumber(u"n", 2) != SettingsCode::done;
              }),
              0);
    EXPECT_EQ(tree_.read("kelvane.ini"), "[s]\nn=1\n");
}

TEST_F(LinuxIniStoreTest, ALinkStaysALink)
{
    const std::string garbage(3, '\0');
    tree_.write("dotfiles/kelvane.ini", garbage);
    tree_.symlink("kelvane.ini", "dotfiles/kelvane.ini");
    const auto settings = store(*output_);
    ASSERT_EQ(settings->open(u"s", SettingsAccess::writing)->writeNumber(u"n", 2), SettingsCode::done);
    EXPECT_TRUE(std::filesystem::is_symlink(tree_.path("kelvane.ini")));
    EXPECT_FALSE(std::filesystem::is_symlink(tree_.path("dotfiles/kelvane.ini")));
    EXPECT_EQ(tree_.read("dotfiles/kelvane.ini.damaged"), garbage);
    std::uint32_t number = 0;
    EXPECT_EQ(settings->open(u"s", SettingsAccess::reading)->readNumber(u"n", number), SettingsCode::done);
}

}  // namespace
}  // namespace kelvane::testing
