#include "results/marking_rules.h"

#include <gtest/gtest.h>

#include <random>

#include "results/folder_text.h"
#include "results/marking_world.h"

namespace kelvane {
namespace {

using testing::ListedFile;
using testing::MarkingWorld;

MarkingPlan keep(std::vector<MarkingRule> chain)
{
    return {std::move(chain), {}, {}};
}

// Ties, missing values, a single item, and a folder whose name begins like another's.
const std::vector<ListedFile> tree = {
    {"/d/a.txt", 1, 5, 30},
    {"/d/b.txt", 1, 9, 0},
    {"/data/c.jpg", 1, 9, 10},
    {"/d", 1, 5, 10},
    {"/d/alone.txt", 2},
    {"/x/d/e.txt", 3, 7, 20},
    {"/database/f", 3, 7, 20},
    {"/x/gone", 3, 4096, 0, {}, FileKind::folder},
    {"/x/y", 4, 0, 0, {}, FileKind::folder},
    {"/x/z", 4, 0, 0, {}, FileKind::folder},
};

TEST(MarkingRules, KeepWhatTheySayInEachGroup)
{
    const struct {
        MarkingPlan plan;
        std::string marks;
    } rows[] = {
        {keep({{KeepRule::biggest, {}, {}}}), "x-xx - -xx -x"},
        {keep({{KeepRule::smallest, {}, {}}}), "-xxx - -xx -x"},
        {keep({{KeepRule::newest, {}, {}}}), "-xxx - -xx -x"},
        {keep({{KeepRule::oldest, {}, {}}}), "xx-x - -xx -x"},
        {keep({{KeepRule::first, {}, {}}}), "-xxx - -xx -x"},
        {keep({{KeepRule::last, {}, {}}}), "xxx- - xx- x-"},
        {keep({{KeepRule::under, "/d", {}}}), "--x- - -xx xx"},
        {keep({{KeepRule::under, "/d/", {}}}), "--xx - -xx xx"},
        {keep({{KeepRule::under, "/D", {}}}), "xxxx - xxx xx"},
        {keep({{KeepRule::under, "/d", {}}, {KeepRule::under, "/data", {}}}), "--x- - -xx --"},
        {keep({{KeepRule::under, "/d", {}}, {KeepRule::biggest, {}, {}}}), "x-xx - -xx -x"},
        {keep({{KeepRule::nameMatches, {}, "jpg,e.*"}}), "xx-x - -xx --"},
        {keep({{KeepRule::biggest, {}, {}}, {KeepRule::oldest, {}, {}}}), "xx-x - -xx -x"},
        {keep({{KeepRule::oldest, {}, {}}, {KeepRule::last, {}, {}}}), "xxx- - x-x x-"},
        {keep({{KeepRule::deepest, {}, {}}, {KeepRule::last, {}, {}}}), "xx-x - -xx x-"},
        {keep({{KeepRule::shallowest, {}, {}}}), "xxx- - x-x -x"},
        {keep({{KeepRule::longestPath, {}, {}}}), "xx-x - x-x -x"},
        {keep({{KeepRule::shortestPath, {}, {}}}), "xxx- - xx- -x"},
        {{{}, {"/nowhere", "/database", "/d"}, {}}, "-xxx - x-x -x"},
        {{{{KeepRule::last, {}, {}}}, {"/d/"}, {}}, "xxx- - xx- x-"},
        {{{{KeepRule::under, "/data", {}}}, {"/d"}, {}}, "--x- - --- --"},
        {{{{KeepRule::first, {}, {}}}, {}, {"/data", "/x/d/"}}, "-x-x - -xx -x"},
        {{{{KeepRule::last, {}, {}}}, {}, {"/d/"}}, "--x- - xx- x-"},
        {{{{KeepRule::last, {}, {}}}, {}, {"/"}}, "---- - --- --"},
    };
    for (const auto& row : rows) {
        MarkingWorld world(tree);
        const auto told = previewMarks(world.model, row.plan, world.ports);
        ASSERT_TRUE(told);
        EXPECT_EQ(world.model.everywhere(Mark::ticked), MarkSum{});
        EXPECT_EQ(*applyMarks(world.model, row.plan, world.ports), *told);
        EXPECT_EQ(world.marks(), row.marks) << "row " << &row - rows;
        EXPECT_EQ(world.model.inView(Mark::ticked), told->marked);
    }
}

TEST(MarkingRules, TellOfGroupsThatWouldLoseEveryCopy)
{
    MarkingWorld world(tree);
    const auto told = previewMarks(world.model, keep({{KeepRule::under, "/d", {}}}), world.ports);
    EXPECT_EQ(*told, (MarkingPreview{{5, 9 + 7}, 3, 1, 0}));
    const MarkingPlan guarded{{{KeepRule::under, "/d", {}}}, {}, {"/x/y", "/data"}};
    EXPECT_EQ(*previewMarks(world.model, guarded, world.ports), (MarkingPreview{{3, 7}, 2, 0, 2}));
}

TEST(MarkingRules, RefuseWhatSaysNothingAndWhatIsNotGrouped)
{
    MarkingWorld world({{"/a", 1}, {"/b", 2}, {"/c", 1}});
    EXPECT_EQ(applyMarks(world.model, keep({{}}), world.ports).error().kind, ErrorKind::invalid);
    world.model.clear();
    EXPECT_EQ(applyMarks(world.model, {{}, {}, {"/a"}}, world.ports).error().kind, ErrorKind::invalid);
}

TEST(MarkingRules, FoldersAreComparedAsTheSystemDoes)
{
    MarkingWorld world;
    const struct {
        const char *folder, *path;
        bool keeps, holds;
    } rows[] = {
        {R"(C:\Data)", R"(c:\dATA\a.txt)", true, true},
        {R"(C:\Data)", R"(C:\Data)", true, true},
        {R"(C:\Data)", R"(C:\Database\a.txt)", false, false},
        {R"(\\?\C:\Data)", R"(C:\Data\a.txt)", true, true},
        {R"(C:\Data\)", R"(\\?\C:\Data\a.txt)", true, true},
        {R"(\DATA\)", R"(D:\old\data\a.txt)", true, false},
        {R"(\\srv\share)", R"(\\?\UNC\SRV\share\a)", true, true},
        {R"(ta\x)", R"(C:\a\Data\x)", true, false},  // the character after the text's length is a separator by chance
        {"C:\\", R"(C:\a)", true, true},
        {"", R"(C:\a)", false, false},
        {"C:\\\xC3\x84", "c:\\\xC3\xA4\\a", true, true},
    };
    for (const auto& row : rows) {
        const FolderText folder(row.folder, *world.windowsPaths);
        const std::string path = world.windowsPaths->comparable(withoutLongPrefix(row.path, *world.windowsPaths));
        EXPECT_EQ(folder.keeps(path), row.keeps) << row.folder << " " << row.path;
        EXPECT_EQ(folder.holds(path), row.holds) << row.folder << " " << row.path;
    }
    if (testing::pathsArePosix) {
        const FolderText bytes("/\xFF", *world.scan.paths);
        EXPECT_TRUE(bytes.keeps("/\xFF/a") && bytes.holds("/\xFF/a"));
        EXPECT_FALSE(bytes.keeps("/\xFE/a") || bytes.holds("/\xFE/a"));
    }
}

// The rules as they are told to people, one item after the other.
std::vector<bool> naive(ResultsModel& model, std::span<const ItemId> group, const MarkingRule& rule)
{
    std::vector<bool> kept(group.size());
    std::size_t best = 0;
    const auto value = [&](std::size_t at, bool size) -> std::int64_t {
        const FileInfo& info = model.item(group[at]).file.item().info();
        if (size)
            return info.kind == FileKind::folder ? -1 : static_cast<std::int64_t>(info.size.bytes);
        return info.modified.ticks == 0 ? -1 : info.modified.ticks;
    };
    for (std::size_t at = 1; at < group.size(); ++at) {
        const bool size = rule.rule == KeepRule::biggest || rule.rule == KeepRule::smallest;
        const bool most = rule.rule == KeepRule::biggest || rule.rule == KeepRule::newest;
        const std::int64_t now = value(at, size), so_far = value(best, size);
        if (most ? now > so_far : now >= 0 && (so_far < 0 || now < so_far))
            best = at;
    }
    if (rule.rule == KeepRule::under) {
        for (std::size_t at = 0; at < group.size(); ++at)
            kept[at] = testing::posix(model.item(group[at]).file.item().path()).starts_with(rule.folder + "/");
        return kept;
    }
    kept[rule.rule == KeepRule::first ? 0 : rule.rule == KeepRule::last ? group.size() - 1 : best] = true;
    return kept;
}

class RandomMarking {
public:
    explicit RandomMarking(unsigned seed) : random_(seed)
    {
        world_.model.useTickBoxes(below(4) != 0);
        for (std::uint32_t group = 1; group <= 12; ++group)
            for (unsigned left = 1 + below(6); left > 0; --left)
                add(group);
        for (const ItemId id : world_.model.order()) {
            if (below(3) == 0)
                world_.model.mark(std::span(&id, 1), world_.model.markInForce(), true);
            if (below(5) == 0)
                world_.model.hide(std::span(&id, 1), hiding_flag::filter);
        }
    }

    void run(const MarkingPlan& plan)
    {
        ResultsModel& model = world_.model;
        const std::vector<bool> before = marksByItem();
        const auto told = previewMarks(model, plan, world_.ports);
        ASSERT_EQ(*applyMarks(model, plan, world_.ports), *told);
        checkGroups(plan, before);
        if (!model.hasTickBoxes() || marksByItem() == before)
            return;
        model.undo();
        EXPECT_EQ(marksByItem(), before) << "one step of history";
    }

    [[nodiscard]] MarkingRule rule(unsigned kinds)
    {
        return {static_cast<KeepRule>(below(kinds)), folder(), below(2) ? "jpg" : "n1*.*"};
    }

    [[nodiscard]] MarkingPlan plan()
    {
        MarkingPlan plan;
        for (unsigned left = 1 + below(3); left > 0; --left)
            plan.chain.push_back(rule(12));
        for (unsigned left = below(3); left > 0; --left)
            plan.preferredFolders.push_back(folder());
        for (unsigned left = below(2); left > 0; --left)
            plan.protectedFolders.push_back(folder());
        return plan;
    }

private:
    [[nodiscard]] std::vector<bool> marksByItem() const
    {
        std::vector<bool> marks;
        world_.model.forEachItem([&](ItemId id) { marks.push_back(world_.model.isMarked(id)); });
        return marks;
    }

    unsigned below(unsigned limit) { return static_cast<unsigned>(random_() % limit); }
    std::string folder() { return std::array{"/a", "/a/b", "/ab", "/c"}[below(4)]; }

    void add(std::uint32_t group)
    {
        const std::string path = folder() + "/n" + std::to_string(below(20)) + (below(2) ? ".jpg" : ".txt");
        const FileKind kind = below(4) ? FileKind::regular : FileKind::folder;
        world_.add({path, group, below(3), below(4), {}, kind});
    }

    void checkGroups(const MarkingPlan& plan, const std::vector<bool>& before)
    {
        ResultsModel& model = world_.model;
        const bool simple = plan.chain.size() == 1 && plan.chain[0].rule <= KeepRule::under &&
                            plan.preferredFolders.empty() && plan.protectedFolders.empty();
        model.forEachRun([&](std::span<const ItemId> group) {
            std::uint64_t marked = 0;
            const std::vector<bool> kept = simple ? naive(model, group, plan.chain[0]) : std::vector<bool>{};
            for (std::size_t at = 0; at < group.size(); ++at) {
                const bool is = model.isMarked(group[at]);
                if (group.size() == 1) {
                    EXPECT_EQ(is, model.hasTickBoxes() && before[static_cast<std::size_t>(group[at])]);
                    return true;
                }
                EXPECT_TRUE(!simple || is != kept[at]);
                marked += is;
            }
            EXPECT_TRUE(marked < group.size() || plan.mayMarkWholeGroups());
            return true;
        });
        model.forEachItem([&](ItemId id) {
            const std::string path = testing::posix(model.item(id).file.item().path());
            const bool guarded = std::any_of(plan.protectedFolders.begin(), plan.protectedFolders.end(),
                                             [&](const std::string& folder) { return path.starts_with(folder + "/"); });
            if (model.item(id).has(item_state::hidden)) {
                EXPECT_EQ(model.isMarked(id), model.hasTickBoxes() && before[static_cast<std::size_t>(id)]);
            } else if (guarded && model.runAt(*model.rowOf(id)).count > 1) {
                EXPECT_FALSE(model.isMarked(id));
            }
        });
    }

    std::mt19937 random_;
    MarkingWorld world_;
};

TEST(MarkingRules, NeverLoseAGroupButByTheLocationRuleAlone)
{
    for (unsigned seed = 0; seed < 400 && !::testing::Test::HasFailure(); ++seed) {
        SCOPED_TRACE(seed);
        RandomMarking random(seed);
        random.run({{random.rule(7)}, {}, {}});
        random.run(random.plan());
    }
}

}  // namespace
}  // namespace kelvane
