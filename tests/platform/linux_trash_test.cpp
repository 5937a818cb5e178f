#include <dirent.h>
#include <fcntl.h>
#include <sys/mount.h>
#include <sys/stat.h>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <regex>
#include <set>
#include <stop_token>
#include <thread>

#include "platform/file_operations_contract.h"
#include "platform/linux/adapters.h"
#include "platform/linux/child_process.h"
#include "platform/linux/trash_note.h"
#include "support/linux_deep_folder.h"
#include "support/linux_environment.h"
#include "support/linux_rights.h"

namespace kelvane {
namespace {

namespace fs = std::filesystem;
using testing::RecordingSink;
using testing::TempTree;
using testing::WithVariable;

std::vector<std::string> namesIn(const fs::path& folder)
{
    std::vector<std::string> names;
    std::error_code error;
    for (const auto& entry : fs::directory_iterator(folder, error))
        names.push_back(entry.path().filename().native());
    std::sort(names.begin(), names.end());
    return names;
}

std::string textOf(const fs::path& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

FileIdentity identityOf(const fs::path& path)
{
    struct stat status {};
    return ::lstat(path.c_str(), &status) == 0 ? FileIdentity{status.st_dev, status.st_ino} : FileIdentity{};
}

class LinuxTrash : public ::testing::Test {
protected:
    RemovalOutcome trash(const fs::path& path)
    {
        const RemovalItem item{path, identityOf(path), Removal::toTrash};
        sink_.outcomes.clear();
        static_cast<void>(operations_->remove(std::span(&item, 1), sink_, cancel_));
        return sink_.outcomes.at(0);
    }

    fs::path home(const std::string& below) const { return tree_.path("data home/Trash") / below; }
    static fs::path noteOf(const fs::path& trashed)
    {
        return trashed.parent_path().parent_path() / "info" / (trashed.filename().native() + ".trashinfo");
    }

    TempTree tree_;
    WithVariable dataHome_{"XDG_DATA_HOME", tree_.path("data home").c_str()};
    std::unique_ptr<FileOperations> operations_ = makeLinuxFileOperations();
    RecordingSink sink_;
    CancelFlag cancel_;
};

TEST_F(LinuxTrash, TheNoteSaysWhereItWasAndWhen)
{
    const auto file = tree_.write("a b/100% caf\xE9\n~.txt", "x");
    tree_.symlink("way", "a b");
    const std::time_t before = std::time(nullptr);

    const RemovalOutcome outcome = trash(tree_.path("way") / file.filename());

    ASSERT_TRUE(outcome.trashed.has_value()) << outcome.error->detail;
    EXPECT_EQ(outcome.trashed->parent_path(), home("files"));
    EXPECT_EQ(outcome.trashed->filename(), file.filename());
    std::smatch parts;
    const std::string note = textOf(noteOf(*outcome.trashed));
    ASSERT_TRUE(std::regex_match(note, parts,
                                 std::regex("\\[Trash Info\\]\nPath=([^\n]*)\n"
                                            "DeletionDate=(\\d{4}-\\d\\d-\\d\\dT\\d\\d:\\d\\d:\\d\\d)\n")))
        << note;
    EXPECT_EQ(parts[1], tree_.path().native() + "/a%20b/100%25%20caf%E9%0A~.txt");
    std::tm local{};
    ASSERT_NE(::strptime(parts[2].str().c_str(), "%Y-%m-%dT%H:%M:%S", &local), nullptr);
    local.tm_isdst = -1;
    EXPECT_LE(std::abs(std::difftime(std::mktime(&local), before)), 60.0);
    for (const char* folder : {"", "files", "info"})
        EXPECT_EQ(fs::status(home(folder)).permissions(), fs::perms::owner_all) << folder;
}

TEST_F(LinuxTrash, LooksFirstAndLeavesNothingBehind)
{
    const auto file = tree_.write("file", "x");
    EXPECT_TRUE(operations_->canTrash(file).ok());
    EXPECT_FALSE(fs::exists(tree_.path("data home"))) << "asking makes nothing";

    const RemovalOutcome outcome = trash(file);
    ASSERT_TRUE(outcome.trashed.has_value());
    ASSERT_EQ(namesIn(home("info")).size(), 1u);
    ASSERT_TRUE(operations_->restore(*outcome.trashed, file).ok());
    EXPECT_TRUE(namesIn(home("info")).empty());

    std::ofstream(home("info/gone.trashinfo")) << "[Trash Info]\n";
    EXPECT_TRUE(operations_->forget(home("files/gone")).ok());
    EXPECT_TRUE(namesIn(home("info")).empty());
    EXPECT_TRUE(operations_->forget(home("files/gone")).ok());
    EXPECT_TRUE(operations_->forget(tree_.path("no trash/files/gone")).ok());
    EXPECT_FALSE(operations_->forget(tree_.path("elsewhere/gone")).ok());
}

// The moment between the last look at a name and the move belongs to others.
TEST_F(LinuxTrash, WhatWasExchangedAtTheLastMomentComesBack)
{
    const auto file = tree_.write("file", "the one that was looked at");
    tree_.write("other", "somebody's new work");
    sink_.place = [&](const fs::path&) {
        fs::rename(file, tree_.path("elsewhere"));
        fs::rename(tree_.path("other"), file);
        return Status();
    };

    const RemovalOutcome outcome = trash(file);

    ASSERT_TRUE(outcome.error.has_value());
    EXPECT_EQ(outcome.error->kind, ErrorKind::changed);
    EXPECT_FALSE(outcome.trashed.has_value());
    EXPECT_EQ(textOf(file), "somebody's new work");
    EXPECT_EQ(textOf(tree_.path("elsewhere")), "the one that was looked at");
    EXPECT_TRUE(namesIn(home("files")).empty());
    EXPECT_TRUE(namesIn(home("info")).empty());
}

// Another program exchanges two files without a pause. Whatever the moment: only the file that was meant goes, and the
// other one is never lost.
TEST_F(LinuxTrash, NothingIsLostWhileNamesAreExchangedAllTheTime)
{
    const auto file = tree_.write("file", "meant");
    const auto other = tree_.write("other", "not meant");
    const FileIdentity meant = identityOf(file);
    std::jthread exchanging([&](const std::stop_token& stop) {
        while (!stop.stop_requested())
            static_cast<void>(::renameat2(AT_FDCWD, file.c_str(), AT_FDCWD, other.c_str(), RENAME_EXCHANGE));
    });
    int went = 0;
    int stayed = 0;
    for (int round = 0; round < 2000 && (round < 300 || went == 0 || stayed == 0); ++round) {
        const RemovalItem item{file, meant, Removal::toTrash};
        sink_.outcomes.clear();
        static_cast<void>(operations_->remove(std::span(&item, 1), sink_, cancel_));
        const RemovalOutcome& outcome = sink_.outcomes.at(0);
        if (!outcome.error) {
            ++went;
            EXPECT_EQ(textOf(outcome.trashed.value()), "meant");
            EXPECT_EQ(textOf(other), "not meant");
            ASSERT_TRUE(operations_->restore(*outcome.trashed, file).ok());
        } else {
            ++stayed;
            ASSERT_EQ(outcome.error->kind, ErrorKind::changed) << outcome.error->detail;
        }
    }
    exchanging.request_stop();
    exchanging.join();

    EXPECT_GT(went, 0);
    EXPECT_GT(stayed, 0);
    EXPECT_EQ(namesIn(tree_.path()), (std::vector<std::string>{"data home", "file", "other"}));
    EXPECT_EQ((std::set{textOf(file), textOf(other)}), (std::set<std::string>{"meant", "not meant"}));
    EXPECT_TRUE(namesIn(home("files")).empty() && namesIn(home("info")).empty());
}

TEST_F(LinuxTrash, AFailedMoveLeavesNoNote)
{
    const auto file = tree_.write("file", "x");
    sink_.place = [&](const fs::path&) {
        fs::remove(file);
        return Status();
    };

    const RemovalOutcome outcome = trash(file);

    EXPECT_EQ(outcome.error->kind, ErrorKind::notFound);
    EXPECT_EQ(static_cast<std::uint32_t>(outcome.code), 0x80070000u | ENOENT);
    EXPECT_TRUE(namesIn(home("info")).empty());
    sink_.place = nullptr;
    EXPECT_EQ(trash(tree_.path()).error.has_value(), true) << "a folder does not go into itself";
    EXPECT_TRUE(namesIn(home("info")).empty());
    EXPECT_TRUE(namesIn(home("files")).empty());
}

TEST_F(LinuxTrash, NamesStayWithinWhatAFileSystemTakes)
{
    const std::string longName = std::string(250, 'n') + ".txt";
    std::string umlauts;
    while (umlauts.size() < 250)
        umlauts += "\xC3\xA4";
    for (const std::string& name : {longName, umlauts, std::string("archive.tar"), std::string(".hidden")}) {
        std::set<std::string> seen;
        for (unsigned attempt = 0; attempt < 8; ++attempt) {
            const std::string tried = linux_os::trashName(name, attempt, 255);
            EXPECT_LE(tried.size() + std::string(linux_os::noteEnding).size(), 255u);
            EXPECT_TRUE(seen.insert(tried).second) << tried;
            EXPECT_NE(static_cast<unsigned char>(tried.back()), 0xC3) << "cut within a letter";
        }
    }
    EXPECT_EQ(linux_os::trashName("archive.tar", 0, 255), "archive.tar");
    EXPECT_EQ(linux_os::trashName("archive.tar", 1, 255), "archive.2.tar");
    EXPECT_EQ(linux_os::trashName(".hidden", 2, 255), ".hidden.3");
    EXPECT_TRUE(linux_os::trashName(longName, 5, 255).ends_with(".txt"));
}

TEST_F(LinuxTrash, PathsLongerThanTheKernelTakesGoToo)
{
    const fs::path file = testing::makeDeepFolder(tree_.path()) / "file";
    const auto files = makeLinuxFileSystem();
    const RemovalItem item{file, files->details(file, Links::asThemselves)->identity, Removal::toTrash};

    static_cast<void>(operations_->remove(std::span(&item, 1), sink_, cancel_));

    ASSERT_TRUE(sink_.outcomes.at(0).trashed.has_value()) << sink_.outcomes.at(0).error->detail;
    EXPECT_FALSE(operations_->isInTrash(file));
    EXPECT_TRUE(operations_->restore(*sink_.outcomes.at(0).trashed, file).ok());
    EXPECT_TRUE(files->details(file, Links::asThemselves).ok());
}

TEST_F(LinuxTrash, TrashesAreKnownWhicheverWayLeadsThere)
{
    tree_.write("data home/Trash/files/folder/file", "x");
    tree_.write("others/.local/share/Trash/files/file", "x");
    tree_.write("program/data/Trash/files/file", "x");
    tree_.folder("program/data/Trash/info");
    tree_.write("disk/.Trash-12345/files/file", "x");
    tree_.write("disk/.Trash/12345/files/file", "x");
    tree_.write("mail/Trash/file", "x");
    tree_.write("mail/.Trash-old/file", "x");
    tree_.write("disk/.Trash/cur/file", "x");
    tree_.symlink("way", "data home/Trash/files");
    tree_.symlink("straight", tree_.path("disk/.Trash-12345/files/file"));
    const auto outside = tree_.write("outside", "x");
    tree_.symlink("data home/Trash/files/link", outside);

    for (const char* name :
         {"data home/Trash/files/folder/file", "data home/Trash", "others/.local/share/Trash/files/file",
          "program/data/Trash/files/file", "disk/.Trash-12345/files/file", "disk/.Trash/12345/files/file",
          "way/folder/file", "way/none", "straight", "data home/Trash/files/link"})
        EXPECT_TRUE(operations_->isInTrash(tree_.path(name))) << name;
    for (const char* name : {"mail/Trash/file", "mail/.Trash-old/file", "disk/.Trash/cur/file", "data home",
                             "data home/Trashed", "outside"})
        EXPECT_FALSE(operations_->isInTrash(tree_.path(name))) << name;
}

TEST_F(LinuxTrash, ATrashThatCannotBeWrittenIsNone)
{
    if (!testing::isAdministrator())
        GTEST_SKIP() << "needs an administrator who acts as somebody else";
    const auto file = tree_.write("open/file", "x");
    fs::permissions(tree_.path(), static_cast<fs::perms>(0755));
    fs::permissions(tree_.path("open"), fs::perms::all);
    const testing::ActingAs user(12345);
    ASSERT_TRUE(user.worked());

    EXPECT_EQ(operations_->canTrash(file).error().kind, ErrorKind::notSupported);
    const RemovalOutcome outcome = trash(file);

    ASSERT_TRUE(outcome.error.has_value());
    EXPECT_EQ(outcome.error->kind, ErrorKind::notSupported);
    EXPECT_EQ(textOf(file), "x");
}

// Desktop programs and this one share a trash, and understand one another's notes.
TEST_F(LinuxTrash, TheDesktopsOwnTrashIsTheSame)
{
    const WithVariable home("HOME", tree_.path().c_str());
    const auto ours = tree_.write("f/our \xC3\xBC%.txt", "ours");
    const auto theirs = tree_.write("f/their \xC3\xBC%.txt", "theirs");
    const auto again = tree_.write("g/our \xC3\xBC%.txt", "again");
    const RemovalOutcome outcome = trash(ours);
    ASSERT_TRUE(outcome.trashed.has_value());
    for (const auto& path : {theirs, again}) {
        auto process = linux_os::ChildProcess::start(KELVANE_GIO_TRASH, {path.native()});
        ASSERT_TRUE(process.ok());
        ASSERT_EQ(process->exitCodeWithin(std::chrono::seconds(30)), 0) << path;
    }

    EXPECT_EQ(namesIn(this->home("files")).size(), 3u) << "one trash, and no name was taken twice";
    const fs::path theirsTrashed = this->home("files") / theirs.filename();
    std::string expected = textOf(noteOf(theirsTrashed));
    ASSERT_NE(expected.find("their"), std::string::npos) << expected;
    expected.replace(expected.find("their"), 5, "our");
    const std::string note = textOf(noteOf(*outcome.trashed));
    EXPECT_EQ(note.substr(0, note.find("DeletionDate")), expected.substr(0, expected.find("DeletionDate")));
    EXPECT_EQ(note.size(), expected.size()) << "the date has another form";

    ASSERT_TRUE(operations_->restore(theirsTrashed, theirs).ok());
    EXPECT_EQ(textOf(theirs), "theirs");
    EXPECT_FALSE(fs::exists(noteOf(theirsTrashed)));
}

// A volume of its own in memory. Only an administrator may mount one.
class LinuxVolumeTrash : public LinuxTrash {
protected:
    void SetUp() override
    {
        const auto disk = tree_.folder("disk");
        if (::mount("tmpfs", disk.c_str(), "tmpfs", 0, "mode=0777") != 0)
            GTEST_SKIP() << "no volume can be mounted here";
        mounted_ = true;
        std::ofstream(disk / "file") << "on the disk";
    }

    void TearDown() override
    {
        if (mounted_)
            static_cast<void>(::umount2(tree_.path("disk").c_str(), MNT_DETACH));
    }

    fs::path disk(const std::string& below) const { return tree_.path("disk") / below; }
    fs::path ownTrash() const { return disk(".Trash-" + std::to_string(::getuid())); }

    bool mounted_ = false;
};

TEST_F(LinuxVolumeTrash, AVolumeHasItsOwnTrash)
{
    fs::create_directories(disk("a b"));
    fs::rename(disk("file"), disk("a b/file"));
    EXPECT_TRUE(operations_->canTrash(disk("a b/file")).ok());
    EXPECT_FALSE(fs::exists(ownTrash()));

    const RemovalOutcome outcome = trash(disk("a b/file"));

    ASSERT_TRUE(outcome.trashed.has_value()) << outcome.error->detail;
    EXPECT_EQ(*outcome.trashed, ownTrash() / "files/file");
    EXPECT_THAT(textOf(noteOf(*outcome.trashed)), ::testing::HasSubstr("\nPath=a%20b/file\n"));
    EXPECT_EQ(fs::status(ownTrash()).permissions(), fs::perms::owner_all);
    EXPECT_TRUE(operations_->isInTrash(*outcome.trashed));
    EXPECT_FALSE(fs::exists(home("files/file")));
    EXPECT_TRUE(operations_->restore(*outcome.trashed, disk("a b/file")).ok());
    EXPECT_EQ(operations_->restore(*outcome.trashed, tree_.path("file")).error().kind, ErrorKind::notFound);
    ASSERT_TRUE(trash(disk("a b/file")).trashed.has_value());
    EXPECT_EQ(operations_->restore(*outcome.trashed, tree_.path("file")).error().kind, ErrorKind::notSupported)
        << "nothing is copied across volumes";
    EXPECT_EQ(textOf(*outcome.trashed), "on the disk");
}

TEST_F(LinuxVolumeTrash, TheSharedFolderIsUsedOnlyWhereItIsSafe)
{
    const std::string user = std::to_string(::getuid());
    fs::create_directories(disk(".Trash"));
    const auto whereTo = [&] {
        const RemovalOutcome outcome = trash(disk("file"));
        const fs::path trashed = outcome.trashed.value_or("nowhere");
        static_cast<void>(operations_->restore(trashed, disk("file")));
        return trashed;
    };

    EXPECT_EQ(whereTo(), ownTrash() / "files/file") << "without the sticky bit";
    fs::permissions(disk(".Trash"), fs::perms::all | fs::perms::sticky_bit);
    EXPECT_EQ(whereTo(), disk(".Trash/" + user + "/files/file"));
    fs::rename(disk(".Trash"), disk("moved"));
    fs::create_directory_symlink("moved", disk(".Trash"));
    EXPECT_EQ(whereTo(), ownTrash() / "files/file") << "through a link";
    fs::remove_all(ownTrash());
    fs::create_directory_symlink("moved", ownTrash());
    EXPECT_EQ(whereTo(), "nowhere") << "somebody laid a link there";
    fs::remove(ownTrash());
    fs::create_directories(ownTrash());
    ASSERT_EQ(::chown(ownTrash().c_str(), 12345, 12345), 0);
    EXPECT_EQ(whereTo(), "nowhere") << "somebody else's";
    EXPECT_EQ(textOf(disk("file")), "on the disk");
}

// The same volume seen at a second place: renaming across is refused although the device is one.
TEST_F(LinuxVolumeTrash, AFolderThatIsMountedAtASecondPlaceKeepsToItsOwnSide)
{
    tree_.write("real/folder/file", "bound");
    const auto bound = tree_.folder("bound");
    ASSERT_EQ(::mount(tree_.path("real").c_str(), bound.c_str(), nullptr, MS_BIND, nullptr), 0);

    const RemovalOutcome outcome = trash(bound / "folder/file");
    const fs::path trashed = outcome.trashed.value_or("nowhere");

    EXPECT_EQ(trashed, bound / (".Trash-" + std::to_string(::getuid())) / "files/file");
    EXPECT_TRUE(operations_->restore(trashed, bound / "folder/file").ok());
    EXPECT_EQ(tree_.read("real/folder/file"), "bound");
    EXPECT_EQ(::umount2(bound.c_str(), MNT_DETACH), 0);
}

}  // namespace
}  // namespace kelvane
