#include "engine/grouping.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "engine/grouping_world.h"
#include "support/paths.h"

namespace kelvane {
namespace {

using ::testing::ElementsAre;
using testing::exactContents;
using testing::GroupingWorld;
using testing::RecordingSink;
using ::testing::SizeIs;

std::string hundred(char fill)
{
    return std::string(100, fill);
}

// Each test groups pair by pair and read ahead.
class Grouping : public ::testing::TestWithParam<bool> {
protected:
    Grouping() { world.options.classifyAhead = GetParam(); }
    GroupingWorld world;
};

INSTANTIATE_TEST_SUITE_P(Ways, Grouping, ::testing::Bool(),
                         [](const auto& way) { return way.param ? "ReadAhead" : "PairByPair"; });

TEST_P(Grouping, SeedComesFirstThenTheLastFound)
{
    for (const char* path : {"/a", "/b", "/c", "/d"})
        world.files.addFile(path, hundred('x'));
    world.files.addFile("/p", "small");
    world.files.addFile("/q", "small");
    const RecordingSink sink = world.groupAll(world.criteria(exactContents, ""));
    EXPECT_THAT(sink.groups(), ElementsAre(ElementsAre("/p", "/q"), ElementsAre("/a", "/d", "/c", "/b")));
    EXPECT_EQ(sink.rows[0].group, 1);
    EXPECT_EQ(sink.rows[2].group, 2);
    EXPECT_EQ(world.stats.groups, 2u);
    EXPECT_EQ(world.stats.grouped, 6u);
}

TEST_P(Grouping, FilesThatCannotBeReadOrHaveChangedAreInNoGroup)
{
    for (const char* path : {"/a", "/b", "/changed", "/locked"})
        world.files.addFile(path, hundred('x'));
    CandidateList list;
    world.gather(list);
    world.files.setContents("/changed", hundred('x'));
    world.files.setHook([](const std::string& operation, const std::string& path) {
        const bool refused = operation == "open" && path == "/locked";
        return refused ? std::optional(Error{ErrorKind::accessDenied, 13, "no"}) : std::nullopt;
    });
    RecordingSink sink;
    EXPECT_EQ(world.group(world.criteria(exactContents, ""), list, sink), 2);
    EXPECT_THAT(sink.groups(), ElementsAre(ElementsAre("/a", "/b")));
    if (GetParam()) {
        ASSERT_THAT(world.observer.skippedItems, SizeIs(2));
        EXPECT_EQ(world.stats.skipped, 2u);
    }
}

TEST_P(Grouping, SampledGroupsAreApproximate)
{
    world.options.hugeFile = {1'048'576};
    std::string huge(2'000'000, 'x');
    world.files.addFile("/a", huge);
    huge[1'500'000] = 'y';  // between head and sample
    world.files.addFile("/b", huge);
    huge[100] = 'y';
    world.files.addFile("/c", huge);
    world.files.addFile("/small1", hundred('x'));
    world.files.addFile("/small2", hundred('x'));
    const RecordingSink sink = world.groupAll(world.criteria(exactContents, ""));
    EXPECT_THAT(sink.groups(), ElementsAre(ElementsAre("/small1", "/small2"), ElementsAre("/a", "/b")));
    EXPECT_FALSE(sink.rows[0].approximate);
    EXPECT_TRUE(sink.rows[2].approximate);
    EXPECT_TRUE(sink.rows[3].approximate);
    EXPECT_LT(world.stats.bytesRead, 4u * 1'200'000) << "what lies between samples is not read";
}

TEST_P(Grouping, OnlyTheGroupOfOneFileIsKept)
{
    for (const char* path : {"/a1", "/a2", "/b1", "/b2", "/b3"})
        world.files.addFile(path, hundred(path[1]));
    CandidateList list;
    world.gather(list);
    RecordingSink sink;
    const auto wanted = *world.shell->parse(testing::native("/b2"));
    EXPECT_EQ(world.group(world.criteria(exactContents, ""), list, sink, {.onlyGroupOf = wanted.get()}), 3);
    EXPECT_THAT(sink.groups(), ElementsAre(ElementsAre("/b1", "/b3", "/b2")));
    EXPECT_EQ(sink.rows[0].group, 1);
    EXPECT_EQ(sink.selections, 1);
}

TEST_P(Grouping, CheckingAgainLeavesExcludedAndOfflineFilesOut)
{
    for (const char* path : {"/a", "/b", "/c", "/d", "/offline"})
        world.files.addFile(path, hundred('x'));
    world.files.setAttributes("/offline", attribute::offline);
    CandidateList list;
    world.gather(list);
    list[1].group.value = GroupField::excluded;
    list[2].group.value = 7;
    RecordingSink sink;
    world.group(world.criteria(exactContents, ""), list, sink, {.recheck = true});
    EXPECT_THAT(sink.groups(), ElementsAre(ElementsAre("/a", "/d", "/c")));
}

TEST_P(Grouping, ARefusedFileIsLeftOutAlone)
{
    for (const char* path : {"/a", "/b", "/c"})
        world.files.addFile(path, hundred('x'));
    CandidateList list;
    world.gather(list);
    RecordingSink sink;
    sink.refuses = "/c";
    EXPECT_EQ(world.group(world.criteria(exactContents, ""), list, sink), 2);
    EXPECT_THAT(sink.groups(), ElementsAre(ElementsAre("/a", "/b")));
}

// One archive with one entry.
class OneEntry final : public ArchiveFolders {
public:
    bool looksLikeArchive(NativeView fileName) const override { return fileName.ends_with(testing::native(".zip")); }
    Status list(const std::filesystem::path&, const std::function<bool(const ArchiveEntry&)>& sink) override
    {
        sink({"entry", FileKind::regular, FileSize{contents.size()}, FileTime{1}, 0});
        return {};
    }
    Result<std::unique_ptr<ContentReader>> open(const std::filesystem::path&, std::uint64_t) override
    {
        store_.addFile("/entry", contents);
        store_.setHook([](const std::string& operation, const std::string&) {
            return operation == "info" ? std::optional(Error{ErrorKind::notSupported, 0, ""}) : std::nullopt;
        });
        return store_.openForReading("/entry", ReadPattern::sequential);
    }

    std::string contents;

private:
    testing::MemoryFileSystem store_;
};

// Entries of archives are sampled from half the size on, and so is a file beside an entry: an entry may then be the
// match of two files that do not match each other, which no classes of contents can tell.
TEST_P(Grouping, FilesAndEntriesAreComparedByTheLimitsOfThePair)
{
    OneEntry archive;
    GroupingWorld mixed(&archive);
    mixed.options.classifyAhead = GetParam();
    mixed.options.hugeFile = {1'048'576};
    archive.contents = std::string(900'000, 'x');
    mixed.files.addFile("/a", archive.contents);
    mixed.files.addFile("/m.zip", "");
    std::string other = archive.contents;
    other[700'000] = 'y';
    mixed.files.addFile("/z", other);
    const RecordingSink sink = mixed.groupAll(mixed.criteria(exactContents, ""));
    EXPECT_THAT(sink.groups(), ElementsAre(ElementsAre("/a", "/z", "/m.zip/entry")));
    EXPECT_TRUE(sink.rows[0].approximate);

    archive.contents.resize(500'000);   // small enough to be compared in full by any limit
    mixed.files.addFile("/m.zip", "");  // listed anew
    mixed.files.addFile("/a", archive.contents);
    mixed.files.addFile("/z", archive.contents);
    const RecordingSink small = mixed.groupAll(mixed.criteria(exactContents, ""));
    EXPECT_THAT(small.groups(), ElementsAre(ElementsAre("/a", "/z", "/m.zip/entry")));
    EXPECT_FALSE(small.rows[0].approximate);
}

TEST(FuzzyGrouping, AChainOfNeighboursIsOneGroup)
{
    GroupingWorld world;
    const std::uint64_t years[] = {1000, 1090, 1180, 3000};  // 8 percent from one to the next, 16 from first to third
    for (std::size_t i = 0; i < std::size(years); ++i) {
        const std::string path = "/" + std::to_string(i);
        world.files.addFile(path, "x");
        world.readers.set(path, "System.Media.Year", RawValue::number(VarType::uint32, years[i]));
    }
    ScanCriteria byYear = world.criteria(scan_flag::fuzzy, "System.Media.Year");
    byYear.similarity = 90;
    EXPECT_THAT(world.groupAll(byYear).groups(), ElementsAre(ElementsAre("/0", "/2", "/1")));
}

TEST(ReadingAhead, ReadsEachFileOnceAndFurtherNamesNotAtAll)
{
    GroupingWorld world;
    world.files.addFile("/a", std::string(5'000'000, 'x'));
    world.files.addHardLink("/a2", "/a");
    world.files.addFile("/b", std::string(5'000'000, 'x'));
    world.files.addFile("/c", std::string(5'000'000, 'y'));
    world.groupAll(world.criteria(exactContents, ""));
    EXPECT_EQ(world.stats.bytesRead, 2u * 5'000'000 + 16'384);
    EXPECT_EQ(world.observer.steps.back().bytes, world.stats.bytesRead);
    for (const auto& access : world.files.accesses())
        EXPECT_NE(access, "open /a2");
}

}  // namespace
}  // namespace kelvane
