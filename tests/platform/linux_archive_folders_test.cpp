#include "platform/archive_folders.h"

#include <sys/stat.h>
#include <thread>

#include "platform/file_namespace.h"
#include "platform/linux/adapters.h"
#include "platform/linux/archive_names.h"
#include "support/linux_archive_maker.h"
#include "support/temp_tree.h"

namespace kelvane {
namespace {

using testing::MadeEntry;
using Kind = testing::MadeEntry::Kind;

struct Seen {
    std::vector<std::pair<std::string, ArchiveEntry>> entries;  // path beside the entry, whose own is gone
    Status status;
};

std::string textOf(ContentReader& reader, std::size_t most = 1 << 20)
{
    std::string text(most, '\0');
    const auto got = reader.read(std::as_writable_bytes(std::span(text)));
    EXPECT_TRUE(got.ok()) << got.error().detail;
    text.resize(got ? *got : 0);
    return text;
}

class ArchiveFoldersTest : public ::testing::Test {
protected:
    std::filesystem::path make(const std::string& name, const std::vector<MadeEntry>& entries,
                               const std::string& password = "")
    {
        testing::makeArchive(tree_.path(name), entries, password);
        return tree_.path(name);
    }

    Seen list(const std::filesystem::path& archive)
    {
        Seen seen;
        seen.status = archives_->list(archive, [&](const ArchiveEntry& entry) {
            seen.entries.emplace_back(entry.path, entry);
            return true;
        });
        return seen;
    }

    std::string contents(const std::filesystem::path& archive, std::uint64_t ordinal)
    {
        auto reader = archives_->open(archive, ordinal);
        EXPECT_TRUE(reader.ok()) << reader.error().detail;
        return reader ? textOf(**reader) : "";
    }

    std::optional<ErrorKind> openFault(const std::filesystem::path& archive, std::uint64_t ordinal)
    {
        const auto reader = archives_->open(archive, ordinal);
        return reader ? std::nullopt : std::optional(reader.error().kind);
    }

    testing::TempTree tree_;
    std::unique_ptr<ArchiveFolders> archives_ = makeLibarchiveFolders();
};

TEST_F(ArchiveFoldersTest, EveryFormatGivesItsFilesAndTheirContents)
{
    const std::string big(300'000, 'b');
    for (const char* name : {"a.zip", "a.7z", "a.tar", "a.tar.gz", "a.tar.xz", "a.cpio"}) {
        const auto archive = make(name, {{"top/", "", Kind::folder}, {"top/one", "1"}, {"top/big", big}, {"last", ""}});

        const Seen seen = list(archive);

        ASSERT_TRUE(seen.status.ok()) << name << ": " << seen.status.error().detail;
        for (const auto& [path, entry] : seen.entries) {
            EXPECT_EQ(entry.kind, path == "top" ? FileKind::folder : FileKind::regular) << name;
            if (entry.kind == FileKind::regular) {
                const std::string expected = path == "top/one" ? "1" : path == "top/big" ? big : "";
                EXPECT_EQ(entry.size.bytes, expected.size()) << name << ": " << path;
                EXPECT_EQ(contents(archive, entry.ordinal), expected) << name << ": " << path;
                EXPECT_EQ(entry.modified, fileTimeFromUnix(1'700'000'000, 0)) << name;
            }
        }
        EXPECT_EQ(seen.entries.size(), 4u) << name;
    }
}

TEST_F(ArchiveFoldersTest, EntriesThatClimbOutLinkOrActAreLeftOut)
{
    std::string deep;
    for (int i = 0; i < 101; ++i)
        deep += "d/";
    const auto archive = make("hostile.tar", {{"../up", "x"},
                                              {"a/../../up", "x"},
                                              {"/etc/passwd", "x"},
                                              {deep + "file", "x"},
                                              {"link", "/etc/passwd", Kind::link},
                                              {"device", "", Kind::device},
                                              {"./kept//dots/./file", "kept"},
                                              {"hard", "./kept//dots/./file", Kind::hardLink},
                                              {"..a/...", "also kept"}});

    const Seen seen = list(archive);

    EXPECT_TRUE(seen.status.ok());
    ASSERT_EQ(seen.entries.size(), 2u);
    EXPECT_EQ(seen.entries[0].first, "kept/dots/file");
    EXPECT_EQ(contents(archive, seen.entries[0].second.ordinal), "kept");
    EXPECT_EQ(seen.entries[1].first, "..a/...");
    EXPECT_EQ(contents(archive, seen.entries[1].second.ordinal), "also kept");
    EXPECT_EQ(openFault(archive, 4), ErrorKind::wrongType);
    EXPECT_EQ(openFault(archive, 99), ErrorKind::notFound);
}

TEST_F(ArchiveFoldersTest, NamesComeOutAsStoredWhateverTheLocale)
{
    const auto tar = make("names.tar", {{"caf\xE9", "latin"}, {"line\nbreak", ""}, {"gr\xC3\xBC\xC3\x9F", ""}});

    const Seen seen = list(tar);

    ASSERT_EQ(seen.entries.size(), 3u);
    EXPECT_EQ(seen.entries[0].first, "caf\xE9");
    EXPECT_EQ(seen.entries[1].first, "line\nbreak");
    EXPECT_EQ(seen.entries[2].first, "gr\xC3\xBC\xC3\x9F");

    for (const char* name : {"unicode.7z", "unicode.zip", "unicode.tar.gz"}) {
        const Seen unicode = list(make(name, {{"gr\xC3\xBC\xC3\x9F/\xF0\x9F\x93\xB7", ""}}));
        ASSERT_EQ(unicode.entries.size(), 1u) << name;
        EXPECT_EQ(unicode.entries[0].first, "gr\xC3\xBC\xC3\x9F/\xF0\x9F\x93\xB7") << name;
    }
}

TEST_F(ArchiveFoldersTest, ADamagedArchiveGivesWhatStandsBeforeTheDamage)
{
    const auto tar = make("cut.tar", {{"first", std::string(5'000, 'a')}, {"second", std::string(50'000, 'b')}});
    std::filesystem::resize_file(tar, 20'000);
    const Seen cut = list(tar);
    EXPECT_FALSE(cut.status.ok());
    EXPECT_EQ(cut.status.error().kind, ErrorKind::invalid);
    ASSERT_EQ(cut.entries.size(), 2u);
    EXPECT_EQ(contents(tar, 0), std::string(5'000, 'a'));

    std::string all(60'000, '\0');
    const auto reader = archives_->open(tar, 1);
    ASSERT_TRUE(reader.ok());
    EXPECT_FALSE((*reader)->read(std::as_writable_bytes(std::span(all))).ok());
    EXPECT_FALSE((*reader)->read(std::as_writable_bytes(std::span(all))).ok()) << "damage is not forgotten";

    EXPECT_FALSE(list(tree_.write("nonsense.zip", "this is no archive")).status.ok());
    EXPECT_FALSE(list(tree_.write("empty.7z", "")).status.ok());
}

TEST_F(ArchiveFoldersTest, AFlippedByteNeverPassesAsContents)
{
    std::string noise;
    for (std::uint32_t state = 1; noise.size() < 10'000; state = state * 1664525 + 1013904223)
        noise += static_cast<char>(state >> 24);
    for (const char* name : {"flipped.zip", "flipped.7z", "flipped.tar.xz"}) {
        const auto archive = make(name, {{"file", noise}});
        std::string bytes = tree_.read(name);
        bytes[bytes.size() / 2] = static_cast<char>(bytes[bytes.size() / 2] ^ 0x55);
        tree_.write(name, bytes);

        const auto reader = archives_->open(archive, 0);
        std::string all(20'000, '\0');
        EXPECT_FALSE(reader && (*reader)->read(std::as_writable_bytes(std::span(all))).ok()) << name;
    }
}

TEST_F(ArchiveFoldersTest, EncryptedEntriesAreListedButNotOpened)
{
    const auto zip = make("secret.zip", {{"file", "secret"}}, "password");

    const Seen seen = list(zip);

    ASSERT_EQ(seen.entries.size(), 1u);
    EXPECT_EQ(openFault(zip, seen.entries[0].second.ordinal), ErrorKind::accessDenied);
}

TEST_F(ArchiveFoldersTest, EntriesAreReadInAnyOrderSkippedAndReadSideBySide)
{
    std::vector<MadeEntry> entries;
    for (int i = 0; i < 20; ++i)
        entries.push_back({std::to_string(i), "entry " + std::to_string(i)});
    const auto archive = make("order.tar.gz", entries);

    for (const unsigned i : {3u, 4u, 10u, 2u, 19u, 0u, 0u, 7u})
        EXPECT_EQ(contents(archive, i), "entry " + std::to_string(i));

    const auto a = archives_->open(archive, 5);
    const auto b = archives_->open(archive, 6);
    ASSERT_TRUE(a.ok() && b.ok());
    EXPECT_TRUE((*a)->skip(6).ok());
    EXPECT_TRUE((*b)->skip(100).ok());
    EXPECT_EQ(textOf(**a), "5");
    EXPECT_EQ(textOf(**b), "");
    EXPECT_EQ((*a)->info().error().kind, ErrorKind::notSupported);
}

TEST_F(ArchiveFoldersTest, ThreadsReadEntriesOfOneArchiveAtOnce)
{
    std::vector<MadeEntry> entries;
    for (int i = 0; i < 40; ++i)
        entries.push_back({std::to_string(i), std::string(5'000, static_cast<char>('a' + i % 26))});
    const auto archive = make("shared.7z", entries);
    std::vector<std::jthread> threads;
    for (unsigned first = 0; first < 4; ++first) {
        threads.emplace_back([&, first] {
            for (unsigned i = first; i < entries.size(); i += 4)
                EXPECT_EQ(contents(archive, i), entries[i].contents);
        });
    }
}

TEST_F(ArchiveFoldersTest, TheShellWalksARealArchive)
{
    const auto files = makeLinuxFileSystem();
    const auto folding = makeTextFolding();
    const auto shell = makeFileNamespace(*files, archives_.get(), *folding);
    make("real.tar.gz", {{"deep/er/caf\xE9.txt", "found"}, {"top", ""}});

    const auto entry = shell->parse(tree_.path("real.tar.gz").native() + "/deep/er/caf\xE9.txt");

    ASSERT_TRUE(entry.ok());
    EXPECT_EQ((*entry)->path(), tree_.path("real.tar.gz/deep/er/caf\xE9.txt"));
    const auto reader = shell->open(**entry, ReadPattern::sequential);
    ASSERT_TRUE(reader.ok());
    EXPECT_EQ(textOf(**reader), "found");
}

}  // namespace
}  // namespace kelvane
