#include "engine/ignored_pairs.h"

#include <gmock/gmock.h>

#include <map>
#include <random>

#include "engine/grouping_world.h"

namespace kelvane {
namespace {

using ::testing::ElementsAre;
using testing::exactContents;
using testing::GroupingWorld;
using ::testing::IsEmpty;
using testing::RecordingSink;
using ::testing::UnorderedElementsAre;

struct IgnoringWorld : GroupingWorld {
    std::vector<IgnoredGroup> declared;

    IgnoredFile fileAt(const std::string& path)
    {
        return ignoredFileOf(*shell, **shell->parse(testing::native(path)), cancel).value();
    }

    void declare(const std::vector<std::string>& names)
    {
        IgnoredGroup group;
        for (const std::string& path : names)
            group.files.push_back(fileAt(path));
        declared.push_back(group);
    }

    RecordingSink scan() { return scan(criteria(exactContents, "")); }
    RecordingSink scan(const ScanCriteria& wanted)
    {
        const IgnoredPairs pairs(declared);
        ignored = &pairs;
        RecordingSink sink = groupAll(wanted);
        ignored = nullptr;
        return sink;
    }
};

TEST(IgnoredPairs, PartAGroupAndLeaveOutWhoIsAlone)
{
    IgnoringWorld world;
    for (const char* name : {"/a", "/b", "/c", "/d"})
        world.files.addFile(name, "same");
    for (const char* name : {"/x", "/y"})
        world.files.addFile(name, "other");
    world.declare({"/a", "/b"});
    world.declare({"/x", "/y"});
    EXPECT_THAT(world.scan().groups(), ElementsAre(ElementsAre("/a", "/d", "/c")));
    EXPECT_EQ(world.stats.ignoredPairs, 2u);
    EXPECT_EQ(world.stats.groups, 1u);
    EXPECT_EQ(world.stats.duplicates, 2u);

    world.declare({"/a", "/c"});
    world.declare({"/d", "/c"});
    EXPECT_THAT(world.scan().groups(), ElementsAre(ElementsAre("/a", "/d"), ElementsAre("/c", "/b")));
}

// Each is alike to the next one only; without its middle, nothing holds a chain together.
TEST(IgnoredPairs, LeaveOnlyFilesThatMatchInOneGroup)
{
    IgnoringWorld world;
    std::size_t bytes = 100;
    for (const char* name : {"/a", "/b", "/c", "/d"})
        world.files.addFile(name, std::string(bytes += 4, 'x'));
    ScanCriteria alike = world.criteria(scan_flag::fuzzy, "System.Size");
    alike.similarity = 95;
    EXPECT_EQ(world.scan(alike).groups().size(), 1u);
    world.declare({"/a", "/b"});
    EXPECT_THAT(world.scan(alike).groups(), ElementsAre(UnorderedElementsAre("/b", "/c", "/d")));
    world.declare({"/b", "/c"});
    EXPECT_THAT(world.scan(alike).groups(), ElementsAre(UnorderedElementsAre("/c", "/d")));
}

TEST(IgnoredPairs, FollowTheFileAndHoldForItsContentsOnly)
{
    IgnoringWorld world;
    for (const char* name : {"/a", "/b"})
        world.files.addFile(name, "same");
    world.declare({"/a", "/b"});
    world.files.addHardLink("/moved", "/b");
    world.files.remove("/b");
    EXPECT_THAT(world.scan().groups(), IsEmpty());
    for (const char* contents : {"sama", "longer"}) {
        world.files.setContents("/a", contents);
        world.files.setContents("/moved", contents);
        EXPECT_EQ(world.scan().rows.size(), 2u) << contents;
    }
    world.files.addFile("/new", "same");
    world.files.setContents("/a", "same");
    EXPECT_THAT(world.scan().groups(), ElementsAre(ElementsAre("/a", "/new")));
    EXPECT_EQ(world.stats.ignoredPairs, 0u);
}

TEST(IgnoredPairs, ReadNothingThatNoDeclarationParts)
{
    IgnoringWorld world;
    for (const char* name : {"/a", "/b", "/c"})
        world.files.addFile(name, "same");
    world.files.addFile("/alone", "other");
    const auto bytesOfScan = [&] {
        const std::uint64_t before = world.files.bytesRead();
        world.scan();
        return world.files.bytesRead() - before;
    };
    const std::uint64_t plain = bytesOfScan();
    world.declare({"/a", "/alone"});
    EXPECT_EQ(bytesOfScan(), plain);
    world.declare({"/a", "/b"});
    EXPECT_EQ(bytesOfScan(), plain + 8);
}

TEST(IgnoredPairs, AFileThatCannotBeReadIsNotIgnoredAndCancellingEnds)
{
    IgnoringWorld world;
    for (const char* name : {"/a", "/b"})
        world.files.addFile(name, std::string(70'000, 'x'));
    world.declare({"/a", "/b"});
    const ScanCriteria by = world.criteria(exactContents, "");
    const IgnoredPairs pairs(world.declared);
    world.ignored = &pairs;
    for (const bool cancels : {false, true}) {
        CandidateList list;
        world.gather(list);
        std::map<std::string, int> opened;
        world.files.setHook([&](const std::string& operation, const std::string& path) -> std::optional<Error> {
            if (operation != "open" || ++opened[path] < 2)
                return std::nullopt;
            if (cancels)
                world.cancel.cancel();
            return Error{ErrorKind::accessDenied, 13, "Permission denied"};
        });
        RecordingSink sink;
        EXPECT_EQ(world.group(by, list, sink), cancels ? -1 : 2);
        EXPECT_EQ(sink.rows.size(), cancels ? 0u : 2u);
        world.files.setHook({});
    }
    world.cancel.cancel();
    EXPECT_EQ(ignoredFileOf(*world.shell, **world.shell->parse(testing::native("/a")), world.cancel).error().kind,
              ErrorKind::cancelled);
}

TEST(IgnoredPairs, ALargeDeclarationTakesNoSquareOfTime)
{
    IgnoringWorld world;
    constexpr std::size_t count = 20'000;
    std::vector<std::string> paths;
    for (std::size_t number = 0; number < count; ++number)
        world.files.addFile(paths.emplace_back("/" + std::to_string(number)), "");
    world.declare(paths);
    EXPECT_THAT(world.scan().groups(), IsEmpty());
    EXPECT_EQ(world.stats.ignoredPairs, count * (count - 1) / 2);
}

// Nobody shares a group with a file that a declaration parts it from, nobody is alone, everybody else is still there,
// and numbers have no gaps.
void expectParted(const RecordingSink& whole, const RecordingSink& parted,
                  const std::vector<std::vector<std::string>>& declared)
{
    std::map<std::string, std::int32_t> before;
    std::map<std::string, std::int32_t> after;
    for (const auto& row : whole.rows)
        before[row.path] = row.group;
    std::int32_t last = 0;
    for (const auto& row : parted.rows) {
        EXPECT_TRUE(row.group == last || row.group == last + 1);
        last = row.group;
        EXPECT_TRUE(after.emplace(row.path, row.group).second) << row.path << " is in two groups";
    }
    std::set<std::string> named;
    for (const auto& group : declared) {
        std::set<std::int32_t> numbers;
        for (const auto& path : group) {
            named.insert(path);
            EXPECT_TRUE(!after.contains(path) || numbers.insert(after[path]).second) << path;
        }
    }
    for (const auto& group : parted.groups()) {
        EXPECT_GT(group.size(), 1u);
        for (const auto& path : group)
            EXPECT_EQ(before.at(path), before.at(group.front())) << path;
    }
    std::map<std::int32_t, std::set<std::int32_t>> parts;
    for (const auto& [path, group] : before)
        if (!named.contains(path) && after.contains(path))
            parts[group].insert(after[path]);
    for (const auto& [group, numbers] : parts)
        EXPECT_EQ(numbers.size(), 1u) << "files that nothing parts stay together";
}

TEST(IgnoredPairs, RandomDeclarationsPartTheSameOnBothRoads)
{
    for (unsigned seed = 1; seed <= 30; ++seed) {
        SCOPED_TRACE(seed);
        std::mt19937 random(seed);
        const auto below = [&](std::size_t limit) {
            return std::uniform_int_distribution<std::size_t>(0, limit - 1)(random);
        };
        IgnoringWorld world;
        std::vector<std::string> paths;
        for (int number = 0; number < 40; ++number)
            world.files.addFile(paths.emplace_back("/" + std::to_string(number)),
                                std::string(10, static_cast<char>('a' + below(4))));
        const RecordingSink whole = world.scan();
        std::vector<std::vector<std::string>> declared;
        for (std::size_t group = 0; group < 1 + below(20); ++group) {
            std::set<std::string> files;
            for (std::size_t file = 0; file < 2 + below(4); ++file)
                files.insert(paths[below(paths.size())]);
            world.declare(declared.emplace_back(files.begin(), files.end()));
        }
        const RecordingSink ahead = world.scan();
        world.options.classifyAhead = false;
        EXPECT_EQ(world.scan().rows, ahead.rows);
        expectParted(whole, ahead, declared);
    }
}

}  // namespace
}  // namespace kelvane
