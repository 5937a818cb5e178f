// What only the Linux version of the file system promises.
#include <fcntl.h>
#include <set>
#include <sys/fsuid.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

#include "platform/linux/adapters.h"
#include "support/temp_tree.h"

namespace kelvane {
namespace {

class LinuxFileSystemTest : public ::testing::Test {
protected:
    std::optional<ErrorKind> openFault(const std::filesystem::path& path)
    {
        const auto reader = files_->openForReading(path, ReadPattern::sequential);
        return reader ? std::nullopt : std::optional(reader.error().kind);
    }

    testing::TempTree tree_;
    std::unique_ptr<FileSystem> files_ = makeLinuxFileSystem();
};

TEST_F(LinuxFileSystemTest, DevicesAndSocketsAreNotOpened)
{
    ASSERT_EQ(::mknod(tree_.path("socket").c_str(), S_IFSOCK | 0600, 0), 0);
    EXPECT_EQ(openFault(tree_.path("socket")), ErrorKind::wrongType);
    EXPECT_EQ(openFault("/dev/null"), ErrorKind::wrongType);
}

// Root may read everything; a thread that gives up its file-system user id may not.
TEST_F(LinuxFileSystemTest, UnreadableFilesAndFoldersAreDenied)
{
    ::chmod(tree_.write("file", "x").c_str(), 0);
    ::chmod(tree_.folder("folder").c_str(), 0);
    ::chmod(tree_.write("listable/file", "x").parent_path().c_str(), 0744);
    std::thread([&] {
        ::setfsuid(65534);
        const auto nothing = [](const DirectoryEntry&) { return true; };
        EXPECT_EQ(openFault(tree_.path("file")), ErrorKind::accessDenied);
        for (const char* folder : {"folder", "listable"}) {
            const Status status = files_->enumerate(tree_.path(folder), Links::asThemselves, nothing);
            ASSERT_FALSE(status.ok()) << folder;
            EXPECT_EQ(status.error().kind, ErrorKind::accessDenied) << folder;
        }
    }).join();
}

TEST_F(LinuxFileSystemTest, AFileWithoutAnyWriteBitIsReadOnly)
{
    ::chmod(tree_.write("nobody", "").c_str(), 0444);
    ::chmod(tree_.write("others", "").c_str(), 0446);

    const auto isReadOnly = [&](const char* name) {
        return (files_->details(tree_.path(name), Links::followed)->attributes & attribute::readOnly) != 0;
    };
    EXPECT_TRUE(isReadOnly("nobody"));
    EXPECT_FALSE(isReadOnly("others"));
}

TEST_F(LinuxFileSystemTest, PathsMayBeLongerThanTheKernelTakes)
{
    // Made step by step, as no single call can.
    const std::string part(200, 'd');
    int at = ::open(tree_.path().c_str(), O_PATH | O_DIRECTORY);
    std::filesystem::path path = tree_.path();
    for (int depth = 0; depth < 50; ++depth) {
        ASSERT_EQ(::mkdirat(at, part.c_str(), 0700), 0);
        const int next = ::openat(at, part.c_str(), O_PATH | O_DIRECTORY);
        ::close(at);
        at = next;
        path /= part;
    }
    const int file = ::openat(at, "file", O_CREAT | O_WRONLY, 0600);
    ASSERT_EQ(::write(file, "deep", 4), 4);
    ::close(file);
    ::close(at);
    ASSERT_GT(path.native().size(), 10'000u);

    std::vector<std::string> names;
    const Status status = files_->enumerate(path, Links::followed, [&](const DirectoryEntry& entry) {
        names.emplace_back(entry.name);
        return true;
    });
    const auto reader = files_->openForReading(path / "file", ReadPattern::sequential);

    EXPECT_TRUE(status.ok());
    EXPECT_EQ(names, std::vector<std::string>{"file"});
    EXPECT_EQ(files_->details(path / "file", Links::followed)->size.bytes, 4u);
    ASSERT_TRUE(reader.ok());
    std::byte buffer[10];
    EXPECT_EQ(*(*reader)->read(buffer), 4u);
    EXPECT_TRUE(files_->streamNames(path / "file").ok());
    EXPECT_EQ(files_->details(path / "none", Links::followed).error().kind, ErrorKind::notFound);
    EXPECT_EQ(files_->details(path / std::string(5000, 'n'), Links::followed).error().kind, ErrorKind::invalid);
}

TEST_F(LinuxFileSystemTest, FoldersOfAnySizeAreListedWhole)
{
    std::multiset<std::string> made, seen;
    for (int i = 0; i < 3000; ++i)
        tree_.write(*made.insert("a-rather-long-name-to-fill-the-kernel-s-buffer-" + std::to_string(i)), "");

    const Status status = files_->enumerate(tree_.path(), Links::asThemselves, [&](const DirectoryEntry& entry) {
        seen.emplace(entry.name);
        return true;
    });

    EXPECT_TRUE(status.ok());
    EXPECT_EQ(seen, made);
}

TEST_F(LinuxFileSystemTest, DetailsTellTimesPlaceOnDiskAndOwner)
{
    const auto path = tree_.write("file", std::string(10'000, 'x'));

    const auto details = files_->details(path, Links::followed);

    ASSERT_TRUE(details.ok());
    EXPECT_GE(details->changed, details->modified);
    EXPECT_TRUE(details->created.ticks == 0 || details->created <= details->changed);
    EXPECT_EQ(details->ownerId, ::geteuid());
    EXPECT_EQ(*files_->ownerName(0), u"root");
    EXPECT_EQ(files_->ownerName(4'000'000'123).error().kind, ErrorKind::notFound);
}

// The kernel hands such a file out in pieces of a page, each shorter than what was asked for.
TEST_F(LinuxFileSystemTest, AFileThatClaimsToBeEmptyIsReadWholeAllTheSame)
{
    const auto reader = files_->openForReading("/proc/self/maps", ReadPattern::sequential);
    ASSERT_TRUE(reader.ok());
    std::vector<std::byte> buffer(64 * 1024);
    EXPECT_GT(*(*reader)->read(buffer), 4096u);
}

}  // namespace
}  // namespace kelvane
