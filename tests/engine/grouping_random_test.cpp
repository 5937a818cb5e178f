// The three ways to the same groups: pair by pair, read ahead by workers, and told by the files' bytes directly.
#include <gtest/gtest.h>

#include <map>
#include <random>
#include <thread>

#include "engine/grouping_world.h"
#include "engine/same_file.h"

namespace kelvane {
namespace {

using testing::exactContents;
using testing::GroupingWorld;
using testing::RecordingSink;
using Groups = std::set<std::set<std::string>>;

// Trees full of copies, near copies, further names and empty files.
class RandomTree {
public:
    explicit RandomTree(unsigned seed) : random_(seed) {}

    void fill(GroupingWorld& world, int files)
    {
        for (int i = 0; i < files; ++i)
            addOne(world, i);
    }

    [[nodiscard]] const std::map<std::string, std::string>& contents() const { return contents_; }
    // The first name of the physical file.
    [[nodiscard]] const std::string& original(const std::string& path) const { return originals_.at(path); }

private:
    std::size_t below(std::size_t limit) { return std::uniform_int_distribution<std::size_t>(0, limit - 1)(random_); }

    void addOne(GroupingWorld& world, int number)
    {
        const char* const type = below(3) == 0 ? ".txt" : ".bin";
        const std::string path = "/t/f" + std::to_string(below(4)) + "/" + std::to_string(number) + type;
        const std::size_t kind = below(10);
        if (!contents_.empty() && kind < 2) {
            const std::string existing = anyPath();
            world.files.addHardLink(path, existing);
            contents_[path] = contents_[existing];
            originals_[path] = originals_[existing];
            return;
        }
        std::string text = contents_.empty() || kind == 9 ? fresh() : contents_[anyPath()];
        if (kind >= 6 && kind < 9 && !text.empty())
            ++text[below(text.size())];
        world.files.addFile(path, text);
        world.files.setModified(path, {static_cast<std::int64_t>(below(6)) * 700 * ticksPerMillisecond + 1});
        contents_[path] = std::move(text);
        originals_[path] = path;
    }

    std::string fresh()
    {
        constexpr std::size_t sizes[] = {0, 1, 15, 16, 17, 64, 200, 1000};
        std::string text(sizes[below(std::size(sizes))], 'x');
        for (char& byte : text)
            byte = static_cast<char>('a' + below(2));
        return text;
    }

    const std::string& anyPath()
    {
        return std::next(contents_.begin(), static_cast<std::ptrdiff_t>(below(contents_.size())))->first;
    }

    std::mt19937 random_;
    std::map<std::string, std::string> contents_, originals_;
};

// What is equal by bytes (and type), as sets of physical files.
Groups groupsByBytes(const RandomTree& tree, bool sameType)
{
    std::map<std::pair<std::string, std::string>, std::set<std::string>> classes;
    for (const auto& [path, contents] : tree.contents())
        classes[{sameType ? path.substr(path.rfind('.')) : "", contents}].insert(tree.original(path));
    Groups groups;
    for (const auto& [key, files] : classes)
        if (files.size() > 1)
            groups.insert(files);
    return groups;
}

Groups physicalGroups(const RecordingSink& sink, const RandomTree& tree)
{
    Groups groups;
    for (const auto& members : sink.groups()) {
        std::set<std::string> files;
        for (const auto& path : members)
            EXPECT_TRUE(files.insert(tree.original(path)).second) << "two names of one file in a group: " << path;
        groups.insert(files);
    }
    return groups;
}

// Groups the tree, one of its folders reached twice.
RecordingSink groupTree(GroupingWorld& world, std::uint32_t flags, const std::string& properties)
{
    CandidateList list;
    world.gather(list);
    world.gather(list, "/t/f1");
    RecordingSink sink;
    const ScanCriteria by = world.criteria(flags, properties);
    const std::int64_t rows = world.group(by, list, sink);
    EXPECT_EQ(rows, static_cast<std::int64_t>(sink.rows.size()));
    return sink;
}

// Hashes that collide for half of all chunks.
ChunkHash poorHash(std::span<const std::byte> chunk)
{
    return {static_cast<std::uint64_t>(chunk.back()) & 1, 0};
}

// Of a few bytes, so that every limit is met: growing chunks, and room for a single representative.
constexpr AheadBudget growing{{4, 2, 32, 64, 2, poorHash}, 4};
constexpr AheadBudget narrow{{16, 1, 16, 1, 2, poorHash}, 4};

struct Search {
    std::uint32_t flags;
    const char* properties;
    bool byBytes;  // contents (and type) alone decide
};

class RandomTrees : public ::testing::TestWithParam<unsigned> {
protected:
    void expectSameGroups(const Search& search)
    {
        GroupingWorld world;
        RandomTree tree(GetParam());
        tree.fill(world, 60);
        world.options.classifyAhead = false;
        const RecordingSink plain = groupTree(world, search.flags, search.properties);
        world.options.classifyAhead = true;
        for (const AheadBudget& budget : {AheadBudget(), growing, narrow}) {
            world.budget = budget;
            for (const unsigned threads : {1u, 4u}) {
                world.options.threads = threads;
                const RecordingSink ahead = groupTree(world, search.flags, search.properties);
                EXPECT_EQ(ahead.rows, plain.rows) << threads << " threads, chunks of " << budget.worker.firstChunk;
            }
        }
        EXPECT_FALSE(plain.rows.empty());
        if (search.byBytes) {
            EXPECT_EQ(physicalGroups(plain, tree), groupsByBytes(tree, search.flags & scan_flag::sameType));
        }
        EXPECT_TRUE(world.observer.skippedItems.empty());
    }
};

TEST_P(RandomTrees, GroupTheSamePairByPairAndReadAhead)
{
    expectSameGroups({exactContents, "", true});
    expectSameGroups({exactContents | scan_flag::sameType, "", true});
    expectSameGroups({exactContents, "System.DateModified", false});
    expectSameGroups({exactContents, "System.Size,System.DateModified", false});
    expectSameGroups({exactContents, "System.ItemType", false});
    expectSameGroups({scan_flag::subfolders, "System.Size", false});
    expectSameGroups({scan_flag::subfolders | scan_flag::sameType, "System.DateModified,System.Size", false});
}

INSTANTIATE_TEST_SUITE_P(Seeds, RandomTrees, ::testing::Range(1u, 26u));

// Every group that was handed over holds equal bytes, whatever went wrong on the way.
void expectEqualBytes(const RecordingSink& sink, const RandomTree& tree)
{
    for (const auto& members : sink.groups())
        for (const auto& path : members)
            ASSERT_EQ(tree.contents().at(path), tree.contents().at(members.front()));
}

TEST(RandomFaults, NeverMakeAWrongGroup)
{
    for (const bool ahead : {false, true}) {
        GroupingWorld world;
        RandomTree tree(77);
        tree.fill(world, 30);
        world.options.classifyAhead = ahead;
        world.options.threads = 3;
        world.budget = narrow;
        bool failed = true;
        for (int n = 1; failed; ++n) {
            std::atomic<int> operations{0};
            std::atomic<bool> reached{false};
            world.files.setHook([&](const std::string& operation, const std::string&) -> std::optional<Error> {
                const bool reading =
                    operation == "open" || operation == "read" || operation == "skip" || operation == "info";
                if (!reading || ++operations != n)
                    return std::nullopt;
                reached = true;
                return Error{n % 2 == 0 ? ErrorKind::io : ErrorKind::tooManyOpen, 5, "injected"};
            });
            expectEqualBytes(groupTree(world, exactContents, ""), tree);
            failed = reached;
        }
        world.files.setHook({});
        EXPECT_EQ(physicalGroups(groupTree(world, exactContents, ""), tree), groupsByBytes(tree, false));
    }
}

TEST(RandomCancel, EndsAtOnceWithMinusOne)
{
    for (const bool ahead : {false, true}) {
        GroupingWorld world;
        RandomTree tree(78);
        tree.fill(world, 40);
        world.options.classifyAhead = ahead;
        world.options.threads = 2;
        const ScanCriteria by = world.criteria(exactContents, "");
        bool reached = true;
        for (int n = 1; reached; n += 3) {
            CandidateList list;
            world.gather(list);
            std::atomic<int> operations{0};
            world.files.setHook([&](const std::string&, const std::string&) -> std::optional<Error> {
                if (++operations == n)
                    world.cancel.cancel();
                return std::nullopt;
            });
            RecordingSink sink;
            const std::int64_t result = world.group(by, list, sink);
            reached = operations >= n;
            EXPECT_EQ(result == -1, reached) << n;
            EXPECT_LE(operations, n + 8) << "each worker ends the file in work and begins no other";
            world.files.setHook({});
            world.cancel.reset();
        }
    }
}

}  // namespace
}  // namespace kelvane
