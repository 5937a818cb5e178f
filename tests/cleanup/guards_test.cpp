#include "cleanup/guards.h"

#include <gtest/gtest.h>

#include <fstream>

#include "cleanup/pass_world.h"
#include "support/real_files.h"

namespace kelvane {
namespace {

namespace fs = std::filesystem;
using testing::PassWorld;

constexpr std::string_view held = "held";

// Why the first command's item is not held, or what the recheck says after `meanwhile`.
std::string verdict(PassWorld& world, const std::function<void()>& meanwhile = {})
{
    const PassPorts ports = world.ports();
    Guards guards(ports, world.options, world.model, world.plan, world.cancel);
    const CleanupCommand& command = world.plan.commands.front();
    const auto answer = guards.hold(command, command.kept);
    if (const auto* failure = std::get_if<CleanupFailure>(&answer))
        return std::string(nameOf(failure->fault));
    if (meanwhile)
        meanwhile();
    const auto failure = guards.recheck(std::get<HeldPair>(answer));
    return std::string(failure ? nameOf(failure->fault) : held);
}

void touch(const fs::path& file)
{
    fs::last_write_time(file, fs::last_write_time(file) + std::chrono::seconds(10));
}

// Another file with the same contents and times in its place.
void swapForCopy(const fs::path& file)
{
    const auto time = fs::last_write_time(file);
    fs::copy_file(file, file.native() + fs::path("x").native());
    fs::last_write_time(file.native() + fs::path("x").native(), time);
    fs::rename(file.native() + fs::path("x").native(), file);
}

struct Change {
    const char* name;
    std::function<void(const PassWorld&)> make;
    const char* fault;
    bool takesHeldName = false;  // not every system gives the name of an open file away
};

const Change changes[] = {
    {"nothing", [](const PassWorld&) {}, "held"},
    {"item grew", [](const PassWorld& world) { world.tree.write("item", "same and more"); }, "changed"},
    {"item touched", [](const PassWorld& world) { touch(world.tree.path("item")); }, "changed"},
    {"item replaced", [](const PassWorld& world) { swapForCopy(world.tree.path("item")); }, "changed", true},
    {"item gone", [](const PassWorld& world) { world.tree.remove("item"); }, "changed", true},
    {"item became a folder",
     [](const PassWorld& world) {
         world.tree.remove("item");
         world.tree.folder("item");
     },
     "changed", true},
    {"item became the kept file",
     [](const PassWorld& world) {
         world.tree.remove("item");
         world.tree.hardLink("item", "kept");
     },
     "changed", true},
    {"kept grew", [](const PassWorld& world) { world.tree.write("kept", "same and more"); }, "keptChanged"},
    {"kept touched", [](const PassWorld& world) { touch(world.tree.path("kept")); }, "keptChanged"},
    {"kept replaced", [](const PassWorld& world) { swapForCopy(world.tree.path("kept")); }, "keptChanged", true},
    {"kept gone", [](const PassWorld& world) { world.tree.remove("kept"); }, "keptChanged", true},
    {"kept renamed", [](const PassWorld& world) { fs::rename(world.tree.path("kept"), world.tree.path("other")); },
     "keptChanged"},
};

TEST(Guards, NoticeEveryChangeBeforeAndAfterTheyHoldOn)
{
    for (const CleanupAction action : {CleanupAction::recycle, CleanupAction::link})
        for (const Change& change : changes) {
            const auto listed = [&] {
                auto world = std::make_unique<PassWorld>();
                world->write("kept");
                world->write("item");
                world->command("item", "kept", action, LinkKind::hard);
                return world;
            };
            auto before = listed();
            change.make(*before);
            EXPECT_EQ(verdict(*before), change.fault) << change.name << ", before";
            if (change.takesHeldName && !testing::pathsArePosix)
                continue;
            auto between = listed();
            EXPECT_EQ(verdict(*between, [&] { change.make(*between); }), change.fault) << change.name << ", between";
        }
}

TEST(Guards, CompareContentsWhereTheyWereNotComparedInFull)
{
    const std::string first(700'000, 'a');
    for (const std::size_t differs : {std::size_t{0}, std::size_t{300'000}, first.size() - 1, first.size()}) {
        std::string second = first;
        if (differs < first.size())
            second[differs] = 'b';
        PassWorld world;
        world.write("kept", first);
        world.write("item", second);
        world.link("item", "kept");
        const std::string expected(differs < first.size() ? "different" : held);
        EXPECT_EQ(verdict(world), expected) << differs;
        CleanupCommand& command = world.plan.commands.front();
        command.action = CleanupAction::recycle;
        EXPECT_EQ(verdict(world), held) << "the scan has compared these";
        command.approximate = true;
        EXPECT_EQ(verdict(world), expected) << differs;
        command.approximate = false;
        command.joinedByHand = true;
        EXPECT_EQ(verdict(world), expected) << differs;
        world.options.compareInFull = false;
        EXPECT_EQ(verdict(world), held);
    }
}

TEST(Guards, EndAComparisonThatIsCancelled)
{
    PassWorld world;
    world.write("kept");
    world.write("item");
    world.link("item", "kept");
    world.cancel.cancel();
    const PassPorts ports = world.ports();
    Guards guards(ports, world.options, world.model, world.plan, world.cancel);
    const auto answer = guards.hold(world.plan.commands.front(), world.ids["kept"]);
    ASSERT_TRUE(std::holds_alternative<CleanupFailure>(answer));
    EXPECT_EQ(std::get<CleanupFailure>(answer).error.kind, ErrorKind::cancelled);
}

TEST(Guards, RelyOnNoFileThatGoesAway)
{
    PassWorld world;
    world.write("kept");
    world.write("item");
    world.write("third", "same", 2);
    world.tree.hardLink("other name", "kept");
    world.list("other name", 2);
    world.recycle("item", "kept");
    EXPECT_EQ(verdict(world), held);
    world.recycle("other name", "third");
    EXPECT_EQ(verdict(world), "keptMarked") << "another name of the kept file goes in another group";
    world.plan.commands.back().kept = world.ids["kept"];
    world.plan.commands.back().sameFile = true;
    EXPECT_EQ(verdict(world), held) << "that name goes because the kept one stays";
    world.recycle("kept", "third");
    EXPECT_EQ(verdict(world), "keptMarked");
    fs::create_directories(world.tree.path("trash"));
    PassWorld trashed;
    trashed.write("trash/kept");
    trashed.write("item");
    trashed.recycle("item", "trash/kept");
    EXPECT_EQ(verdict(trashed), "keptInTrash");
}

TEST(Guards, KnowTwoNamesOfOneFile)
{
    PassWorld world;
    world.write("kept");
    world.tree.hardLink("item", "kept");
    world.list("item");
    world.recycle("item", "kept");
    EXPECT_EQ(verdict(world), "keptMarked") << "the plan takes them for two files";
    world.plan.commands.front().sameFile = true;
    EXPECT_EQ(verdict(world), held);
    if (!testing::openFilesMove())
        GTEST_SKIP() << "here a removed file keeps its name while it is held";
    EXPECT_EQ(verdict(world, [&] { world.tree.remove("kept"); }), "keptChanged");
    world.tree.hardLink("kept", "item");
    EXPECT_EQ(verdict(world,
                      [&] {
                          world.tree.remove("kept");
                          world.tree.write("kept", "same");
                      }),
              "keptChanged");
}

TEST(Guards, TellNamesFromWaysToOneName)
{
    if (!testing::TempTree::canLink())
        GTEST_SKIP() << "no symbolic links here";
    PassWorld world;
    world.write("folder/kept");
    world.tree.hardLink("spare", "folder/kept");
    world.tree.symlink("way", world.tree.path("folder"));
    world.list("way/kept");
    world.recycle("way/kept", "folder/kept").sameFile = true;
    EXPECT_EQ(verdict(world), "sameFile") << "one name by two ways, though the file has another one";
}

TEST(Guards, HoldWhatALinkLeadsToAndTheLinkItself)
{
    if (!testing::TempTree::canLink())
        GTEST_SKIP() << "no symbolic links here";
    PassWorld world;
    world.write("real/kept");
    world.write("real/item");
    world.tree.symlink("kept link", "real/kept");
    world.tree.symlink("item link", world.tree.path("real/item"));
    world.list("kept link", 1, Links::followed);
    world.list("item link", 1, Links::followed);
    world.link("real/item", "kept link");
    EXPECT_EQ(verdict(world), held);
    world.plan.commands.clear();
    world.link("item link", "real/kept");
    EXPECT_EQ(verdict(world), "isLink");
    world.plan.commands.front().action = CleanupAction::recycle;
    EXPECT_EQ(verdict(world), held);
    EXPECT_EQ(verdict(world, [&] { world.tree.remove("item link"); }), "changed");
    world.tree.write("real/item", "new contents");
    world.tree.symlink("item link", world.tree.path("real/item"));
    EXPECT_EQ(verdict(world), "changed") << "it leads to something else than the scan saw";
}

TEST(Guards, NeverTakeAFolderThatHoldsTheKeptOne)
{
    PassWorld world;
    world.tree.write("a/b/file", "x");
    world.tree.write("c/file", "x");
    for (const char* name : {"a", "a/b", "c"})
        world.list(name);
    world.recycle("c", "a");
    EXPECT_EQ(verdict(world), held);
    for (const auto& [item, kept] : {std::pair("a", "a/b"), std::pair("a/b", "a")}) {
        world.plan.commands.clear();
        world.recycle(item, kept);
        EXPECT_EQ(verdict(world), "sameFile") << item;
    }
    world.plan.commands.clear();
    world.recycle("c", "a/b");
    EXPECT_EQ(verdict(world), held);
    world.recycle("a", "c");
    EXPECT_EQ(verdict(world), "keptMarked") << "the kept one lies in a folder that goes";
    if (!testing::TempTree::canLink())
        return;
    PassWorld linked;
    linked.tree.write("a/b/file", "x");
    linked.tree.symlink("way", linked.tree.path("a"));
    linked.list("a");
    linked.list("way/b");
    linked.recycle("a", "way/b");
    EXPECT_EQ(verdict(linked), "sameFile") << "by a link, the kept one lies in the item";
}

}  // namespace
}  // namespace kelvane
