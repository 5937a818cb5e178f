#include "cleanup/cleanup_plan.h"

#include <gtest/gtest.h>

#include <map>
#include <random>
#include <set>
#include <sstream>

#include "cleanup/pre_check.h"
#include "results/marking_world.h"

namespace kelvane {
namespace {

using testing::ListedFile;
using testing::MarkingWorld;

struct CleanupWorld : MarkingWorld {
    // "x" marks a file, "h" hides it, "H" does both.
    CleanupWorld(const std::vector<ListedFile>& files, std::string_view marks) : MarkingWorld(files)
    {
        definition.properties = "System.Size";
        for (std::size_t at = 0; at < marks.size(); ++at) {
            const ItemId id = model.order()[at];
            model.mark(std::span(&id, 1), Mark::ticked, marks[at] == 'x' || marks[at] == 'H');
            if (marks[at] == 'h' || marks[at] == 'H')
                model.hide(std::span(&id, 1), hiding_flag::filter);
        }
    }

    [[nodiscard]] Result<CleanupPlan> plan(const CleanupRequest& request) const
    {
        return planCleanup(model, request, facts());
    }

    [[nodiscard]] CleanupFacts facts() const
    {
        return {definition, *windowsPaths, nullptr, linkCount, canClone, sharedBytes, metadataLoss};
    }

    // "none b>a 10" for each command with what it frees, "!" for two names of one file, "b:inArchive" for what is
    // skipped, then the sum; or why there is no plan.
    [[nodiscard]] std::string told(const CleanupRequest& request) const
    {
        const auto made = plan(request);
        if (!made)
            return made.error().kind == ErrorKind::notSupported ? "not possible" : "refused";
        std::ostringstream out;
        for (const CleanupCommand& command : made->commands)
            out << nameOf(command.link) << " " << name(command.item) << ">" << name(command.kept)
                << (command.sameFile ? "! " : " ") << command.frees << " ";
        for (const CleanupSkip& skip : made->skipped)
            out << name(skip.item) << ":" << nameOf(skip.why) << " ";
        return out.str() + std::to_string(made->frees);
    }

    [[nodiscard]] std::string name(ItemId id) const
    {
        const std::string path = testing::posix(model.item(id).file.item().fullName());
        return path.substr(path.find_last_of("/\\") + 1);
    }

    CScanNode definition;
    std::function<std::uint32_t(const ShellItem&)> linkCount;
    std::function<bool(const ShellItem&)> canClone;
    std::function<std::uint64_t(const ShellItem&)> sharedBytes;
    std::function<std::uint8_t(const ShellItem&, const ShellItem&)> metadataLoss;
};

ListedFile file(const char* path, std::uint32_t group, FileIdentity identity = {}, std::uint32_t attributes = 0)
{
    return {path, group, 10, 1, identity, FileKind::regular, attributes};
}

constexpr CleanupRequest recycle{};
constexpr CleanupRequest links{CleanupAction::link};

TEST(CleanupPlan, GivesEachMarkedItemTheOriginalNearestToTheFirst)
{
    const std::vector<ListedFile> files = {file("C:\\a", 1), file("C:\\b", 1), file("C:\\c", 1), file("C:\\d", 2),
                                           file("C:\\e", 2)};
    const struct {
        const char *marks, *plan;
    } rows[] = {
        {"-xx--", "none b>a 10 none c>a 10 20"},
        {"x-x--", "none a>b 10 none c>b 10 20"},
        {"xx---", "none a>c 10 none b>c 10 20"},
        {"--xx-", "none c>b 10 none d>e 10 20"},
        {"-----", "0"},
        {"---xx", "refused"},
        {"---xh", "refused"},  // a copy out of view does not count
        {"-hx--", "none c>a 10 10"},
        {"-Hx--", "none c>a 10 10"},  // marks out of view are left alone
    };
    for (const auto& row : rows)
        EXPECT_EQ(CleanupWorld(files, row.marks).told(recycle), row.plan) << row.marks;
}

TEST(CleanupPlan, ChoosesLinksByVolumeAndSettings)
{
    const CleanupWorld byLetter({file("C:\\a", 1), file("c:\\b", 1), file("D:\\c", 1)}, "-xx");
    const struct {
        CleanupRequest request;
        const char* plan;
    } rows[] = {
        {links, "hard b>a 10 symbolic c>a 10 20"},
        {{CleanupAction::link, LinkKind::automatic, true}, "symbolic b>a 10 symbolic c>a 10 20"},
        {{CleanupAction::link, LinkKind::automatic, false, true}, "hard b>a 10 c:otherVolume 10"},
        {{CleanupAction::link, LinkKind::automatic, true, true}, "b:linksOff c:linksOff 0"},
        {{CleanupAction::link, LinkKind::hard, true}, "hard b>a 10 c:otherVolume 10"},
        {{CleanupAction::link, LinkKind::clone}, "clone b>a 10 c:otherVolume 10"},
        {{CleanupAction::link, LinkKind::symbolic, false, true}, "symbolic b>a 10 symbolic c>a 10 20"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(byLetter.told(row.request), row.plan) << &row - rows;
    const CleanupWorld byIdentity({file("M:\\a", 1, {7, 1}), file("N:\\b", 1, {7, 2}), file("M:\\c", 1, {8, 1})},
                                  "-xx");
    EXPECT_EQ(byIdentity.told(links), "hard b>a 10 symbolic c>a 10 20");
    const CleanupWorld unknown({file("/m/a", 1), file("/n/b", 1)}, "-x");
    EXPECT_EQ(unknown.told(links), "auto b>a 10 10");
}

TEST(CleanupPlan, NamesTheWaysThatALinkMayTake)
{
    CleanupWorld world({file("C:\\a", 1), file("C:\\b", 1), file("D:\\c", 1), file("/d", 2), file("/e", 2)}, "-xx-x");
    world.metadataLoss = [](const ShellItem&, const ShellItem&) { return metadata_loss::times; };
    // "b:clone,chs" for a link that is a clone first, then hard, then symbolic; "!" where times are lost.
    const auto ways = [&](const CleanupRequest& request) {
        std::string told;
        const auto plan = world.plan(request);
        for (const CleanupCommand& command : plan->commands) {
            told += world.name(command.item) + ":" + std::string(nameOf(command.link)) + ",";
            for (const auto& [bit, letter] :
                 {std::pair(link_way::clone, 'c'), {link_way::hard, 'h'}, {link_way::symbolic, 's'}})
                told += (command.ways & bit) != 0 ? std::string(1, letter) : "";
            told += command.loses == metadata_loss::times ? "! " : " ";
        }
        return told;
    };
    const struct {
        CleanupRequest request;
        const char *withClones, *without;
    } rows[] = {
        {links, "b:clone,chs c:symbolic,s! e:auto,chs! ", "b:hard,hs! c:symbolic,s! e:auto,hs! "},
        {{CleanupAction::link, LinkKind::automatic, true},
         "b:clone,cs c:symbolic,s! e:auto,cs! ",
         "b:symbolic,s! c:symbolic,s! e:symbolic,s! "},
        {{CleanupAction::link, LinkKind::automatic, false, true}, "b:clone,ch e:clone,ch ", "b:hard,h! e:hard,h! "},
        {{CleanupAction::link, LinkKind::automatic, true, true}, "b:clone,c e:clone,c ", ""},
        {{CleanupAction::link, LinkKind::clone}, "b:clone,c e:clone,c ", "b:clone,c e:clone,c "},
        {{CleanupAction::link, LinkKind::hard, true}, "b:hard,h! e:hard,h! ", "b:hard,h! e:hard,h! "},
        {recycle, "b:none, c:none, e:none, ", "b:none, c:none, e:none, "},
    };
    for (const auto& row : rows) {
        world.canClone = [](const ShellItem&) { return true; };
        EXPECT_EQ(ways(row.request), row.withClones) << &row - rows;
        world.canClone = nullptr;
        EXPECT_EQ(ways(row.request), row.without) << &row - rows;
    }
}

TEST(CleanupPlan, TellsWhatAPersonJoinedAndWhatOtherFilesShare)
{
    CleanupWorld world({file("/a", 1), file("/b", 1), file("/c", 2), file("/d", 2), file("/e", 2)}, "-x-x-");
    world.sharedBytes = [](const ShellItem& item) { return item.path() == testing::native("/b") ? 4u : 99u; };
    EXPECT_EQ(world.told(recycle), "none b>a 6 none d>c 0 6");
    EXPECT_FALSE(world.plan(recycle)->commands[0].joinedByHand);
    const std::vector<ItemId> both{world.model.itemAt(1), world.model.itemAt(2)};
    world.model.mark(both, Mark::selected, true);
    ASSERT_TRUE(world.model.regroupSelection());
    const auto plan = world.plan(recycle);
    EXPECT_TRUE(plan->commands[0].joinedByHand);
    EXPECT_FALSE(plan->commands[1].joinedByHand) << "nothing joined that group";
}

TEST(CleanupPlan, LinksOnlyLocalFilesOfOneSize)
{
    const CleanupWorld joinedByHand({file("C:\\a", 1), {"C:\\b", 1, 20}}, "-x");
    EXPECT_EQ(joinedByHand.told(links), "b:otherSize 0");
    EXPECT_EQ(joinedByHand.told(recycle), "none b>a 20 20");
    CleanupWorld world({file("C:\\a", 1), file("\\\\?\\C:\\b", 1)}, "-x");
    EXPECT_EQ(world.told(links), "hard b>a 10 10");
    EXPECT_TRUE(world.plan(recycle)->canBeUndone());
    world.definition.properties = "System.Title";
    EXPECT_EQ(world.told(links), "not possible");
    world.definition.set(scan_flag::contents, true);
    EXPECT_EQ(world.told(links), "hard b>a 10 10") << "equal contents have equal sizes";
    world.definition.set(scan_flag::fuzzy, true);
    EXPECT_EQ(world.told(links), "not possible");
    world.definition.setCategory(Category::folders);
    EXPECT_EQ(world.told(links), "none b>a 10 10") << "folders are deleted instead";
    for (const char* path : {"\\\\srv\\x\\b", "\\\\?\\UNC\\srv\\x\\b"}) {
        const CleanupWorld network({file("C:\\a", 1), file(path, 1)}, "-x");
        EXPECT_EQ(network.told(links), "not possible");
        EXPECT_EQ(network.told(recycle), "none b>a 10 10");
        EXPECT_FALSE(network.plan(recycle)->canBeUndone());
    }
}

TEST(CleanupPlan, NeitherTouchesNorLinksIntoArchives)
{
    ListedFile entry = file("C:\\z.zip\\b", 1);
    entry.place = ShellItem::Place::insideArchive;
    const CleanupWorld marked({file("C:\\a", 1), entry}, "-x");
    EXPECT_EQ(marked.told(recycle), "b:inArchive 0");
    EXPECT_EQ(marked.told(links), "not possible");
    const CleanupWorld kept({file("C:\\a", 1), entry}, "x-");
    EXPECT_EQ(kept.told(recycle), "a:keptInArchive 0");
    EXPECT_EQ(kept.told(links), "a:keptInArchive 0");
}

// Several names of one file, and links that may lead from the kept item to the marked one.
TEST(CleanupPlan, KnowsTwoNamesOfOneFile)
{
    const auto link = attribute::reparsePoint;
    CleanupWorld twins({file("/a", 1, {1, 1}), file("/b", 1, {1, 2}), file("/c", 1, {1, 2})}, "-xx");
    EXPECT_EQ(twins.told(recycle), "none b>a 0 none c>a 10 10");
    twins.linkCount = [](const ShellItem&) { return 3u; };
    EXPECT_EQ(twins.told(recycle), "none b>a 0 none c>a 0 0") << "a third name is left somewhere";
    const CleanupWorld elsewhere({file("/a", 1, {1, 1}), file("/b", 1, {1, 2}), file("/c", 2, {1, 2})}, "-xh");
    EXPECT_EQ(elsewhere.told(recycle), "none b>a 0 0") << "a hidden row keeps the file";

    const CleanupWorld names({file("/a", 1, {1, 1}), file("/b", 1, {1, 1})}, "-x");
    EXPECT_EQ(names.told(recycle), "none b>a! 0 0");
    EXPECT_EQ(names.told(links), "b:linkedAlready 0");
    EXPECT_EQ(names.told({CleanupAction::link, LinkKind::symbolic}), "symbolic b>a! 0 0");

    const CleanupWorld markedLink({file("/a", 1, {1, 1}), file("/b", 1, {1, 1}, link)}, "-x");
    EXPECT_EQ(markedLink.told(recycle), "none b>a 0 0");
    EXPECT_EQ(markedLink.told({CleanupAction::link, LinkKind::symbolic}), "b:linkedAlready 0");
    const CleanupWorld keptLink({file("/a", 1, {1, 1}, link), file("/b", 1, {1, 1})}, "-x");
    EXPECT_EQ(keptLink.told(recycle), "b:maybeKeptItself 0");
    const CleanupWorld keptOtherLink({file("/a", 1, {1, 1}, link), file("/b", 1, {1, 2})}, "-x");
    EXPECT_EQ(keptOtherLink.told(recycle), "none b>a 10 10");

    ListedFile unfollowed = file("/a", 1, {1, 1}, link);
    unfollowed.kind = FileKind::link;
    EXPECT_EQ(CleanupWorld({unfollowed, file("/b", 1, {1, 2})}, "-x").told(recycle), "b:maybeKeptItself 0");

    // The same file once more, by a folder that is a link.
    CleanupWorld byFolder({file("/a", 1, {1, 1})}, "-");
    const auto folder = ShellItem::make(nullptr, testing::native("/l"), {FileKind::folder, link, {}, {}, {}},
                                        ShellItem::Place::fileSystem);
    byFolder.model.add(ShellItem::make(folder, testing::native("b"), {FileKind::regular, 0, FileSize{10}, {}, {1, 1}},
                                       ShellItem::Place::fileSystem),
                       1, false);
    byFolder.model.mark(byFolder.model.order().subspan(1), Mark::ticked, true);
    EXPECT_EQ(byFolder.told(recycle), "b:maybeKeptItself 0");
}

TEST(PreCheck, ShowsOnlyTheGroupsThatWouldLoseEveryItem)
{
    const std::vector<ListedFile> files = {file("/a", 1), file("/b", 1), file("/c", 2), file("/d", 2), file("/e", 3)};
    const auto never = [](std::u16string_view) -> bool { throw std::logic_error("nothing to ask"); };
    CleanupWorld world(files, "-xxx-");
    EXPECT_EQ(preCheck(world.model, false, never).outcome, PreCheckOutcome::noDefinition);
    const PreCheck lost = preCheck(world.model, true, never);
    EXPECT_EQ(lost.outcome, PreCheckOutcome::groupsWhollyMarked);
    EXPECT_EQ(lost.message(), TextId::groupsWhollyMarked);
    EXPECT_EQ(lost.groups, 1u);
    EXPECT_EQ(world.marks(), "xx");
    EXPECT_EQ(world.model.hidingFlags(), hiding_flag::preCheck);

    bool yes = false;
    const auto ask = [&](std::u16string_view question) {
        EXPECT_EQ(question, text(TextId::includeHiddenQuestion));
        return yes;
    };
    EXPECT_EQ(preCheck(world.model, true, ask).outcome, PreCheckOutcome::groupsWhollyMarked);
    world.model.clearTicks();
    EXPECT_EQ(preCheck(world.model, true, ask).outcome, PreCheckOutcome::nothingMarked);
    yes = true;
    EXPECT_EQ(preCheck(world.model, true, ask).outcome, PreCheckOutcome::ready);
    EXPECT_EQ(world.marks(), "-x -- -");
}

// Random lists of few files with many names, against the plan's promises told anew.
TEST(CleanupPlan, NeverTakesTheLastRowOfAGroupAndCountsEachFileOnce)
{
    std::mt19937 random(7);
    const auto below = [&](unsigned limit) { return static_cast<unsigned>(random() % limit); };
    unsigned refused = 0;
    for (unsigned round = 0; round < 300; ++round) {
        std::vector<ListedFile> files;
        std::string marks;
        for (std::uint32_t group = 1; group <= 4; ++group)
            for (unsigned left = 1 + below(4); left > 0; --left) {
                files.push_back({"/f" + std::to_string(files.size()), group, 10, 1, {1, below(9)}});
                marks += "--xhH"[below(round % 2 ? 3 : 5)];
            }
        const CleanupWorld world(files, marks);
        std::map<std::uint32_t, std::string> rows;
        std::map<std::uint64_t, bool> leaves;  // by file: every row of it is marked and in view
        for (std::size_t at = 0; at < files.size(); ++at) {
            rows[files[at].group] += marks[at] == '-' || marks[at] == 'x' ? std::string(1, marks[at]) : "";
            leaves.try_emplace(files[at].identity.index, true).first->second &= marks[at] == 'x';
        }
        const bool lost = std::any_of(rows.begin(), rows.end(), [](const auto& row) {
            return !row.second.empty() && row.second.find('-') == std::string::npos;
        });
        const auto plan = world.plan(recycle);
        ASSERT_EQ(plan.ok(), !lost) << marks;
        refused += lost ? 1 : 0;
        if (lost)
            continue;
        for (const CleanupCommand& command : plan->commands) {
            EXPECT_FALSE(world.model.isMarked(command.kept));
            EXPECT_TRUE(world.model.item(command.kept).isVisible());
            EXPECT_EQ(world.model.item(command.kept).group, world.model.item(command.item).group);
        }
        EXPECT_EQ(plan->commands.size(), world.model.inView(Mark::ticked).items);
        const auto free = std::count_if(leaves.begin(), leaves.end(), [](const auto& file) { return file.second; });
        EXPECT_EQ(plan->frees, static_cast<std::uint64_t>(free) * 10) << marks;
    }
    EXPECT_GT(refused, 20u);
    EXPECT_LT(refused, 280u);
}

}  // namespace
}  // namespace kelvane
