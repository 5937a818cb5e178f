#include "engine/candidate_preparation.h"

#include <gmock/gmock.h>

#include <random>

#include "base/utf.h"
#include "engine/grouping_world.h"
#include "engine/scan_driver.h"

namespace kelvane {
namespace {

using ::testing::ElementsAre;
using testing::exactContents;
using ::testing::IsEmpty;

class Preparation : public ::testing::Test {
protected:
    static constexpr std::uint32_t byValues = scan_flag::subfolders;
    static constexpr std::uint32_t nearly = scan_flag::subfolders | scan_flag::fuzzy;

    Preparation() { world.options.noticesSeen = notice_flag::firstScanShown; }

    void add(const std::string& path, const std::string& title, std::uint64_t year = 0)
    {
        world.files.addFile(path, std::string(100, 'x'));
        if (!title.empty())
            world.readers.set(path, "System.Title", RawValue::text(toUtf16(title)));
        if (year > 0)
            world.readers.set(path, "System.Media.Year", RawValue::number(VarType::uint32, year));
    }
    bool needed(std::uint32_t flags, const char* names) const
    {
        const ScanCriteria by = world.criteria(flags, names);
        return CandidatePreparation(by, world.properties, nullptr).needed();
    }
    ScanReport scan(ScanCriteria by, testing::RecordingSink& sink)
    {
        by.definition.roots = "/";
        return runScan(by, {*world.shell, *world.paths, world.properties, world.clock, priority, world.observer,
                            world.cancel, sink, nullptr});
    }

    testing::GroupingWorld world;
    testing::FakePriority priority;
};

TEST_F(Preparation, IsForWhatTheRecordsDoNotTell)
{
    EXPECT_FALSE(needed(exactContents, "System.Size"));
    EXPECT_FALSE(needed(nearly, "System.Size,System.DateModified"));
    EXPECT_FALSE(needed(byValues, "System.Size,System.Title")) << "few files are of one size";
    EXPECT_TRUE(needed(byValues, "System.Title"));
    EXPECT_TRUE(needed(nearly, "System.Title"));
    EXPECT_TRUE(needed(nearly, "System.Size,System.Title"));
}

TEST_F(Preparation, FilesWithoutThePrimaryValueLeaveAndTheRestKeepsItsOrder)
{
    add("/a", "one");
    add("/b", "");
    add("/c", "one");
    add("/d", "");
    add("/e", "two");
    CandidateList list;
    world.gather(list);
    const ScanCriteria by = world.criteria(byValues, "System.Title");
    CandidatePreparation preparation(by, world.properties, nullptr);
    for (Candidate& file : list)
        preparation.begin(file);
    WalkStats stats;
    stats.withoutValue = 5;
    ASSERT_TRUE(preparation.settle(list, world.clock, world.observer, world.cancel, stats));
    EXPECT_EQ(stats.withoutValue, 7u);
    std::vector<std::string> paths;
    for (const Candidate& file : list)
        paths.push_back(testing::posix(file.item().fullName()));
    EXPECT_THAT(paths, ElementsAre("/a", "/c", "/e"));
    EXPECT_THAT(world.observer.captions, ElementsAre(u"phase 1: reading properties"));
}

TEST_F(Preparation, AfterACancelNothingIsSettled)
{
    add("/a", "one");
    CandidateList list;
    world.gather(list);
    const ScanCriteria by = world.criteria(byValues, "System.Title");
    CandidatePreparation preparation(by, world.properties, nullptr);
    preparation.begin(list.front());
    world.cancel.cancel();
    WalkStats stats;
    EXPECT_FALSE(preparation.settle(list, world.clock, world.observer, world.cancel, stats));
    EXPECT_THAT(world.observer.captions, ElementsAre(u"phase 1: reading properties"));
}

// What is read ahead by several threads gives the groups that reading one value after the other gives, and no value is
// read twice.
class ReadAhead : public Preparation, public ::testing::WithParamInterface<unsigned> {};

TEST_P(ReadAhead, GivesTheGroupsOfTheWalkThatReadsWhatItNeeds)
{
    std::mt19937 random(GetParam());
    const auto below = [&](unsigned limit) { return std::uniform_int_distribution<unsigned>(0, limit - 1)(random); };
    constexpr unsigned count = 120;
    for (unsigned i = 0; i < count; ++i) {
        static constexpr const char* words[] = {"", "summer", "summer rain", "winter", "winter rain", "night"};
        add("/" + std::string(1, static_cast<char>('a' + below(3))) + std::to_string(i), words[below(6)],
            below(5) == 0 ? 0 : 1990 + below(4));
        world.files.addFile("/x" + std::to_string(i), std::string(1 + below(3), 'x'));
    }
    for (const char* names : {"System.Title", "System.Title,System.Media.Year", "System.Size,System.Title",
                              "System.Media.Year,System.Size,System.Title"}) {
        for (const std::uint32_t flags : {byValues, nearly, byValues | scan_flag::sameType}) {
            ScanCriteria by = world.criteria(flags, names);
            by.similarity = (flags & scan_flag::fuzzy) != 0 ? 70 : 100;
            by.options.threads = 4;
            by.options.classifyAhead = false;
            testing::RecordingSink plain;
            CandidateList list;
            world.gather(list);
            ASSERT_GE(world.group(by, list, plain), 0);
            by.options.classifyAhead = true;
            const int before = world.readers.reads;
            testing::RecordingSink ahead;
            const ScanReport report = scan(by, ahead);
            EXPECT_EQ(report.rows, static_cast<std::int64_t>(ahead.rows.size()));
            EXPECT_LE(world.readers.reads - before, static_cast<int>(2 * 2 * count)) << names;
            std::set<std::set<std::string>> expected, found;
            for (const auto& group : plain.groups())
                expected.emplace(group.begin(), group.end());
            for (const auto& group : ahead.groups())
                found.emplace(group.begin(), group.end());
            EXPECT_EQ(found, expected) << names << ' ' << flags;
            EXPECT_THAT(found, ::testing::Not(IsEmpty()));
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Worlds, ReadAhead, ::testing::Range(1u, 4u));

}  // namespace
}  // namespace kelvane
