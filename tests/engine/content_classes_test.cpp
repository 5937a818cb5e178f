#include "engine/content_classes.h"

#include <gtest/gtest.h>

#include <cstring>
#include <set>

#include "engine/chunk_buckets.h"
#include "engine/kept_chunks.h"
#include "support/scan_world.h"

namespace kelvane {
namespace {

constexpr std::uint32_t alone = ContentClassifier::alone;

class ContentClasses : public ::testing::Test {
protected:
    void add(const std::string& contents)
    {
        const std::string path = "/" + std::to_string(items.size());
        world.files.addFile(path, contents);
        items.push_back(*world.shell->parse(path));
    }

    std::vector<std::uint32_t> classify(const ContentBudget& budget = {})
    {
        skipped.clear();
        ContentClassifier classifier(*world.shell, world.options, cancel, budget,
                                     [&](const ShellItem& item, const Error&) { skipped.insert(item.fullName()); });
        std::vector<const ShellItem*> pointers;
        for (const auto& item : items)
            pointers.push_back(item.get());
        std::vector<std::uint32_t> classes(items.size());
        const auto compared = comparedRanges(items[0]->info().size, world.options.hugeFile);
        EXPECT_TRUE(classifier.classify(pointers, compared, classes));
        return classes;
    }

    // The most files that were open at once.
    std::size_t mostOpen()
    {
        std::set<std::string> open;
        std::size_t most = 0;
        for (const std::string& access : world.files.accesses()) {
            const std::string path = access.substr(access.find(' ') + 1);
            if (access.starts_with("open "))
                open.insert(path);
            if (access.starts_with("info "))  // the last question before a handle is let go
                open.erase(path);
            most = std::max(most, open.size());
        }
        return most;
    }

    testing::ScanWorld world;
    CancelFlag cancel;
    std::vector<Ref<ShellItem>> items;
    std::set<std::string> skipped;
};

TEST_F(ContentClasses, EqualFilesShareANumber)
{
    const std::string base(100'000, 'x');
    std::string late = base;
    late[99'999] = 'y';
    for (const std::string& contents : {base, late, base, std::string(100'000, 'z'), late, base})
        add(contents);
    const auto classes = classify();
    EXPECT_EQ(classes[0], classes[2]);
    EXPECT_EQ(classes[0], classes[5]);
    EXPECT_EQ(classes[1], classes[4]);
    EXPECT_NE(classes[0], classes[1]);
    EXPECT_EQ(classes[3], alone);
}

TEST_F(ContentClasses, ABudgetOfOneChunkGivesTheSameClasses)
{
    for (int i = 0; i < 40; ++i)
        add(std::string(50, static_cast<char>('a' + i % 13)) + std::string(50, static_cast<char>('a' + i % 3)));
    const auto wide = classify();
    const auto narrow = classify({16, 2, 32, 1, 2});
    const auto equal = [](const std::vector<std::uint32_t>& classes, std::size_t i, std::size_t j) {
        return classes[i] == classes[j] && classes[i] != alone;
    };
    for (std::size_t i = 0; i < items.size(); ++i) {
        for (std::size_t j = 0; j < i; ++j)
            EXPECT_EQ(equal(narrow, i, j), equal(wide, i, j));
    }
    EXPECT_TRUE(skipped.empty());
}

TEST_F(ContentClasses, OnlySoManyFilesStayOpen)
{
    for (int i = 0; i < 30; ++i)
        add(std::string(1000, 'x'));
    const auto classes = classify({16, 2, 64, 4096, 5});
    EXPECT_EQ(std::set(classes.begin(), classes.end()).size(), 1u);
    EXPECT_LE(mostOpen(), 6u);
}

TEST_F(ContentClasses, RunningOutOfHandlesGivesKeptOnesBack)
{
    for (int i = 0; i < 6; ++i)
        add(std::string(1000, 'x'));
    int opens = 0;
    world.files.setHook([&](const std::string& operation, const std::string&) -> std::optional<Error> {
        if (operation == "open" && ++opens % 4 == 0)
            return Error{ErrorKind::tooManyOpen, 24, "too many"};
        return std::nullopt;
    });
    const auto classes = classify({16, 2, 64, 4096, 100});
    EXPECT_EQ(std::set(classes.begin(), classes.end()), std::set{classes[0]});
    EXPECT_NE(classes[0], alone);
    EXPECT_TRUE(skipped.empty());
}

TEST_F(ContentClasses, AFileThatChangesWhileReadIsAloneAndReported)
{
    for (int i = 0; i < 3; ++i)
        add(std::string(1000, 'x'));
    world.files.setHook([&, done = std::make_shared<bool>()](const std::string& operation, const std::string& path) {
        if (operation == "read" && path == "/0" && !std::exchange(*done, true))
            world.files.setContents("/0", std::string(1000, 'x'));
        return std::optional<Error>();
    });
    const auto classes = classify();
    EXPECT_EQ(classes[0], alone) << "though its bytes are the same";
    EXPECT_EQ(classes[1], classes[2]);
    EXPECT_NE(classes[1], alone);
    EXPECT_EQ(skipped, std::set<std::string>{"/0"});
}

TEST(ChunkBuckets, ManyDifferentChunksAreToldApart)
{
    KeptChunks kept(64, 64 * 300);
    ChunkBuckets buckets;
    for (int round = 0; round < 2; ++round) {
        kept.clear();
        buckets.begin(600);
        for (std::uint32_t i = 0; i < 600; ++i) {
            const auto room = kept.room(4);
            const std::uint32_t value = i % 200;
            std::memcpy(room.data(), &value, 4);
            EXPECT_EQ(buckets.place(room, kept), value);
        }
        EXPECT_EQ(buckets.size(), 200u);
        EXPECT_EQ(buckets[7].count, 3u);
    }
}

}  // namespace
}  // namespace kelvane
