#include "platform/file_system_contract.h"

#include <map>

namespace kelvane {
namespace {

using ::testing::ElementsAre;
using testing::FileWorld;
using ::testing::IsEmpty;
using ::testing::Key;
using ::testing::UnorderedElementsAre;
using testing::WorldMaker;

using Listing = std::map<std::string, FileInfo>;

class FileSystemContract : public ::testing::TestWithParam<WorldMaker> {
protected:
    FileSystem& files() { return world_->files(); }

    Listing list(const std::string& folder, Links links = Links::asThemselves)
    {
        Listing listing;
        const Status status = files().enumerate(world_->path(folder), links, [&](const DirectoryEntry& entry) {
            listing.emplace(testing::posix(entry.name), entry.info);
            return true;
        });
        EXPECT_TRUE(status.ok());
        return listing;
    }

    std::unique_ptr<ContentReader> open(const std::string& name, Links links = Links::asThemselves)
    {
        auto reader = files().openForReading(world_->path(name), ReadPattern::sequential, links);
        EXPECT_TRUE(reader.ok()) << name;
        return reader ? std::move(*reader) : nullptr;
    }

    std::string read(ContentReader& reader, std::size_t most)
    {
        std::string text(most, '\0');
        const auto got = reader.read(std::as_writable_bytes(std::span(text)));
        EXPECT_TRUE(got.ok());
        text.resize(got ? *got : 0);
        return text;
    }

    std::optional<ErrorKind> openFault(const std::string& name, Links links = Links::asThemselves)
    {
        const auto reader = files().openForReading(world_->path(name), ReadPattern::sequential, links);
        return reader ? std::nullopt : std::optional(reader.error().kind);
    }

    // For tests that are about links, or that need something else than files.
    static std::string noLinks() { return "no symbolic links can be made here"; }

    std::unique_ptr<FileWorld> world_ = GetParam().make();
};

TEST_P(FileSystemContract, ListsEveryEntryWithItsKindAndSize)
{
    world_->write("f/file", "12345");
    world_->write("f/.hidden", "");
    world_->write("f/folder/inner", "x");
    world_->write("f/folder-2/inner", "x");
    world_->hide("f/.hidden");
    std::map<std::string, FileKind> expected{{"file", FileKind::regular},
                                             {".hidden", FileKind::regular},
                                             {"folder", FileKind::folder},
                                             {"folder-2", FileKind::folder}};
    if (world_->link("f/link", "file"))
        expected["link"] = FileKind::link;
    if (world_->other("f/pipe"))
        expected["pipe"] = FileKind::other;

    const Listing listing = list("f");

    ASSERT_EQ(listing.size(), expected.size());
    for (const auto& [name, kind] : expected) {
        EXPECT_EQ(listing.at(name).kind, kind) << name;
        EXPECT_EQ((listing.at(name).attributes & attribute::directory) != 0, kind == FileKind::folder) << name;
        EXPECT_EQ((listing.at(name).attributes & attribute::reparsePoint) != 0, kind == FileKind::link) << name;
        EXPECT_EQ((listing.at(name).attributes & attribute::hidden) != 0, name == ".hidden") << name;
    }
    EXPECT_EQ(listing.at("file").size.bytes, 5u);
    EXPECT_EQ(listing.at("folder").size.bytes, 0u);
    EXPECT_GT(listing.at("file").modified.ticks, 0);
}

TEST_P(FileSystemContract, ListingAndAskingForOneFileAgree)
{
    world_->write("f/file", "12345");
    world_->folder("f/folder");
    if (!world_->link("f/link", "file"))
        std::cout << noLinks() << '\n';

    for (const Links links : {Links::asThemselves, Links::followed}) {
        for (const auto& [name, listed] : list("f", links)) {
            const auto details = files().details(world_->path("f/" + name), links);
            ASSERT_TRUE(details.ok());
            EXPECT_EQ(details->kind, listed.kind) << name;
            EXPECT_EQ(details->attributes, listed.attributes) << name;
            EXPECT_EQ(details->size, listed.size) << name;
            EXPECT_EQ(details->modified, listed.modified) << name;
            EXPECT_EQ(details->identity, listed.identity) << name;
        }
    }
}

TEST_P(FileSystemContract, FollowedLinksDescribeWhatTheyLeadTo)
{
    world_->write("f/target/file", "12345");
    if (!world_->link("f/to-file", "target/file") || !world_->link("f/to-folder", "target") ||
        !world_->link("f/through", "to-folder/../to-file"))
        GTEST_SKIP() << noLinks();

    const Listing listing = list("f", Links::followed);
    const auto target = files().details(world_->path("f/target/file"), Links::asThemselves);

    for (const char* name : {"to-file", "through"}) {
        EXPECT_EQ(listing.at(name).kind, FileKind::regular);
        EXPECT_EQ(listing.at(name).size.bytes, 5u);
        EXPECT_EQ(listing.at(name).identity, target->identity);
    }
    EXPECT_EQ(listing.at("to-folder").kind, FileKind::folder);
    for (const auto& [name, info] : listing)
        EXPECT_EQ((info.attributes & attribute::reparsePoint) != 0, name != "target") << name;
    EXPECT_THAT(list("f/to-folder"), ElementsAre(Key("file")));
}

TEST_P(FileSystemContract, LinksThatLeadNowhereAreGivenAsThemselves)
{
    world_->folder("f");
    if (!world_->link("f/dangling", "nothing") || !world_->link("f/loop-a", "loop-b") ||
        !world_->link("f/loop-b", "loop-a"))
        GTEST_SKIP() << noLinks();

    for (const auto& [name, info] : list("f", Links::followed)) {
        EXPECT_EQ(info.kind, FileKind::link) << name;
        const auto details = files().details(world_->path("f/" + name), Links::followed);
        ASSERT_FALSE(details.ok()) << name;
        EXPECT_EQ(details.error().kind, ErrorKind::notFound) << name;
        EXPECT_EQ(openFault("f/" + name, Links::followed), ErrorKind::notFound);
    }
}

TEST_P(FileSystemContract, HardLinksShareOneIdentity)
{
    world_->write("f/a", "same");
    world_->write("f/b", "same");
    world_->hardLink("f/c", "f/a");

    const Listing listing = list("f");

    EXPECT_TRUE(listing.at("a").identity.known());
    EXPECT_EQ(listing.at("a").identity.volume, files().volumeFacts(world_->path("f/a"))->serial);
    EXPECT_EQ(listing.at("a").identity, listing.at("c").identity);
    EXPECT_NE(listing.at("a").identity, listing.at("b").identity);
    EXPECT_EQ(files().details(world_->path("f/a"), Links::asThemselves)->links, 2u);
    EXPECT_EQ(files().details(world_->path("f/b"), Links::asThemselves)->links, 1u);
}

TEST_P(FileSystemContract, NamesAreUsedByteForByte)
{
    const std::vector<std::string> names = world_->unusualNames();
    for (const std::string& name : names)
        world_->write("f/" + name, name);

    const Listing listing = list("f");

    ASSERT_EQ(listing.size(), names.size());
    for (const std::string& name : names) {
        ASSERT_TRUE(listing.contains(name));
        EXPECT_EQ(read(*open("f/" + name), 300), name);
    }
}

TEST_P(FileSystemContract, AListingSurvivesRemovalsAndEndsWhenItsSinkHasEnough)
{
    for (int i = 0; i < 50; ++i)
        world_->write("f/" + std::to_string(i), "");
    int seen = 0;
    std::string last;
    const auto removeThenStop = [&](const DirectoryEntry& entry) {
        for (int i = 0; seen == 0 && i < 47; ++i)
            world_->remove("f/" + std::to_string(i));
        last = testing::posix(entry.name);
        return ++seen < 2;
    };

    EXPECT_TRUE(files().enumerate(world_->path("f"), Links::asThemselves, removeThenStop).ok());
    EXPECT_EQ(seen, 2);
    // Linux tells of each entry when it is given, Windows of many at once.
    if (GetParam().name == "system" && testing::pathsArePosix) {
        EXPECT_GE(std::stoi(last), 47) << "an entry that is gone was given";
    }
}

TEST_P(FileSystemContract, OnlyFoldersAreListedAndOnlyRegularFilesOpened)
{
    world_->write("f/file", "12345");
    const bool hasLink = world_->link("f/link", "file");
    const bool hasPipe = world_->other("f/pipe");
    const auto nothing = [](const DirectoryEntry&) { return true; };

    EXPECT_EQ(files().enumerate(world_->path("f/file"), Links::followed, nothing).error().kind, ErrorKind::wrongType);
    EXPECT_EQ(files().enumerate(world_->path("f/none"), Links::followed, nothing).error().kind, ErrorKind::notFound);
    EXPECT_EQ(openFault("f"), ErrorKind::wrongType);
    EXPECT_EQ(openFault("f/pipe"), hasPipe ? ErrorKind::wrongType : ErrorKind::notFound);
    EXPECT_EQ(openFault("f/link"), hasLink ? ErrorKind::wrongType : ErrorKind::notFound);
    if (hasLink) {
        EXPECT_EQ(openFault("f/link", Links::followed), std::nullopt);
    }
    EXPECT_EQ(openFault("f/none"), ErrorKind::notFound);
    EXPECT_EQ(openFault("f/file/inner"), ErrorKind::notFound);
}

TEST_P(FileSystemContract, ReadsExactlyTheContentsInPieces)
{
    std::string contents;
    for (int i = 0; contents.size() < 700'000; ++i)
        contents += std::to_string(i) + '\n';
    world_->write("big", contents);
    const auto reader = open("big");

    std::string all = read(*reader, 1);
    all += read(*reader, 0);
    all += read(*reader, 300'000);
    ASSERT_TRUE(reader->skip(100'000).ok());
    all += std::string(contents, all.size(), 100'000);
    all += read(*reader, 1'000'000);

    EXPECT_EQ(all, contents);
    for (int past = 0; past < 2; ++past) {
        EXPECT_TRUE(reader->skip(~std::uint64_t{0}).ok());
        EXPECT_EQ(read(*reader, 10), "");
    }
}

TEST_P(FileSystemContract, AnOpenFileNoticesThatItGrew)
{
    world_->write("file", "12345");
    const auto reader = open("file");
    const auto before = reader->info();
    EXPECT_EQ(read(*reader, 5), "12345");

    world_->write("file", "1234567890");

    const auto after = reader->info();
    ASSERT_TRUE(before.ok() && after.ok());
    EXPECT_EQ(before->size.bytes, 5u);
    EXPECT_EQ(after->size.bytes, 10u);
    EXPECT_EQ(after->identity, before->identity);
    EXPECT_EQ(read(*reader, 10), "67890");
}

TEST_P(FileSystemContract, StreamsAreListedAndReadWhole)
{
    world_->write("file", "12345");
    world_->write("plain", "12345");
    if (!world_->stream("file", "comment", "a stream"))
        GTEST_SKIP() << "no alternate streams can be made in the temporary folder";
    ASSERT_TRUE(world_->stream("file", "empty", ""));

    const auto names = files().streamNames(world_->path("file"));
    const auto stream = files().readStream(world_->path("file"), "comment", 8);

    ASSERT_TRUE(names.ok() && stream.ok());
    EXPECT_THAT(*names, UnorderedElementsAre("comment", "empty"));
    EXPECT_EQ(std::string(reinterpret_cast<const char*>(stream->data()), stream->size()), "a stream");
    EXPECT_THAT(*files().readStream(world_->path("file"), "empty", 0), IsEmpty());
    EXPECT_EQ(files().readStream(world_->path("file"), "comment", 7).error().kind, ErrorKind::io);
    EXPECT_EQ(files().readStream(world_->path("file"), "none", 8).error().kind, ErrorKind::notFound);
    EXPECT_THAT(*files().streamNames(world_->path("plain")), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Worlds, FileSystemContract, ::testing::ValuesIn(testing::allWorlds()),
                         [](const auto& world) { return world.param.name; });

}  // namespace
}  // namespace kelvane
