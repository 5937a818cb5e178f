// What renaming and removing does to files that are open, read-only or have other names, and what holds a folder.
#include <windows.h>

#include "platform/windows/adapters.h"
#include "platform/windows/file_facts.h"
#include "platform/windows/file_metadata.h"
#include "platform/windows/handle.h"
#include "platform/windows/symbolic_link.h"
#include "platform/windows/system_path.h"
#include "support/paths.h"
#include "support/temp_tree.h"

namespace kelvane {
namespace {

using windows_os::Handle;
using windows_os::systemPath;

class WindowsHeldFilesTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        auto folder = makeWindowsHeldFiles()->openFolder(tree_.folder("f"));
        ASSERT_TRUE(folder.ok());
        folder_ = std::move(*folder);
    }

    void write(const std::string& name, const std::string& contents) { tree_.write("f/" + name, contents); }
    std::string read(const std::string& name) const { return tree_.read("f/" + name); }
    std::wstring at(const std::string& name) const { return systemPath(tree_.path("f/" + name)); }

    bool isReadOnly(const std::string& name) const
    {
        const DWORD attributes = ::GetFileAttributesW(at(name).c_str());
        return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_READONLY) != 0;
    }
    void makeReadOnly(const std::string& name)
    {
        ASSERT_NE(::SetFileAttributesW(at(name).c_str(), FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN), 0);
    }

    Handle openFor(const std::string& name, DWORD access) const
    {
        return Handle(
            ::CreateFileW(at(name).c_str(), access, windows_os::shareAll, nullptr, OPEN_EXISTING, 0, nullptr));
    }

    testing::TempTree tree_;
    std::unique_ptr<HeldFolder> folder_;
};

TEST_F(WindowsHeldFilesTest, NobodyRenamesAHeldFolder)
{
    write("file", "x");
    const auto folder = systemPath(tree_.path("f")), other = systemPath(tree_.path("g"));
    EXPECT_EQ(::MoveFileW(folder.c_str(), other.c_str()), 0);
    folder_.reset();
    EXPECT_NE(::MoveFileW(folder.c_str(), other.c_str()), 0);
}

TEST_F(WindowsHeldFilesTest, StreamsAreNoNames)
{
    write("file", "x");
    for (const wchar_t* name : {L"file:stream", L"file::$DATA", L"a\\b", L"a/b"}) {
        EXPECT_FALSE(folder_->create(name).ok()) << testing::posix(NativeString(name));
        EXPECT_FALSE(folder_->remove(name).ok()) << testing::posix(NativeString(name));
    }
    EXPECT_EQ(read("file"), "x");
}

TEST_F(WindowsHeldFilesTest, ReadOnlyFilesAreReplacedAndRemovedAndKeepTheirOtherNamesAsTheyWere)
{
    write("new", "new");
    write("old", "old");
    tree_.hardLink("f/second", "f/old");
    tree_.hardLink("f/third", "f/old");
    makeReadOnly("old");

    ASSERT_TRUE(folder_->remove(L"third").ok());
    EXPECT_EQ(::GetFileAttributesW(at("third").c_str()), INVALID_FILE_ATTRIBUTES);
    EXPECT_TRUE(isReadOnly("second"));

    ASSERT_TRUE(folder_->replace(L"new", L"old").ok());
    EXPECT_EQ(read("old"), "new");
    EXPECT_FALSE(isReadOnly("old"));
    EXPECT_EQ(read("second"), "old");
    EXPECT_EQ(::GetFileAttributesW(at("new").c_str()), INVALID_FILE_ATTRIBUTES);
}

TEST_F(WindowsHeldFilesTest, AReplacementThatFailsLeavesBothAsTheyWere)
{
    write("new", "new");
    write("old", "old");
    makeReadOnly("old");
    // Without sharing of deletion nobody takes the name away.
    const Handle busy(
        ::CreateFileW(at("old").c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr));
    EXPECT_FALSE(folder_->replace(L"new", L"old").ok());
    EXPECT_EQ(read("old"), "old");
    EXPECT_EQ(read("new"), "new");
    EXPECT_TRUE(isReadOnly("old"));
}

TEST_F(WindowsHeldFilesTest, AFileWhoseNamesAreBoundGetsNoneThatCouldNotBeRemoved)
{
    write("file", "x");
    const auto held = folder_->open(L"file");
    ASSERT_TRUE(held.ok());
    {
        const Handle player(::CreateFileW(at("file").c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                          OPEN_EXISTING, 0, nullptr));
        EXPECT_EQ(folder_->hardLink(**held, L"link").error().systemCode, ERROR_SHARING_VIOLATION);
        EXPECT_EQ(folder_->look(L"link").error().kind, ErrorKind::notFound);
    }
    EXPECT_TRUE(folder_->hardLink(**held, L"link").ok());
}

TEST_F(WindowsHeldFilesTest, WritersAreNoticedAlsoOfReadOnlyFiles)
{
    write("file", "x");
    const auto held = folder_->open(L"file");
    ASSERT_TRUE(held.ok());
    EXPECT_FALSE((*held)->isBeingWritten());
    {
        const Handle reader = openFor("file", GENERIC_READ);
        EXPECT_FALSE((*held)->isBeingWritten());
        const Handle writer = openFor("file", GENERIC_WRITE);
        EXPECT_TRUE((*held)->isBeingWritten());
        makeReadOnly("file");
        EXPECT_TRUE((*held)->isBeingWritten());
    }
    EXPECT_FALSE((*held)->isBeingWritten());
}

TEST_F(WindowsHeldFilesTest, MetadataIsGivenToAnotherFileWithTheTimeOfItsMaking)
{
    const auto given = FileMetadata{0,
                                    0,
                                    FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN,
                                    1'600'000'000'123'456'700,
                                    1'500'000'000'000'000'000,
                                    {{"kelvane.created",
                                      {std::byte{0}, std::byte{0x80}, std::byte{0x3E}, std::byte{0xD5}, std::byte{0xDE},
                                       std::byte{0xB1}, std::byte{0x9D}, std::byte{0x01}}}}};
    {
        auto made = folder_->create(L"new");
        ASSERT_TRUE(made.ok());
        ASSERT_TRUE((*made)->write(std::as_bytes(std::span("new", 3))).ok());
        ASSERT_TRUE((*made)->setMetadata(given).ok());
        ASSERT_TRUE((*made)->flush().ok());
        auto more = given;
        more.attributes.emplace_back("user.note", std::vector<std::byte>(1));
        EXPECT_FALSE((*made)->setMetadata(more).ok());
    }
    const auto held = folder_->open(L"new");
    ASSERT_TRUE(held.ok());
    const auto found = (*held)->metadata();
    ASSERT_TRUE(found.ok());
    EXPECT_EQ(found->modified, given.modified);
    // Wine gives every file the bit for archives, and the time of its last change as that of its making.
    EXPECT_EQ(found->permissions & ~attribute::archive, given.permissions);
    EXPECT_THAT((*held)->details()->created,
                ::testing::AnyOf(FileTime{0x019DB1DED53E8000}, (*held)->details()->modified));
    EXPECT_EQ(read("new"), "new");
}

}  // namespace
}  // namespace kelvane
