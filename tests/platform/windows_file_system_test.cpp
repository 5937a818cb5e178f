// What only the Windows version of the file system promises.
#include <map>
#include <windows.h>

#include "platform/windows/adapters.h"
#include "platform/windows/directory_listing.h"
#include "platform/windows/file_facts.h"
#include "platform/windows/handle.h"
#include "platform/windows/system_path.h"
#include "support/paths.h"
#include "support/temp_tree.h"

namespace kelvane {
namespace {

using windows_os::Handle;
using windows_os::plainPath;
using windows_os::systemPath;

class WindowsFileSystemTest : public ::testing::Test {
protected:
    std::string contents(const std::filesystem::path& path)
    {
        auto reader = files_->openForReading(path, ReadPattern::scattered);
        std::string text(100, '\0');
        const auto got = reader ? (*reader)->read(std::as_writable_bytes(std::span(text))) : reader.error();
        text.resize(got ? *got : 0);
        return text;
    }

    testing::TempTree tree_;
    std::unique_ptr<FileSystem> files_ = makeWindowsFileSystem();
};

TEST(SystemPath, IsTheExtendedFormOfWhateverIsAbsolute)
{
    const std::pair<const wchar_t*, const wchar_t*> table[] = {
        {LR"(C:\a\b)", LR"(\\?\C:\a\b)"},
        {LR"(c:\)", LR"(\\?\c:\)"},
        {LR"(C:/a/./b/../c. )", LR"(\\?\C:\a\c. )"},
        {LR"(\\server\share\a)", LR"(\\?\UNC\server\share\a)"},
        {LR"(\\?\C:\a\..\b)", LR"(\\?\C:\a\..\b)"},
        {LR"(\\.\pipe\x)", LR"(\\.\pipe\x)"},
        {LR"(relative\a)", LR"(relative\a)"},
        {LR"(\rooted)", LR"(\rooted)"},
    };
    for (const auto& [given, expected] : table)
        EXPECT_EQ(systemPath(given), expected);
    EXPECT_EQ(plainPath(LR"(\\?\C:\a)"), LR"(C:\a)");
    EXPECT_EQ(plainPath(LR"(\\?\UNC\server\share)"), LR"(\\server\share)");
    EXPECT_EQ(plainPath(LR"(\\?\Volume{1}\a)"), LR"(\\?\Volume{1}\a)");
}

TEST(FileKindOnWindows, OnlyWhatStandsForAnotherNameIsALink)
{
    constexpr DWORD link = FILE_ATTRIBUTE_REPARSE_POINT;
    constexpr DWORD cloud = 0x9000001A, deduplicated = 0x80000013, socket = 0x80000023;
    using windows_os::kindOf;
    EXPECT_EQ(kindOf(link, IO_REPARSE_TAG_SYMLINK), FileKind::link);
    EXPECT_EQ(kindOf(link | FILE_ATTRIBUTE_DIRECTORY, IO_REPARSE_TAG_MOUNT_POINT), FileKind::link);
    EXPECT_EQ(kindOf(link, cloud), FileKind::regular);
    EXPECT_EQ(kindOf(link, deduplicated), FileKind::regular);
    EXPECT_EQ(kindOf(link | FILE_ATTRIBUTE_DIRECTORY, cloud), FileKind::folder);
    EXPECT_EQ(kindOf(link, socket), FileKind::other);
    EXPECT_EQ(kindOf(FILE_ATTRIBUTE_NORMAL, 0), FileKind::regular);
}

TEST(FileIdentityOnWindows, WideOnesAreMixedAndNarrowOnesStay)
{
    FILE_ID_128 id{};
    id.Identifier[0] = 7;
    EXPECT_EQ(windows_os::foldedIndex(id), 7u);
    id.Identifier[8] = 1;
    const auto one = windows_os::foldedIndex(id);
    id.Identifier[8] = 2;
    EXPECT_NE(windows_os::foldedIndex(id), one);
    EXPECT_NE(one, 7u);
}

TEST_F(WindowsFileSystemTest, PathsOfAnyLengthAreListedAndRead)
{
    std::filesystem::path deep = tree_.path();
    for (int i = 0; i < 12; ++i) {
        deep /= std::wstring(60, static_cast<wchar_t>(L'a' + i));
        ASSERT_NE(::CreateDirectoryW(systemPath(deep).c_str(), nullptr), 0) << i;
    }
    const auto file = deep / L"file.";
    {
        const Handle made(::CreateFileW(systemPath(file).c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, 0, nullptr));
        DWORD written = 0;
        ASSERT_NE(::WriteFile(made.get(), "deep", 4, &written, nullptr), 0);
    }
    std::vector<std::string> names;
    const auto note = [&](const DirectoryEntry& entry) {
        names.push_back(testing::posix(entry.name));
        return true;
    };
    EXPECT_TRUE(files_->enumerate(deep, Links::followed, note).ok());
    EXPECT_THAT(names, ::testing::ElementsAre("file."));
    EXPECT_EQ(contents(file), "deep");
    std::error_code ignored;
    for (::DeleteFileW(systemPath(file).c_str()); deep != tree_.path(); deep = deep.parent_path())
        ::RemoveDirectoryW(systemPath(deep).c_str());
}

TEST_F(WindowsFileSystemTest, ListingWithoutIdentitiesTellsTheRest)
{
    tree_.write("f/file", "12345");
    tree_.folder("f/folder");
    std::map<std::string, FileInfo> with, without;
    const auto into = [](auto& infos) {
        return [&infos](const DirectoryEntry& entry) {
            return infos.emplace(testing::posix(entry.name), entry.info).second;
        };
    };
    ASSERT_TRUE(windows_os::listFolder(tree_.path("f"), Links::followed, into(with)).ok());
    ASSERT_TRUE(windows_os::listWithoutIdentities(tree_.path("f"), Links::followed, into(without)).ok());
    ASSERT_EQ(without.size(), 2u);
    for (auto& [name, info] : with) {
        EXPECT_TRUE(info.identity.known());
        EXPECT_FALSE(without.at(name).identity.known());
        EXPECT_EQ(without.at(name).kind, info.kind);
        EXPECT_EQ(without.at(name).size, info.size);
        EXPECT_EQ(without.at(name).modified, info.modified);
        EXPECT_EQ(without.at(name).attributes, info.attributes);
    }
    EXPECT_TRUE(windows_os::listWithoutIdentities(tree_.folder("empty"), Links::followed, into(without)).ok());
}

TEST_F(WindowsFileSystemTest, AReaderKeepsNobodyFromTheFile)
{
    const auto file = tree_.write("file", "12345");
    const auto reader = files_->openForReading(file, ReadPattern::sequential);
    ASSERT_TRUE(reader.ok());
    EXPECT_NE(::MoveFileExW(file.c_str(), tree_.path("moved").c_str(), 0), 0);
    EXPECT_NE(::DeleteFileW(tree_.path("moved").c_str()), 0);
}

TEST_F(WindowsFileSystemTest, AFileThatSomebodyKeepsForHimselfIsDenied)
{
    const auto file = tree_.write("file", "12345");
    const Handle kept(::CreateFileW(file.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr));
    const auto reader = files_->openForReading(file, ReadPattern::sequential);
    ASSERT_FALSE(reader.ok());
    EXPECT_EQ(reader.error().kind, ErrorKind::accessDenied);
    EXPECT_EQ(reader.error().systemCode, ERROR_SHARING_VIOLATION);
    EXPECT_NE(reader.error().detail, "");
    EXPECT_TRUE(files_->details(file, Links::asThemselves).ok()) << "looking needs no sharing";
}

TEST_F(WindowsFileSystemTest, AttributesAreThoseOfTheSystem)
{
    const auto file = tree_.write("file", "");
    const DWORD wanted = FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM;
    ::SetFileAttributesW(file.c_str(), wanted);
    EXPECT_EQ(files_->details(file, Links::followed)->attributes & wanted,
              attribute::readOnly | attribute::hidden | attribute::system);
    ::SetFileAttributesW(file.c_str(), FILE_ATTRIBUTE_NORMAL);
}

TEST_F(WindowsFileSystemTest, TheOwnerHasOneNumberAndAName)
{
    const auto a = files_->details(tree_.write("a", ""), Links::followed);
    const auto b = files_->details(tree_.write("b", ""), Links::followed);
    ASSERT_TRUE(a.ok() && b.ok());
    EXPECT_NE(a->ownerId, 0u);
    EXPECT_EQ(a->ownerId, b->ownerId);
    const auto name = files_->ownerName(a->ownerId);
    ASSERT_TRUE(name.ok());
    EXPECT_FALSE(name->empty());
    EXPECT_EQ(files_->ownerName(a->ownerId + 1).error().kind, ErrorKind::notFound);
}

TEST_F(WindowsFileSystemTest, DevicesAreNotOpened)
{
    for (const wchar_t* device : {LR"(\\.\NUL)", LR"(\\.\pipe\kelvane-none)"}) {
        const auto reader = files_->openForReading(device, ReadPattern::sequential);
        ASSERT_FALSE(reader.ok()) << testing::posix(NativeString(device));
        EXPECT_TRUE(reader.error().kind == ErrorKind::wrongType || reader.error().kind == ErrorKind::notFound);
    }
}

}  // namespace
}  // namespace kelvane
