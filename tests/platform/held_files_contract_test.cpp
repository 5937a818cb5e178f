// What every version of the port of held files promises, on real files of this system.
#include <algorithm>
#include <fstream>

#include "platform/platform.h"
#include "support/paths.h"
#include "support/real_files.h"
#include "support/temp_tree.h"

namespace kelvane {
namespace {

using testing::native;
using testing::TempTree;

class HeldFilesContract : public ::testing::Test {
protected:
    void SetUp() override { folder_ = openFolder("f"); }

    std::unique_ptr<HeldFolder> openFolder(const std::string& name)
    {
        auto folder = held().openFolder(tree_.folder(name));
        EXPECT_TRUE(folder.ok()) << (folder ? "" : folder.error().detail);
        return folder ? std::move(*folder) : nullptr;
    }

    std::unique_ptr<HeldFile> open(const std::string& name)
    {
        auto file = folder_->open(native(name));
        EXPECT_TRUE(file.ok()) << name;
        return file ? std::move(*file) : nullptr;
    }

    void write(const std::string& name, const std::string& contents) { tree_.write("f/" + name, contents); }
    std::string read(const std::string& name) { return tree_.read("f/" + name); }
    HeldFiles& held() { return platform_->heldFiles(); }

    FileIdentity identity(const std::string& name)
    {
        const auto details = folder_->look(native(name));
        return details ? details->identity : FileIdentity{};
    }

    bool exists(const std::string& name) { return folder_->look(native(name)).ok(); }

    static std::optional<ErrorKind> fault(const Status& status)
    {
        return status ? std::nullopt : std::optional(status.error().kind);
    }
    template <class T>
    static std::optional<ErrorKind> fault(const Result<T>& result)
    {
        return result ? std::nullopt : std::optional(result.error().kind);
    }

    static std::string contentsOf(HeldFile& file)
    {
        std::string text(1000, '\0');
        const auto got = file.readAt(0, std::as_writable_bytes(std::span(text)));
        text.resize(got ? *got : 0);
        return text;
    }

    TempTree tree_;
    std::unique_ptr<Platform> platform_ = makePlatform();
    std::unique_ptr<HeldFolder> folder_;
};

TEST_F(HeldFilesContract, FoldersAndFilesAreOpenedAsWhatTheyAre)
{
    write("file", "x");
    tree_.folder("f/inner");
    const bool hasLink = testing::makeSymbolicLink(tree_.path("f/link"), native("file"));

    EXPECT_EQ(folder_->path(), tree_.path("f"));
    EXPECT_EQ(fault(held().openFolder(tree_.path("none"))), ErrorKind::notFound);
    EXPECT_FALSE(held().openFolder(tree_.path("f/file")).ok());
    EXPECT_EQ(fault(folder_->open(native("inner"))), ErrorKind::wrongType);
    EXPECT_EQ(fault(folder_->open(native("none"))), ErrorKind::notFound);
    EXPECT_EQ(fault(folder_->look(native("none"))), ErrorKind::notFound);
    EXPECT_EQ(folder_->look(native("inner"))->kind, FileKind::folder);
    EXPECT_EQ(fault(folder_->remove(native("inner"))).has_value(), true);
    if (hasLink) {
        EXPECT_EQ(fault(folder_->open(native("link"))), ErrorKind::wrongType);
        EXPECT_EQ(folder_->look(native("link"))->kind, FileKind::link);
    }
}

TEST_F(HeldFilesContract, NamesAreSingleOnes)
{
    write("file", "x");
    tree_.write("outside", "y");
    for (const std::string name : {"", ".", "..", "../outside", "inner/file"}) {
        EXPECT_FALSE(folder_->look(native(name)).ok()) << name;
        EXPECT_FALSE(folder_->open(native(name)).ok()) << name;
        EXPECT_FALSE(folder_->create(native(name)).ok()) << name;
        EXPECT_FALSE(folder_->rename(native("file"), native(name)).ok()) << name;
        EXPECT_FALSE(folder_->replace(native("file"), native(name)).ok()) << name;
        EXPECT_FALSE(folder_->replace(native(name), native("file")).ok()) << name;
        EXPECT_FALSE(folder_->exchange(native("file"), native(name)).ok()) << name;
        EXPECT_FALSE(folder_->remove(native(name)).ok()) << name;
    }
    EXPECT_EQ(tree_.read("outside"), "y");
    EXPECT_EQ(read("file"), "x");
}

TEST_F(HeldFilesContract, AHeldFileIsTheSameWhateverHappensToItsName)
{
    write("file", "the old one");
    write("other", "another");
    const auto file = open("file");
    const auto before = file->details();
    ASSERT_TRUE(before.ok());
    EXPECT_EQ(before->identity, identity("file"));
    EXPECT_EQ(before->size.bytes, 11u);

    std::string text(4, '\0');
    EXPECT_EQ(*file->readAt(8, std::as_writable_bytes(std::span(text))), 3u);
    EXPECT_EQ(text.substr(0, 3), "one");
    EXPECT_EQ(*file->readAt(~std::uint64_t{0} / 2, std::as_writable_bytes(std::span(text))), 0u);

    ASSERT_TRUE(folder_->rename(native("file"), native("moved")).ok());
    ASSERT_TRUE(folder_->rename(native("other"), native("file")).ok());
    std::ofstream(tree_.path("f/moved"), std::ios::app) << ", longer";
    EXPECT_EQ(contentsOf(*file), "the old one, longer");
    EXPECT_EQ(file->details()->size.bytes, 19u);
    EXPECT_EQ(file->details()->identity, before->identity);
    EXPECT_NE(identity("file"), before->identity);
    ASSERT_TRUE(folder_->remove(native("moved")).ok());

    EXPECT_EQ(exists("moved"), !testing::openFilesMove());
    EXPECT_EQ(contentsOf(*file), "the old one, longer");
    EXPECT_EQ(read("file"), "another");
}

TEST_F(HeldFilesContract, AFolderIsTheSameWhateverHappensToItsPath)
{
    if (!testing::pathsArePosix)
        GTEST_SKIP() << "a folder that is held cannot be renamed here";
    write("file", "here");
    std::filesystem::rename(tree_.path("f"), tree_.path("g"));
    tree_.write("f/file", "an impostor");

    ASSERT_TRUE(folder_->remove(native("file")).ok());

    EXPECT_EQ(tree_.read("f/file"), "an impostor");
    EXPECT_FALSE(std::filesystem::exists(tree_.path("g/file")));
}

TEST_F(HeldFilesContract, AHeldFileGetsFurtherNamesInAnyFolder)
{
    write("kept", "contents");
    write("taken", "others");
    const auto kept = open("kept");
    const auto other = openFolder("g");
    ASSERT_TRUE(folder_->rename(native("kept"), native("moved")).ok());
    write("kept", "an impostor");

    const Status linked = other->hardLink(*kept, native("link"));
    if (!testing::openFilesMove()) {
        EXPECT_EQ(fault(linked), ErrorKind::changed);
        EXPECT_EQ(fault(other->look(native("link"))), ErrorKind::notFound);
        GTEST_SKIP() << "this system cannot tell where an open file has moved";
    }
    EXPECT_EQ(tree_.read("g/link"), "contents");
    EXPECT_EQ(other->look(native("link"))->identity, kept->details()->identity);
    EXPECT_EQ(kept->details()->links, 2u);
    EXPECT_EQ(fault(folder_->hardLink(*kept, native("taken"))), ErrorKind::exists);
    EXPECT_EQ(read("taken"), "others");
}

TEST_F(HeldFilesContract, SymbolicLinksHoldWhatTheyAreGiven)
{
    if (!TempTree::canLink())
        GTEST_SKIP() << "no symbolic links can be made here";
    write("taken", "others");
    const std::filesystem::path target = tree_.path("f/target");

    ASSERT_TRUE(folder_->symbolicLink(target, native("link")).ok());

    EXPECT_EQ(*folder_->readLink(native("link")), target);
    EXPECT_EQ(folder_->look(native("link"))->kind, FileKind::link);
    EXPECT_EQ(fault(folder_->symbolicLink(target, native("taken"))), ErrorKind::exists);
    EXPECT_EQ(fault(folder_->readLink(native("taken"))), ErrorKind::wrongType);
    ASSERT_TRUE(folder_->remove(native("link")).ok());
    EXPECT_FALSE(exists("link"));
}

TEST_F(HeldFilesContract, NamesAreExchangedInOneStepOrNotAtAll)
{
    write("a", "first");
    write("b", "second");
    const Status exchanged = folder_->exchange(native("a"), native("b"));
    if (!exchanged) {
        EXPECT_EQ(fault(exchanged), ErrorKind::notSupported);
        EXPECT_EQ(read("a"), "first");
        EXPECT_EQ(read("b"), "second");
        return;
    }
    EXPECT_EQ(read("a"), "second");
    EXPECT_EQ(read("b"), "first");
    EXPECT_EQ(fault(folder_->exchange(native("a"), native("none"))), ErrorKind::notFound);
    EXPECT_EQ(read("a"), "second");
}

TEST_F(HeldFilesContract, RenamingTakesNothingAwayAndReplacingDoes)
{
    write("a", "first");
    write("b", "second");
    const FileIdentity first = identity("a");

    EXPECT_EQ(fault(folder_->rename(native("a"), native("b"))), ErrorKind::exists);
    EXPECT_EQ(read("b"), "second");
    EXPECT_EQ(fault(folder_->rename(native("none"), native("free"))), ErrorKind::notFound);
    EXPECT_FALSE(exists("free"));
    ASSERT_TRUE(folder_->replace(native("a"), native("b")).ok());
    EXPECT_EQ(read("b"), "first");
    EXPECT_EQ(identity("b"), first);
    EXPECT_FALSE(exists("a"));
    ASSERT_TRUE(folder_->hardLink(*open("b"), native("c")).ok());
    EXPECT_TRUE(folder_->replace(native("b"), native("c")).ok()) << "names of one file";
    EXPECT_TRUE(exists("b") && exists("c"));

    for (const char* name : {"read-only", "over", "new"})
        write(name, name);
    for (const char* name : {"read-only", "over"})
        std::filesystem::permissions(tree_.path("f") / name, std::filesystem::perms::owner_read);
    EXPECT_TRUE(folder_->replace(native("new"), native("over")).ok());
    EXPECT_EQ(read("over"), "new");
    EXPECT_TRUE(folder_->remove(native("read-only")).ok());
    EXPECT_EQ(fault(folder_->remove(native("read-only"))), ErrorKind::notFound);
    EXPECT_TRUE(folder_->flush().ok());
}

TEST_F(HeldFilesContract, ACopyWithItsMetadataIsTheSameFileAgain)
{
    write("file", "contents");
    static_cast<void>(testing::makeStream(tree_.path("f/file"), "note", "kept"));
    const auto modified = std::filesystem::file_time_type::clock::now() - std::chrono::hours(1000);
    std::filesystem::last_write_time(tree_.path("f/file"), modified);
    std::filesystem::permissions(tree_.path("f/file"), std::filesystem::perms::owner_read);
    const auto metadata = open("file")->metadata();
    ASSERT_TRUE(metadata.ok());
    EXPECT_TRUE(std::is_sorted(metadata->attributes.begin(), metadata->attributes.end()));

    {
        auto copy = folder_->create(native("copy"));
        ASSERT_TRUE(copy.ok());
        EXPECT_TRUE((*copy)->write(std::as_bytes(std::span(std::string_view("cont")))).ok());
        EXPECT_TRUE((*copy)->write(std::as_bytes(std::span(std::string_view("ents")))).ok());
        EXPECT_TRUE((*copy)->setMetadata(*metadata).ok());
        EXPECT_TRUE((*copy)->flush().ok());
        EXPECT_EQ((*copy)->details()->size.bytes, 8u);
        EXPECT_EQ((*copy)->details()->identity, identity("copy"));
    }

    const auto given = open("copy")->metadata();
    ASSERT_TRUE(given.ok());
    EXPECT_EQ(given->owner, metadata->owner);
    EXPECT_EQ(given->group, metadata->group);
    EXPECT_EQ(given->permissions, metadata->permissions);
    EXPECT_EQ(given->modified, metadata->modified);
    EXPECT_EQ(given->attributes, metadata->attributes);
    EXPECT_EQ(read("copy"), "contents");
    EXPECT_EQ(fault(folder_->create(native("copy"))), ErrorKind::exists);
    EXPECT_EQ(read("copy"), "contents");
}

TEST_F(HeldFilesContract, SharedBlocksAreCheckedByTheSystemOrRefused)
{
    write("a", std::string(300'000, 'x'));
    write("b", std::string(300'000, 'x'));
    write("shorter", std::string(299'999, 'x'));
    write("differs", std::string(299'999, 'x') + 'y');
    const auto a = open("a");
    const auto before = open("b")->metadata();

    const Status shared = open("b")->shareBlocks(*a);
    if (shared) {
        EXPECT_EQ(*open("b")->sharedBytes(), 300'000u);
    } else {
        EXPECT_EQ(fault(shared), ErrorKind::notSupported);
        EXPECT_EQ(*open("b")->sharedBytes(), 0u);
    }
    EXPECT_EQ(open("b")->metadata()->modified, before->modified);
    EXPECT_EQ(fault(open("differs")->shareBlocks(*a)), shared ? ErrorKind::changed : ErrorKind::notSupported);
    EXPECT_FALSE(open("shorter")->shareBlocks(*a).ok());
    EXPECT_EQ(read("b"), std::string(300'000, 'x'));
    EXPECT_EQ(read("differs").back(), 'y');
}

TEST_F(HeldFilesContract, WorkGoesOnBelowUnusualNames)
{
    for (const std::string& name : testing::unusualNames()) {
        const auto folder = openFolder("unusual/" + name);
        auto file = folder->create(native(name));
        ASSERT_TRUE(file.ok()) << name;
        ASSERT_TRUE((*file)->write(std::as_bytes(std::span(name))).ok());
        file->reset();
        auto opened = folder->open(native(name));
        ASSERT_TRUE(opened.ok()) << name;
        EXPECT_EQ(contentsOf(**opened), name);
        ASSERT_TRUE(folder->hardLink(**opened, native("plain")).ok()) << name;
        opened->reset();
        ASSERT_TRUE(folder->replace(native("plain"), native(name)).ok()) << name;
        ASSERT_TRUE(folder->remove(native(name)).ok()) << name;
        EXPECT_FALSE(folder->look(native(name)).ok()) << name;
    }
}

}  // namespace
}  // namespace kelvane
