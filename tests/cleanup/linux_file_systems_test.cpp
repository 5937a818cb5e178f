#include <gtest/gtest.h>
#include <unistd.h>

#include <fstream>

#include "support/linux_cleanup_world.h"
#include "support/linux_loop_volume.h"
#include "support/real_files.h"

namespace kelvane {
namespace {

namespace fs = std::filesystem;
using testing::CleanupWorld;
using testing::LoopVolume;
using testing::Role;
using testing::SeenTree;
using testing::TempTree;
using testing::WorldFile;
using testing::WorldMode;
using testing::WorldRun;

constexpr auto linkAction = CleanupAction::link;

// The small tree with contents that are big enough to be shared.
std::vector<WorldFile> bigWorld(const WorldMode& mode)
{
    std::vector<WorldFile> files = testing::smallWorld(mode);
    for (WorldFile& file : files)
        file.contents = std::string(std::size_t{256} << 10U, file.contents.front());
    return files;
}

struct Volume {
    const char* type;
    unsigned megabytes;
    bool hasHardLinks = true;
    bool sharesBlocks = false;
};

const Volume volumes[] = {
    {"ext4", 32},        {"ext2", 32},  {"btrfs", 128, true, true}, {"xfs", 320, true, true},
    {"vfat", 16, false}, {"tmpfs", 32},
};

class FileSystems : public ::testing::TestWithParam<Volume> {
protected:
    void SetUp() override
    {
        if (!volume_.isMounted())
            GTEST_SKIP() << GetParam().type << ": " << volume_.reason();
    }

    [[nodiscard]] fs::path filler() const { return volume_.path() / "filler"; }
    void fill() const
    {
        std::ofstream all(filler(), std::ios::binary);
        for (const std::size_t piece : {std::size_t{1} << 20U, std::size_t{4096}, std::size_t{1}}) {
            const std::string bytes(piece, 'f');
            while (all.write(bytes.data(), static_cast<std::streamsize>(piece)).flush()) {
            }
            all.clear();
        }
        ::sync();  // what was put off may not fit
    }

    LoopVolume volume_{GetParam().type, GetParam().megabytes};
};

TEST_P(FileSystems, CleanAndTakeBackInEachMode)
{
    const WorldMode modes[] = {{"recycle", CleanupAction::recycle},    {"delete", CleanupAction::deletePermanently},
                               {"hard", linkAction, LinkKind::hard},   {"symbolic", linkAction, LinkKind::symbolic},
                               {"clone", linkAction, LinkKind::clone}, {"automatic", linkAction, LinkKind::automatic}};
    for (const WorldMode& mode : modes) {
        SCOPED_TRACE(mode.name);
        CleanupWorld world(volume_.path());
        world.build(bigWorld(mode));
        const SeenTree before = world.look();
        const WorldRun run = world.clean(mode);
        EXPECT_EQ(world.unsafe(before, run.report.plan) + world.untrue(before, run), "");
        const bool cannot = (mode.link == LinkKind::clone && !GetParam().sharesBlocks) ||
                            (mode.link == LinkKind::hard && !GetParam().hasHardLinks);
        EXPECT_EQ(run.report.pass.succeeded, cannot ? 0u : run.report.plan.commands.size());
        EXPECT_EQ(world.badlySettled(before, run), "");
    }
}

// Of what lies on a volume without the home folder, the trash is at its top.
TEST_P(FileSystems, HaveATrashOfTheirOwn)
{
    CleanupWorld world(volume_.path());
    const TempTree home;
    ASSERT_TRUE(testing::trashBelow(home.path()));
    world.expectTrashAt(volume_.path() / (".Trash-" + std::to_string(::getuid())));
    const WorldMode mode{"recycle", CleanupAction::recycle};
    world.build(bigWorld(mode));
    const SeenTree before = world.look();
    const WorldRun run = world.clean(mode);
    EXPECT_EQ(run.report.pass.succeeded, run.report.plan.commands.size());
    EXPECT_EQ(world.unsafe(before, run.report.plan) + world.untrue(before, run) + world.strays(before), "");
    EXPECT_EQ(world.badlySettled(before, run), "");
}

TEST_P(FileSystems, LoseNothingWhenTheyAreFull)
{
    for (const WorldMode& mode :
         {WorldMode{"hard", linkAction, LinkKind::hard}, WorldMode{"recycle", CleanupAction::recycle}}) {
        SCOPED_TRACE(mode.name);
        CleanupWorld world(volume_.path());
        world.build(bigWorld(mode));
        const SeenTree before = world.look();
        fill();
        const WorldRun none = world.clean(mode);
        EXPECT_EQ(world.unsafe(before, none.report.plan) + world.untrue(before, none), "");
        fs::remove(filler());
        EXPECT_EQ(world.badlySettled(before, none), "");
        world.build(bigWorld(mode));
        const SeenTree anew = world.look();
        const WorldRun run = world.clean(mode);
        fill();
        static_cast<void>(world.undo(run.number.value()));  // fails where the journal finds no room either
        EXPECT_EQ(world.unsafe(anew, run.report.plan, true), "");
        fs::remove(filler());
        EXPECT_EQ(world.badlyUndone(anew, run), "");
    }
}

INSTANTIATE_TEST_SUITE_P(Types, FileSystems, ::testing::ValuesIn(volumes),
                         [](const auto& tested) { return std::string(tested.param.type); });

// As many names as ext4 allows, for real.
TEST(FileSystemLimits, StartANewOriginalWhenAFileHasAllItsNames)
{
    constexpr int mostNames = 65'000;
    const LoopVolume volume("ext4", 64);
    if (!volume.isMounted())
        GTEST_SKIP() << volume.reason();
    CleanupWorld world(volume.path());
    world.build({{"kept", "same", Role::kept},
                 {"first", "same", Role::marked},
                 {"second", "same", Role::marked},
                 {"third", "same", Role::marked}});
    fs::create_directory(volume.path() / "names");
    for (int names = 2; names < mostNames; ++names)
        fs::create_hard_link(world.files() / "kept", volume.path() / "names" / std::to_string(names));
    const SeenTree before = world.look();
    const WorldRun run = world.clean({"hard", linkAction, LinkKind::hard});
    ASSERT_EQ(run.report.items.size(), 3u);
    EXPECT_EQ(run.report.items[0].result, ItemResult::done);
    EXPECT_EQ(run.report.items[1].result, ItemResult::newOriginal);
    EXPECT_EQ(run.report.items[2].result, ItemResult::done);
    EXPECT_EQ(run.report.items[2].kept, run.report.plan.commands[1].item);
    EXPECT_EQ(world.unsafe(before, run.report.plan) + world.untrue(before, run), "");
    EXPECT_EQ(world.badlySettled(before, run), "");
}

}  // namespace
}  // namespace kelvane
