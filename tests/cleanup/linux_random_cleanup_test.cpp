#include <gtest/gtest.h>

#include <random>
#include <set>

#include "engine/scan_driver.h"
#include "results/marking_rules.h"
#include "support/linux_cleanup_world.h"
#include "support/real_files.h"

namespace kelvane {
namespace {

using testing::CleanupWorld;
using testing::Role;
using testing::SeenTree;
using testing::WorldFile;
using testing::WorldMode;
using testing::WorldRun;

constexpr auto linkAction = CleanupAction::link;

const WorldMode modes[] = {
    {"recycle", CleanupAction::recycle},
    {"delete", CleanupAction::deletePermanently},
    {"hard", linkAction, LinkKind::hard},
    {"symbolic", linkAction, LinkKind::symbolic},
    {"automatic", linkAction, LinkKind::automatic},
    {"automatic, no exchange", linkAction, LinkKind::automatic, false},
};

class RandomCleanup : public ::testing::TestWithParam<unsigned> {
protected:
    [[nodiscard]] unsigned below(std::size_t limit) { return static_cast<unsigned>(random_() % limit); }

    [[nodiscard]] std::string randomPath(unsigned number)
    {
        static const std::vector<std::string> odd = testing::unusualNames();
        std::string path;
        for (unsigned depth = below(4); depth > 0; --depth)
            path +=
                (below(3) == 0 ? odd[below(odd.size() - 1)] : std::string(1, static_cast<char>('a' + below(3)))) + "/";
        return path + std::to_string(number) + (below(4) == 0 ? odd[below(odd.size() - 1)] : ".txt");
    }

    // Few contents, some of them alike but for one byte, some longer than what is compared at once. A file with several
    // names is no duplicate of any other: a scan shows one of the names, and the others would keep its contents.
    [[nodiscard]] std::vector<WorldFile> randomFiles()
    {
        std::vector<WorldFile> files;
        const unsigned count = 5 + below(30);
        for (unsigned number = 0; number < count; ++number) {
            WorldFile file{randomPath(number), std::string(below(8) == 0 ? 200'000 : 1 + below(3), 'x'), Role::kept};
            file.contents.back() = static_cast<char>('a' + below(3));
            files.push_back(file);
            if (below(6) != 0)
                continue;
            files.back().contents += "of its own " + std::to_string(number);
            files.push_back({"second " + std::to_string(number), files.back().contents, Role::kept, file.path});
        }
        return files;
    }

    [[nodiscard]] std::unique_ptr<ResultsModel> scan()
    {
        CScanNode definition;
        definition.flags = scan_flag::contents | scan_flag::subfolders | scan_flag::skipLinks;
        definition.setCategory(Category::custom);
        definition.properties = "System.Size";
        const std::string root = world_.files();
        definition.roots = platform_.paths().joinRoots({root});
        const auto criteria = makeCriteria(definition, options_, catalogue_);
        auto model = std::make_unique<ResultsModel>();
        ScanObserver observer;
        const ScanReport report =
            runScan(criteria.value(), {platform_.shell(), platform_.paths(), properties_, platform_.clock(),
                                       platform_.priority(), observer, CancelFlag(), *model});
        EXPECT_GE(report.rows, 0);
        return model;
    }

    // Rows that a person would still call duplicates: other files than those of their group seen before.
    [[nodiscard]] static unsigned duplicates(const ResultsModel& model)
    {
        unsigned found = 0;
        model.forEachRun([&](std::span<const ItemId> group) {
            std::set<std::uint64_t> seen;
            for (const ItemId item : group)
                seen.insert(model.item(item).file.item().info().identity.index);
            found += static_cast<unsigned>(seen.size() - 1);
            return true;
        });
        return found;
    }

    void markByRule(ResultsModel& model)
    {
        MarkingPlan plan;
        const auto rule = static_cast<KeepRule>(below(6));  // those that need nothing more
        plan.chain.push_back({rule, {}, {}});
        plan.chain.push_back({below(2) == 0 ? KeepRule::shortestPath : KeepRule::deepest, {}, {}});
        ASSERT_TRUE(applyMarks(model, plan, {properties_, platform_.paths()}));
    }

    std::mt19937 random_{GetParam()};
    CleanupWorld world_;
    Platform& platform_ = world_.platform();
    EngineOptions options_;
    PropertyCatalogue catalogue_{platform_.properties()};
    PropertySource properties_{catalogue_, platform_.shell(), platform_.readers(), platform_.folding(), {}};
};

TEST_P(RandomCleanup, LeavesNoDuplicatesAndIsTakenBackWhole)
{
    for (const WorldMode& mode : modes) {
        SCOPED_TRACE(mode.name);
        world_.build(randomFiles());
        const SeenTree before = world_.look();
        auto model = scan();
        const unsigned found = duplicates(*model);
        markByRule(*model);
        world_.list(std::move(model));
        const WorldRun run = world_.clean(mode);
        EXPECT_EQ(run.report.pass.succeeded, found);
        EXPECT_EQ(duplicates(*scan()), 0u);
        EXPECT_EQ(world_.unsafe(before, run.report.plan) + world_.untrue(before, run) + world_.strays(before), "");
        EXPECT_EQ(world_.badlySettled(before, run), "");
    }
}

INSTANTIATE_TEST_SUITE_P(Seeds, RandomCleanup, ::testing::Range(1u, 25u));

}  // namespace
}  // namespace kelvane
