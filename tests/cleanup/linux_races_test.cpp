#include <gtest/gtest.h>

#include <fstream>
#include <functional>

#include "support/linux_cleanup_world.h"

namespace kelvane {
namespace {

namespace fs = std::filesystem;
using testing::CleanupWorld;
using testing::Fault;
using testing::Role;
using testing::SeenTree;
using testing::WorldMode;
using testing::WorldRun;

constexpr const char* old = "one and the same";
constexpr const char* intruder = "somebody's new work";

const WorldMode racedModes[] = {
    {"recycle", CleanupAction::recycle},
    {"delete", CleanupAction::deletePermanently},
    {"hard", CleanupAction::link, LinkKind::hard},
    {"hard, no exchange", CleanupAction::link, LinkKind::hard, false},
    {"symbolic", CleanupAction::link, LinkKind::symbolic},
    {"symbolic, no exchange", CleanupAction::link, LinkKind::symbolic, false},
    {"clone", CleanupAction::link, LinkKind::clone, true, true},
};

void write(const fs::path& path)
{
    std::ofstream(path, std::ios::trunc) << intruder;
}

// What somebody else does to a path meanwhile.
struct Change {
    const char* name;
    bool makesWork;
    void (*make)(const fs::path& path);
};

const Change changes[] = {
    {"written", true, [](const fs::path& path) { write(path); }},
    {"replaced", true,
     [](const fs::path& path) {
         write(path.string() + ".new");
         fs::rename(path.string() + ".new", path);
     }},
    {"renamed", false,
     [](const fs::path& path) {
         std::error_code gone;
         fs::rename(path, path.string() + ".renamed", gone);
     }},
    {"link", true,
     [](const fs::path& path) {
         write(path.string() + ".target");
         fs::remove(path);
         fs::create_symlink(path.string() + ".target", path);
     }},
    {"folder", true,
     [](const fs::path& path) {
         fs::remove(path);
         fs::create_directory(path);
         write(path / "inside");
     }},
    {"removed", false, [](const fs::path& path) { fs::remove(path); }},
};

class Races : public ::testing::TestWithParam<WorldMode> {
protected:
    void build() { world_.build({{"a/kept", old, Role::kept}, {"b/item", old, Role::marked}}); }

    // In the tree or in the trash.
    [[nodiscard]] bool isAnywhere(const std::string& contents) const
    {
        const auto has = [&](const auto& entry) { return entry.second.contents == contents; };
        const SeenTree tree = world_.look();
        const SeenTree trash = world_.look(*world_.trash() / "files");
        return std::any_of(tree.begin(), tree.end(), has) || std::any_of(trash.begin(), trash.end(), has);
    }

    // No system removes a file, or puts one in the place of another, only if it still is what it was: between the last
    // look and that call there is an instant that nothing can close.
    [[nodiscard]] bool isLastInstant() const
    {
        const std::string& struck = world_.faults.struck();
        return struck == "remove" || (struck == "replace" && !GetParam().canExchange);
    }

    // Runs with an action right before an operation, and settles; whether the item was told to be done.
    bool comeBetween(int operation, std::function<void()> action)
    {
        world_.faults.fail(Fault::witnessed, operation);
        world_.faults.onFault(std::move(action));
        const WorldRun run = world_.clean(GetParam());
        world_.faults.stop();
        EXPECT_TRUE(world_.settle());
        return run.report.pass.succeeded == 1;
    }

    CleanupWorld world_;
};

// Between the scan and the run: the guards see it, and nothing happens.
TEST_P(Races, WhatChangedSinceTheScanIsLeftAlone)
{
    for (const char* victim : {"b/item", "a/kept"})
        for (const Change& change : changes) {
            SCOPED_TRACE(std::string(victim) + " " + change.name);
            build();
            change.make(world_.files() / victim);
            const SeenTree before = world_.look();
            const WorldRun run = world_.clean(GetParam());
            ASSERT_EQ(run.report.items.size(), 1u);
            ASSERT_TRUE(run.report.items[0].failure);
            EXPECT_EQ(run.report.items[0].failure->fault,
                      victim[0] == 'b' ? CleanupFault::changed : CleanupFault::keptChanged);
            EXPECT_EQ(run.report.pass.errors, 1u);
            EXPECT_EQ(world_.differences(before), "");
        }
}

// What there was right after somebody came is there at the end as well.
TEST_P(Races, NeitherOldNorNewIsLostWheneverSomebodyComesBetween)
{
    for (const char* victim : {"b/item", "a/kept"})
        for (const Change& change : changes)
            for (int operation = 1; operation == 1 || world_.faults.failed(); ++operation) {
                build();
                bool wasThere = false;
                const bool done = comeBetween(operation, [&] {
                    change.make(world_.files() / victim);
                    wasThere = isAnywhere(old);
                });
                SCOPED_TRACE(std::string(victim) + " " + change.name + " before operation " +
                             std::to_string(operation) + ", " + world_.faults.struck() + (done ? ", done" : ""));
                if (!world_.faults.failed() || isLastInstant())
                    continue;
                EXPECT_TRUE(!change.makesWork || isAnywhere(intruder)) << "somebody's work is gone";
                EXPECT_TRUE(!wasThere || isAnywhere(old)) << "the old contents are gone";
            }
}

// The name beside the item is guessed, or what lies there is taken for rubbish.
TEST_P(Races, SomebodysFileUnderATemporaryNameIsKept)
{
    if (GetParam().action != CleanupAction::link)
        GTEST_SKIP() << "nothing is made beside the item";
    for (int operation = 1; operation == 1 || world_.faults.failed(); ++operation) {
        build();
        bool wrote = false;
        const bool done = comeBetween(operation, [&] {
            const auto runs = world_.journals().list();
            const auto run = runs && !runs->empty() ? world_.journals().read(runs->back()) : Error{};
            if (!run || run->entries.empty() || run->entries[0].intent.temporary.empty())
                return;
            write(world_.files() / "b/.work");
            fs::rename(world_.files() / "b/.work", world_.files() / "b" / run->entries[0].intent.temporary);
            wrote = true;
        });
        // What came aside is looked at, then what stands in its place, then it goes.
        const bool isTooLate = isLastInstant() || (done && world_.faults.struck() == "look");
        EXPECT_TRUE(!wrote || isTooLate || isAnywhere(intruder))
            << "operation " << operation << ", " << world_.faults.struck();
        EXPECT_TRUE(isAnywhere(old));
    }
}

INSTANTIATE_TEST_SUITE_P(Modes, Races, ::testing::ValuesIn(racedModes),
                         [](const auto& tested) { return "mode" + std::to_string(tested.index); });

}  // namespace
}  // namespace kelvane
