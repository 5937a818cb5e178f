#include "platform/file_namespace.h"

#include <map>
#include <thread>

#include "support/fakes.h"
#include "support/memory_file_system.h"
#include "support/paths.h"

namespace kelvane {
namespace {

using Place = ShellItem::Place;
using ::testing::ElementsAre;
using ::testing::Key;
using ::testing::UnorderedElementsAre;

// Archives as lists of entry paths, a folder's ending in "/"; every entry holds its own path.
class FakeArchives final : public ArchiveFolders {
public:
    bool looksLikeArchive(NativeView fileName) const override { return fileName.ends_with(testing::native(".zip")); }

    Status list(const std::filesystem::path& archive, const std::function<bool(const ArchiveEntry&)>& sink) override
    {
        ++lists;
        std::uint64_t ordinal = 0;
        for (std::string path : entries[testing::posix(archive)]) {
            ArchiveEntry entry;
            entry.size = {path.size()};
            entry.ordinal = ordinal++;
            if (path.back() == '/') {
                path.pop_back();
                entry.kind = FileKind::folder;
            }
            entry.path = path;
            if (!sink(entry))
                return {};
        }
        return damaged ? Status(Error{ErrorKind::invalid, 0, "damaged"}) : Status();
    }

    Result<std::unique_ptr<ContentReader>> open(const std::filesystem::path& archive, std::uint64_t ordinal) override
    {
        opened = testing::posix(archive) + "#" + std::to_string(ordinal);
        return Error{ErrorKind::notSupported, 0, ""};
    }

    std::map<std::string, std::vector<std::string>> entries;
    std::atomic<int> lists = 0;
    bool damaged = false;
    std::string opened;
};

class FileNamespaceTest : public ::testing::Test {
protected:
    Ref<ShellItem> parse(const std::string& name)
    {
        const auto item = shell_->parse(testing::native(name));
        EXPECT_TRUE(item.ok()) << name;
        return item ? *item : Ref<ShellItem>();
    }

    std::optional<ErrorKind> parseFault(const std::string& name)
    {
        const auto item = shell_->parse(testing::native(name));
        return item ? std::nullopt : std::optional(item.error().kind);
    }

    std::map<std::string, Ref<ShellItem>> list(const Ref<ShellItem>& folder, const ListingOptions& options = {})
    {
        std::map<std::string, Ref<ShellItem>> items;
        status_ = shell_->enumerate(folder, options, [&](Ref<ShellItem> item) {
            items.emplace(testing::posix(item->name()), item);
            return true;
        });
        return items;
    }

    Ref<ShellItem> archive(const std::string& path, std::vector<std::string> entries)
    {
        files_.addFile(path, "archive");
        archives_.entries[path] = std::move(entries);
        return parse(path + "/");
    }

    testing::MemoryFileSystem files_;
    FakeArchives archives_;
    testing::SimpleFolding folding_;
    std::unique_ptr<ShellNamespace> shell_ = makeFileNamespace(files_, &archives_, folding_);
    Status status_;
};

TEST_F(FileNamespaceTest, ParsesPathsIntoItems)
{
    files_.addFile("/data/file", "12345");
    files_.addOther("/data/pipe");

    EXPECT_EQ(testing::posix(parse("/data//./file")->fullName()), "/data/file");
    EXPECT_EQ(parse("/data/file")->info().size.bytes, 5u);
    EXPECT_EQ(testing::posix(parse("/data/")->fullName()), "/data");
    EXPECT_TRUE(parse("/")->isFolder());
    EXPECT_EQ(parseFault("/data/none"), ErrorKind::notFound);
    EXPECT_EQ(parseFault("/data/file/"), ErrorKind::wrongType);
    EXPECT_EQ(parseFault("/data/pipe"), ErrorKind::wrongType);
    EXPECT_EQ(parseFault(""), ErrorKind::invalid);
}

TEST_F(FileNamespaceTest, ARootThatIsALinkStandsForWhatItLeadsTo)
{
    files_.addFile("/data/file", "12345");
    files_.addSymbolicLink("/to-folder", "/data");
    files_.addSymbolicLink("/to-file", "/data/file");

    const auto folder = parse("/to-folder");
    EXPECT_TRUE(folder->isFolder());
    EXPECT_FALSE(folder->isReparsePoint());
    EXPECT_EQ(testing::posix(list(folder).at("file")->fullName()), "/to-folder/file");
    EXPECT_TRUE(shell_->open(*parse("/to-file"), ReadPattern::sequential).ok());
}

TEST_F(FileNamespaceTest, ListsWhatTheOptionsAskFor)
{
    files_.addFile("/data/file", "");
    files_.addFile("/data/.hidden", "");
    files_.addFile("/data/x.zip", "");
    files_.addSymbolicLink("/data/link", "file");
    files_.addOther("/data/pipe");

    const auto folder = parse("/data");
    auto items = list(folder);
    EXPECT_THAT(items, UnorderedElementsAre(Key("file"), Key(".hidden"), Key("x.zip"), Key("link")));
    EXPECT_EQ(items.at("x.zip")->place(), Place::fileSystem);
    EXPECT_EQ(items.at("link")->info().kind, FileKind::link);
    EXPECT_FALSE(shell_->open(*items.at("link"), ReadPattern::sequential).ok()) << "a link that is not followed";

    items = list(folder, {.links = Links::followed, .includeHidden = false, .archivesAsFolders = true});
    EXPECT_THAT(items, UnorderedElementsAre(Key("file"), Key("x.zip"), Key("link")));
    EXPECT_EQ(items.at("x.zip")->place(), Place::archive);
    EXPECT_EQ(items.at("link")->info().kind, FileKind::regular);
    EXPECT_TRUE(shell_->open(*items.at("link"), ReadPattern::sequential).ok());
}

TEST_F(FileNamespaceTest, AnArchiveIsATreeWithTheFoldersThatAreOnlyImplied)
{
    const auto top = archive("/data/x.zip", {"a/b/one", "named/", "two", "a/three", "a/b/one"});

    EXPECT_THAT(list(top), ElementsAre(Key("a"), Key("named"), Key("two")));
    const auto a = list(top).at("a");
    EXPECT_TRUE(a->isFolder());
    EXPECT_THAT(list(a), ElementsAre(Key("b"), Key("three")));
    EXPECT_THAT(list(list(top).at("named")), ElementsAre());
    const auto inB = list(list(a).at("b"));
    ASSERT_THAT(inB, ElementsAre(Key("one")));
    EXPECT_EQ(testing::posix(inB.at("one")->fullName()), "/data/x.zip/a/b/one");
    EXPECT_EQ(shell_->typeCode(*inB.at("one")), type_code::archive);
    EXPECT_EQ(shell_->details(*inB.at("one"))->size.bytes, 7u);
    EXPECT_FALSE(shell_->open(*inB.at("one"), ReadPattern::sequential).ok());
    EXPECT_EQ(archives_.opened, "/data/x.zip#4") << "the last entry of a name counts";
    EXPECT_EQ(archives_.lists, 1);
}

TEST_F(FileNamespaceTest, PathsLeadIntoArchives)
{
    archive("/data/x.zip", {"folder/file.txt"});

    EXPECT_EQ(parse("/data/x.zip")->place(), Place::fileSystem);
    EXPECT_EQ(parse("/data/x.zip/")->place(), Place::archive);
    EXPECT_TRUE(parse("/data/x.zip/folder")->isFolder());
    const auto file = parse("/data/x.zip/folder/file.txt");
    EXPECT_EQ(file->place(), Place::insideArchive);
    EXPECT_EQ(testing::posix(file->fullName()), "/data/x.zip/folder/file.txt");
    EXPECT_EQ(parseFault("/data/x.zip/folder/none"), ErrorKind::notFound);
    EXPECT_EQ(makeFileNamespace(files_, nullptr, folding_)->parse(testing::native("/data/x.zip/folder")).error().kind,
              ErrorKind::notFound);
}

TEST_F(FileNamespaceTest, AnArchiveThatChangedIsListedAnew)
{
    const auto top = archive("/x.zip", {"old"});
    EXPECT_THAT(list(top), ElementsAre(Key("old")));

    archives_.entries["/x.zip"] = {"new"};
    files_.setContents("/x.zip", "another");

    EXPECT_THAT(list(top), ElementsAre(Key("new")));
}

TEST_F(FileNamespaceTest, DamageIsToldOnceForAnArchive)
{
    archives_.damaged = true;
    const auto top = archive("/x.zip", {"folder/file"});

    const auto folder = list(top).at("folder");
    ASSERT_FALSE(status_.ok());
    EXPECT_EQ(status_.error().kind, ErrorKind::invalid);
    EXPECT_THAT(list(folder), ElementsAre(Key("file")));
    EXPECT_TRUE(status_.ok());
}

TEST_F(FileNamespaceTest, AFileAndAFolderOfOneNameAreBothGiven)
{
    const auto top = archive("/x.zip", {"same", "same/inner"});
    std::vector<bool> folders;
    const Status status = shell_->enumerate(top, {}, [&](const Ref<ShellItem>& item) {
        folders.push_back(item->isFolder());
        return true;
    });
    EXPECT_TRUE(status.ok());
    EXPECT_THAT(folders, ElementsAre(true, false));
}

TEST_F(FileNamespaceTest, ThreadsThatAskForOneArchiveAtOnceReadItOnce)
{
    const auto top = archive("/x.zip", {"a", "b"});
    {
        std::vector<std::jthread> threads;
        for (int i = 0; i < 8; ++i)
            threads.emplace_back([&] { EXPECT_TRUE(shell_->enumerate(top, {}, [](auto&&) { return true; }).ok()); });
    }
    EXPECT_EQ(archives_.lists, 1);
}

}  // namespace
}  // namespace kelvane
