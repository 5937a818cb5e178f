#include "engine/walker.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>

#include "platform/archive_folders.h"
#include "support/paths.h"
#include "support/scan_world.h"

namespace kelvane {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::RecordingObserver;
using testing::ScanWorld;
using ::testing::UnorderedElementsAre;

using Paths = std::vector<std::string>;

// Every archive holds the file "in" and the folder "sub" with another archive in it.
class SameArchives final : public ArchiveFolders {
public:
    bool looksLikeArchive(NativeView fileName) const override { return fileName.ends_with(testing::native(".zip")); }
    Status list(const std::filesystem::path& archive, const std::function<bool(const ArchiveEntry&)>& sink) override
    {
        if (archive.filename() == "broken.zip")
            return Error{ErrorKind::invalid, 0, "damaged"};
        sink({"in", FileKind::regular, FileSize{5}, FileTime{1}, 0});
        sink({"sub", FileKind::folder, FileSize{0}, FileTime{1}, 1});
        sink({"sub/nested.zip", FileKind::regular, FileSize{6}, FileTime{1}, 2});
        return {};
    }
    Result<std::unique_ptr<ContentReader>> open(const std::filesystem::path&, std::uint64_t) override
    {
        return Error{};
    }
};

class Walking : public ::testing::Test {
protected:
    static constexpr std::uint32_t subfolders = scan_flag::subfolders;
    static constexpr std::uint32_t protect = scan_flag::protect | scan_flag::subfolders;

    Paths walkWith(unsigned threads, std::uint32_t flags, const Paths& roots)
    {
        world.options.threads = threads;
        const auto criteria = world.criteria(flags);
        CandidateList candidates;
        observer = RecordingObserver();
        Walker walker(criteria, {*world.shell, *world.paths, world.properties, world.clock, observer, cancel, nullptr},
                      candidates);
        for (const auto& root : roots)
            result = walker.walk(root);
        stats = walker.stats();
        Paths paths;
        for (const auto& candidate : candidates)
            paths.push_back(testing::posix(candidate.item().fullName()));
        return paths;
    }
    // The plain walk, held against one with workers.
    Paths walk(std::uint32_t flags, const Paths& roots = {"/d"})
    {
        const auto parallel = walkWith(4, flags, roots);
        const auto plain = walkWith(1, flags, roots);
        EXPECT_EQ(plain, parallel);
        return plain;
    }

    SameArchives archives;
    ScanWorld world{&archives};
    testing::MemoryFileSystem& files = world.files;
    RecordingObserver observer;
    CancelFlag cancel;
    WalkStats stats;
    WalkResult result = WalkResult::done;
};

TEST_F(Walking, FindsFilesAtEveryDepth)
{
    for (const char* path : {"/d/a", "/d/s/b", "/d/s/t/c", "/d/u/e", "/other/x"})
        files.addFile(path, "x");
    EXPECT_THAT(walk(subfolders), UnorderedElementsAre("/d/a", "/d/s/b", "/d/s/t/c", "/d/u/e"));
    EXPECT_EQ(stats.folders, 4u);
    EXPECT_EQ(stats.filesSeen, 4u);
    EXPECT_THAT(walk(0), ElementsAre("/d/a"));
}

TEST_F(Walking, ReadsNothingButListings)
{
    files.addFile("/d/a", "x");
    files.addFile("/d/s/b", "x");
    walkWith(1, subfolders, {"/d"});
    for (const auto& access : files.accesses())
        EXPECT_TRUE(access.starts_with("enumerate ") || access == "details /d" || access == "volumeFacts /d") << access;
}

TEST_F(Walking, ARootThatIsAFileStandsForItself)
{
    files.addFile("/d/a", "x");
    files.addFile("/d/b", "");
    EXPECT_THAT(walk(subfolders, {"/d/a"}), ElementsAre("/d/a"));
    EXPECT_THAT(walk(scan_flag::skipEmpty, {"/d/b"}), IsEmpty());  // by the same tests
    for (const auto& access : files.accesses())
        EXPECT_FALSE(access.starts_with("enumerate")) << access;
}

TEST_F(Walking, RootsThatOverlapAreWalkedOnce)
{
    for (const char* path : {"/d/a", "/d/s/b", "/d/s/t/c"})
        files.addFile(path, "x");
    EXPECT_EQ(walk(subfolders, {"/d", "/d/s", "/d"}).size(), 3u);
    EXPECT_THAT(walk(subfolders, {"/d/s", "/d"}), UnorderedElementsAre("/d/a", "/d/s/b", "/d/s/t/c"));
    EXPECT_THAT(walk(0, {"/d", "/d/s"}), UnorderedElementsAre("/d/a", "/d/s/b"));
}

TEST_F(Walking, LinksAreIgnoredUnlessTheyAreFollowed)
{
    files.addFile("/d/a", "x");
    files.addFile("/else/b", "x");
    files.addSymbolicLink("/d/file", "/else/b");
    files.addSymbolicLink("/d/folder", "/else");
    files.addSymbolicLink("/d/broken", "/nowhere");
    EXPECT_THAT(walk(subfolders), ElementsAre("/d/a"));
    world.options.flags |= option_flag::followJunctions;
    EXPECT_THAT(walk(subfolders), UnorderedElementsAre("/d/a", "/d/file", "/d/folder/b"));
    EXPECT_THAT(walk(subfolders | scan_flag::skipLinks), ElementsAre("/d/a"));
}

TEST_F(Walking, LoopsOfLinksEnd)
{
    files.addFile("/d/s/a", "x");
    files.addSymbolicLink("/d/s/up", "/d");
    files.addSymbolicLink("/d/s/self", "/d/s");
    files.addSymbolicLink("/d/other", "/e");
    files.addSymbolicLink("/e/back", "/d/s");
    world.options.flags |= option_flag::followJunctions;
    const auto found = walk(subfolders, {"/d", "/e"});
    ASSERT_EQ(found.size(), 1u);  // once, by whichever name came first
    EXPECT_THAT(observer.skippedItems, IsEmpty());
}

TEST_F(Walking, ProtectionLeavesHiddenThingsAlone)
{
    for (const char* path : {"/d/.hidden", "/d/.git/a", "/d/b", "/d/.Trash-1000/files/c"})
        files.addFile(path, "x");
    EXPECT_THAT(walk(protect), ElementsAre("/d/b"));
    EXPECT_EQ(walk(subfolders).size(), 4u);
    EXPECT_THAT(walk(protect, {"/d/.git"}), ElementsAre("/d/.git/a"));  // a root was chosen
    EXPECT_THAT(walk(protect, {"/d/.hidden"}), IsEmpty());
    files.addFile("/usr/a", "x");
    if (testing::pathsArePosix) {
        EXPECT_THAT(walk(protect, {"/"}), ElementsAre("/d/b"));
    }
}

TEST_F(Walking, PseudoFileSystemsAreNeverEntered)
{
    files.addFile("/d/a", "x");
    files.addFile("/d/proc/self/b", "x");
    files.setVolume("/d/proc", {.serial = 9, .fileSystem = "proc", .pseudo = true, .mountPoint = {}});
    EXPECT_THAT(walk(subfolders), ElementsAre("/d/a"));
    EXPECT_THAT(walk(subfolders, {"/d/proc"}), IsEmpty());
    EXPECT_THAT(walk(subfolders, {"/d/proc/self/b"}), IsEmpty());
}

TEST_F(Walking, AFolderThatCannotBeListedIsToldAndCountedUnlessItVanished)
{
    for (const char* path : {"/d/a", "/d/locked/b", "/d/z/c", "/d/vanished/d"})
        files.addFile(path, "x");
    files.setHook([](const std::string& operation, const std::string& path) -> std::optional<Error> {
        if (operation == "enumerate" && path == "/d/vanished")
            return Error{ErrorKind::notFound, 2, "No such file or directory"};
        if (operation == "enumerate" && path == "/d/locked")
            return Error{ErrorKind::accessDenied, 13, "Permission denied"};
        return std::nullopt;
    });
    EXPECT_THAT(walk(subfolders, {"/gone", "/d"}), UnorderedElementsAre("/d/a", "/d/z/c"));
    EXPECT_EQ(result, WalkResult::done);
    EXPECT_EQ(stats.skipped, 1u);
    const auto told = [&](const char* path) {
        return std::ranges::count_if(observer.skippedItems,
                                     [&](const SkippedItem& item) { return testing::posix(item.path) == path; });
    };
    EXPECT_EQ(told("/d/locked"), 1);
    EXPECT_EQ(told("/d/vanished"), 1);
}

// The standard shape of a fault test: the n-th operation fails, n = 1, 2, ... until a clean run.
TEST_F(Walking, SurvivesAnyOneFailure)
{
    for (const char* path : {"/d/a", "/d/s/b", "/d/s/t/c", "/d/u/e"})
        files.addFile(path, "x");
    world.options.flags |= option_flag::followJunctions;
    std::size_t clean = 0;
    for (int n = 1; clean == 0; ++n) {
        int left = n;
        files.setHook([&](const std::string&, const std::string&) -> std::optional<Error> {
            return --left == 0 ? std::optional(Error{ErrorKind::io, 5, "I/O error"}) : std::nullopt;
        });
        const auto found = walkWith(1, subfolders, {"/d"});
        EXPECT_EQ(result, WalkResult::done);
        // Only facts about the volume may fail without a word: they are asked for to keep out of odd file systems.
        EXPECT_TRUE(found.size() == 4 || stats.skipped == 1) << n;
        if (left > 0)
            clean = found.size();
    }
    EXPECT_EQ(clean, 4u);
}

TEST_F(Walking, ArchivesAreFoldersAndFilesAtOnce)
{
    files.addFile("/d/a.zip", "zip");
    files.addHardLink("/d/twin.zip", "/d/a.zip");
    files.addFile("/d/broken.zip", "zip");
    EXPECT_THAT(walk(subfolders), UnorderedElementsAre("/d/a.zip", "/d/twin.zip", "/d/broken.zip"));
    world.options.flags |= option_flag::enterVirtualFolders;
    EXPECT_THAT(walk(subfolders), UnorderedElementsAre("/d/a.zip", "/d/twin.zip", "/d/broken.zip", "/d/a.zip/in",
                                                       "/d/a.zip/sub/nested.zip"));
    ASSERT_EQ(observer.skippedItems.size(), 1u);
    EXPECT_EQ(testing::posix(observer.skippedItems[0].path), "/d/broken.zip");
    EXPECT_THAT(walk(subfolders, {"/d/a.zip"}),
                UnorderedElementsAre("/d/a.zip", "/d/a.zip/in", "/d/a.zip/sub/nested.zip"));
    EXPECT_EQ(walk(0).size(), 3u);
}

TEST_F(Walking, CancelEndsTheWalkBetweenItems)
{
    for (int i = 0; i < 50; ++i)
        files.addFile("/d/s" + std::to_string(i) + "/a", "x");
    for (const unsigned threads : {1u, 4u}) {
        std::atomic<int> listed = 0;
        cancel.reset();
        files.setHook([&](const std::string& operation, const std::string&) -> std::optional<Error> {
            if (operation == "enumerate" && ++listed == 10)
                cancel.cancel();
            return std::nullopt;
        });
        walkWith(threads, subfolders, {"/d"});
        EXPECT_EQ(result, WalkResult::cancelled);
        EXPECT_LE(listed, 10 + static_cast<int>(threads));
        EXPECT_THAT(walkWith(threads, subfolders, {"/d"}), IsEmpty());  // the flag still stands
        EXPECT_EQ(result, WalkResult::cancelled);
    }
}

TEST_F(Walking, ProgressIsToldAtMostOnceASecond)
{
    for (const std::string& path : Paths{"/d/a", "/d/s/b", "/d/s/t/c", "/d/s/t/" + std::string(200, 'n') + "/e"})
        files.addFile(path, "x");
    int step = 0;
    files.setHook([&](const std::string& operation, const std::string&) -> std::optional<Error> {
        if (operation == "enumerate")  // 0, 1000, 1001 and 2002 ms after the first report
            world.clock.milliseconds += std::array{1000, 1, 1001, 0}.at(static_cast<std::size_t>(step++));
        return std::nullopt;
    });
    walkWith(1, subfolders, {"/d"});
    EXPECT_THAT(observer.statuses, ElementsAre(u"searching in d ...", u"searching in t ...",
                                               u"searching in " + std::u16string(128, u'n') + u" ..."));
    EXPECT_EQ(observer.captions.back(), u"phase 1: gathering files (3)");
}

// Whatever is listed ahead, the order is that of the plain walk.
TEST_F(Walking, TheOrderDoesNotDependOnThreads)
{
    std::mt19937 random(20240229);
    for (int tree = 0; tree < 20; ++tree) {
        const std::string top = "/tree" + std::to_string(tree);
        Paths folders = {top};
        for (int i = 0; i < 120; ++i) {
            const std::string path = folders[random() % folders.size()] + "/" + std::to_string(i);
            switch (random() % 4) {
            case 0:
                files.addFolder(path);
                folders.push_back(path);
                break;
            case 1:
                files.addSymbolicLink(path, folders[random() % folders.size()]);
                break;
            default:
                files.addFile(path, "x");
            }
        }
        world.options.flags ^= option_flag::followJunctions;
        const auto plain = walkWith(1, subfolders, {top});
        for (const unsigned threads : {2u, 4u, 9u})
            ASSERT_EQ(walkWith(threads, subfolders, {top}), plain) << "tree " << tree << ", threads " << threads;
    }
}

}  // namespace
}  // namespace kelvane
