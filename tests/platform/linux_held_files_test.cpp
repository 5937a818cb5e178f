#include <fcntl.h>
#include <sys/stat.h>
#include <sys/xattr.h>

#include <cstring>

#include "platform/linux/adapters.h"
#include "platform/linux/file_handle.h"
#include "platform/linux/rename_calls.h"
#include "support/linux_deep_folder.h"
#include "support/linux_rights.h"
#include "support/temp_tree.h"

namespace kelvane {
namespace {

using linux_os::FileHandle;
using testing::ActingAs;
using testing::TempTree;

class LinuxHeldFiles : public ::testing::Test {
protected:
    std::unique_ptr<HeldFolder> folder(const std::filesystem::path& path)
    {
        auto opened = held_->openFolder(path);
        EXPECT_TRUE(opened.ok()) << (opened ? "" : opened.error().detail);
        return opened ? std::move(*opened) : nullptr;
    }

    std::unique_ptr<HeldFile> file(const std::filesystem::path& path)
    {
        auto opened = folder(path.parent_path())->open(path.filename().native());
        EXPECT_TRUE(opened.ok()) << path;
        return opened ? std::move(*opened) : nullptr;
    }

    static struct stat statusOf(const std::filesystem::path& path)
    {
        struct stat status {};
        EXPECT_EQ(::lstat(path.c_str(), &status), 0) << path;
        return status;
    }

    // As the kernel has it, acl(5): the owner rw, this user r, the group r, mask r, others nothing.
    static std::string accessListFor(std::uint32_t user)
    {
        const auto entry = [](std::uint16_t tag, std::uint16_t rights, std::uint32_t id) {
            std::string bytes(8, '\0');
            std::memcpy(bytes.data(), &tag, 2);
            std::memcpy(bytes.data() + 2, &rights, 2);
            std::memcpy(bytes.data() + 4, &id, 4);
            return bytes;
        };
        return std::string("\2\0\0\0", 4) + entry(1, 6, ~0u) + entry(2, 4, user) + entry(4, 4, ~0u) +
               entry(16, 4, ~0u) + entry(32, 0, ~0u);
    }

    static bool setAttribute(const std::filesystem::path& path, const char* name, const std::string& value)
    {
        return ::setxattr(path.c_str(), name, value.data(), value.size(), 0) == 0;
    }

    TempTree tree_;
    std::unique_ptr<HeldFiles> held_ = makeLinuxHeldFiles();
};

TEST_F(LinuxHeldFiles, PathsMayBeLongerThanTheKernelTakes)
{
    const auto opened = folder(testing::makeDeepFolder(tree_.path()));
    ASSERT_TRUE(opened->create("new").ok());
    const auto file = opened->open("file");
    ASSERT_TRUE(file.ok());
    ASSERT_TRUE(opened->hardLink(**file, "link").ok());
    EXPECT_TRUE(opened->replace("link", "moved").ok());
    EXPECT_TRUE(opened->remove("file").ok());
    EXPECT_TRUE(opened->flush().ok());
}

TEST_F(LinuxHeldFiles, LinksOnTheWayAreFollowedAndAtTheEndNot)
{
    tree_.write("real/file", "x");
    tree_.symlink("way", "real");
    tree_.symlink("real/link", "file");
    ASSERT_EQ(::mkfifo(tree_.path("real/pipe").c_str(), 0600), 0);

    const auto opened = folder(tree_.path("way"));

    EXPECT_TRUE(opened->open("file").ok());
    EXPECT_EQ(opened->open("link").error().kind, ErrorKind::wrongType);
    EXPECT_EQ(opened->open("pipe").error().kind, ErrorKind::wrongType);
    EXPECT_EQ(opened->look("pipe")->kind, FileKind::other);
    EXPECT_EQ(held_->openFolder("real").error().kind, ErrorKind::invalid) << "relative";
}

TEST_F(LinuxHeldFiles, ReadingLeavesTheTimeOfAccessAlone)
{
    const auto path = tree_.write("file", "contents");
    const timespec old[] = {{1'000'000'000, 5}, {2'000'000'000, 7}};
    ASSERT_EQ(::utimensat(AT_FDCWD, path.c_str(), old, 0), 0);

    const auto held = file(path);
    std::array<std::byte, 8> bytes{};
    ASSERT_EQ(*held->readAt(0, bytes), 8u);

    EXPECT_EQ(statusOf(path).st_atim.tv_sec, 1'000'000'000);
}

TEST_F(LinuxHeldFiles, AWriterElsewhereIsNoticed)
{
    const auto path = tree_.write("file", "contents");
    const auto held = file(path);
    EXPECT_FALSE(held->isBeingWritten());
    {
        const FileHandle writer(::open(path.c_str(), O_WRONLY | O_CLOEXEC));
        if (!held->isBeingWritten())
            GTEST_SKIP() << "no leases on the file system of the temporary folder";
    }
    EXPECT_FALSE(held->isBeingWritten());
    const FileHandle later(::open(path.c_str(), O_WRONLY | O_CLOEXEC | O_NONBLOCK));
    EXPECT_TRUE(later.valid()) << "nothing of the question may be left behind";
}

TEST_F(LinuxHeldFiles, AllMetadataIsReadAndGiven)
{
    const auto path = tree_.write("file", "contents");
    const bool hasLists = setAttribute(path, "system.posix_acl_access", accessListFor(12345));
    const bool hasAttributes = setAttribute(path, "user.note", std::string("a\0b", 3));
    if (testing::isAdministrator()) {
        ASSERT_EQ(::chown(path.c_str(), 12345, 23456), 0);
        ASSERT_EQ(::chmod(path.c_str(), 06750), 0);
    }
    const timespec times[] = {{-5, 999'999'999}, {1'234'567'890, 123'456'789}};
    ASSERT_EQ(::utimensat(AT_FDCWD, path.c_str(), times, 0), 0);
    const auto opened = folder(tree_.path());
    const auto metadata = (*opened->open("file"))->metadata();
    ASSERT_TRUE(metadata.ok());
    EXPECT_EQ(metadata->modified, 1'234'567'890'123'456'789);
    EXPECT_EQ(metadata->accessed, -4'000'000'001);
    EXPECT_EQ(metadata->attributes.size(), (hasLists ? 1u : 0u) + (hasAttributes ? 1u : 0u));

    const auto copy = opened->create("copy");
    ASSERT_TRUE((*copy)->write(std::as_bytes(std::span(std::string_view("contents")))).ok());
    ASSERT_TRUE((*copy)->setMetadata(*metadata).ok());

    EXPECT_EQ((*opened->open("copy"))->metadata().value(), *metadata);
    EXPECT_EQ(statusOf(tree_.path("copy")).st_mode, statusOf(path).st_mode);
}

// Some folders hand an access list to every new file, and its mask opens with the mode.
TEST_F(LinuxHeldFiles, ACopyGetsNoRightsFromItsFolder)
{
    tree_.write("file", "contents");
    ASSERT_EQ(::chmod(tree_.path("file").c_str(), 0644), 0);
    if (!setAttribute(tree_.path(), "system.posix_acl_default", accessListFor(12345)))
        GTEST_SKIP() << "no access lists on the file system of the temporary folder";
    const auto metadata = file(tree_.path("file"))->metadata();
    const auto copy = folder(tree_.path())->create("copy");
    ASSERT_GT(::getxattr(tree_.path("copy").c_str(), "system.posix_acl_access", nullptr, 0), 0);

    ASSERT_TRUE((*copy)->setMetadata(*metadata).ok());

    EXPECT_EQ(file(tree_.path("copy"))->metadata().value(), *metadata);
    EXPECT_LT(::getxattr(tree_.path("copy").c_str(), "system.posix_acl_access", nullptr, 0), 0);
}

TEST_F(LinuxHeldFiles, NobodyGainsRightsWhereTheOwnerCannotBeGiven)
{
    if (!testing::isAdministrator())
        GTEST_SKIP() << "needs an administrator who acts as somebody else";
    std::filesystem::permissions(tree_.path(), std::filesystem::perms::all);
    const ActingAs user(12345);
    ASSERT_TRUE(user.worked());
    const auto copy = folder(tree_.path())->create("copy");
    ASSERT_TRUE(copy.ok());
    FileMetadata metadata;
    metadata.permissions = 06770;
    metadata.modified = 42'000'000'000;
    metadata.attributes = {{"user.note", {std::byte{'x'}}}};
    metadata.group = 54321;

    const Status given = (*copy)->setMetadata(metadata);

    ASSERT_FALSE(given.ok());
    EXPECT_EQ(given.error().kind, ErrorKind::accessDenied);
    const struct stat status = statusOf(tree_.path("copy"));
    EXPECT_EQ(status.st_mode & 07777u, 0700u);
    EXPECT_EQ(status.st_uid, 12345u);
    EXPECT_EQ(status.st_mtim.tv_sec, 42);
    EXPECT_GT(::getxattr(tree_.path("copy").c_str(), "user.note", nullptr, 0), 0) << "the rest must be in place";
}

TEST_F(LinuxHeldFiles, AnOrdinaryUserLinksHeldFilesAndUsesFoldersThatCannotBeListed)
{
    if (!testing::isAdministrator())
        GTEST_SKIP() << "needs an administrator who acts as somebody else";
    std::filesystem::permissions(tree_.path(), std::filesystem::perms::all);
    const ActingAs user(12345);
    const auto dropBox = tree_.folder("drop-box");
    const auto opened = folder(tree_.path());
    const auto created = opened->create("file");
    ASSERT_TRUE(created.ok());
    ASSERT_EQ(::chmod(dropBox.c_str(), 0300), 0);
    const auto blind = folder(dropBox);
    const auto held = file(tree_.path("file"));

    EXPECT_TRUE(blind->hardLink(*held, "link").ok());
    EXPECT_TRUE(blind->flush().ok());
    EXPECT_EQ(held->details()->links, 2u);
    EXPECT_TRUE(blind->remove("link").ok());
    ASSERT_EQ(::chmod(dropBox.c_str(), 0700), 0);
}

// What stands in for renaming without replacing, on file systems that do not know it.
TEST_F(LinuxHeldFiles, RenamingByStepsTakesNothingAwayEither)
{
    tree_.write("file", "file");
    tree_.write("taken", "taken");
    tree_.write("folder/file", "inner");
    tree_.symlink("link", "file");
    const FileHandle at(::open(tree_.path().c_str(), O_PATH | O_CLOEXEC));
    const auto rename = [&](const char* from, const char* to) {
        return linux_os::renameToFreeBySteps({at.get(), from}, {at.get(), to});
    };

    for (const char* from : {"file", "folder", "link"}) {
        EXPECT_EQ(rename(from, "taken").error().kind, ErrorKind::exists) << from;
        const ino_t before = statusOf(tree_.path(from)).st_ino;
        ASSERT_TRUE(rename(from, "free").ok()) << from;
        EXPECT_EQ(statusOf(tree_.path("free")).st_ino, before);
        EXPECT_NE(::access(tree_.path(from).c_str(), F_OK), 0);
        ASSERT_TRUE(rename("free", from).ok()) << from;
    }
    EXPECT_EQ(tree_.read("taken"), "taken");
    EXPECT_EQ(rename("none", "free").error().kind, ErrorKind::notFound);
    EXPECT_EQ(rename("folder", "folder/within").error().kind, ErrorKind::invalid);
    EXPECT_FALSE(std::filesystem::exists(tree_.path("folder/within")));
}

}  // namespace
}  // namespace kelvane
