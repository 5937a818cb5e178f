#include "cleanup/trashless.h"

#include <gtest/gtest.h>

#include "cleanup/metadata_loss.h"
#include "cleanup/plan_check.h"
#include "cleanup/stub_ports.h"
#include "results/marking_world.h"
#include "support/memory_file_system.h"

namespace kelvane {
namespace {

struct TrashlessWorld : testing::MarkingWorld {
    TrashlessWorld()
    {
        const struct {
            const char* path;
            std::uint64_t volume;
        } rows[] = {{"/home/a", 1}, {"/home/b", 1}, {"/usb/x/gone", 2}, {"/usb/x/c", 2}, {"/home/d", 1}, {"/usb/e", 2}};
        std::uint64_t index = 0;
        for (const auto& row : rows) {
            files.addFile(row.path, "1234567890");
            const ItemId id = add({row.path, 1, 10, 1, {row.volume, ++index}});
            if (index > 1)
                model.mark(std::span(&id, 1), Mark::ticked, true);
        }
        VolumeFacts usb;
        usb.serial = 2;
        files.setVolume("/usb", usb);
    }

    [[nodiscard]] CleanupFacts facts() const { return {definition, *windowsPaths}; }
    [[nodiscard]] std::string commands(const CleanupPlan& plan) const
    {
        std::string told;
        for (const CleanupCommand& command : plan.commands)
            told += testing::posix(model.item(command.item).file.item().fullName()) + ":" +
                    std::string(nameOf(command.action)) + " ";
        return told;
    }

    CScanNode definition;
    testing::MemoryFileSystem files;
    testing::StubOperations operations;
};

TEST(Trashless, AsksEachVolumeOnceAndDoesWithItsItemsWhatWasAnswered)
{
    TrashlessWorld world;
    CleanupPlan plan = *planCleanup(world.model, {}, world.facts());
    const auto volumes = volumesWithoutTrash(plan, world.model, world.operations, world.files);
    ASSERT_EQ(volumes.size(), 1u);
    EXPECT_EQ(world.operations.asked, 3) << "the one that is gone tells nothing";
    EXPECT_EQ(volumes[0].place, testing::native("/usb"));
    EXPECT_EQ(volumes[0].reason, "no trash there");
    EXPECT_EQ(std::pair(volumes[0].items, volumes[0].bytes), std::pair(std::uint64_t{2}, std::uint64_t{20}));
    EXPECT_TRUE(plan.canBeUndone());

    CleanupPlan forGood = plan;
    deleteTrashlessForGood(forGood, volumes);
    EXPECT_EQ(world.commands(forGood),
              "/home/b:recycle /usb/x/gone:recycle /usb/x/c:delete /home/d:recycle /usb/e:delete ");
    EXPECT_EQ(forGood.frees, 50u);
    EXPECT_FALSE(forGood.canBeUndone());

    // Something in between was left alone before.
    const CleanupSkip changed{plan.commands[3].item, CleanupObstacle::changed};
    leaveAlone(plan, std::span(&changed, 1), world.model, world.facts());
    leaveTrashlessAlone(plan, volumes, world.model, world.facts());
    EXPECT_EQ(world.commands(plan), "/home/b:recycle /usb/x/gone:recycle ");
    EXPECT_EQ(plan.frees, 20u);
    const std::vector<CleanupSkip> skipped = {
        {volumes[0].rows[0], CleanupObstacle::noTrash}, changed, {volumes[0].rows[1], CleanupObstacle::noTrash}};
    EXPECT_EQ(plan.skipped, skipped);
}

TEST(MetadataLoss, NamesWhatTheItemHasAndTheKeptFileHasNot)
{
    using Attribute = std::pair<std::string, std::vector<std::byte>>;
    const Attribute note{"user.note", {std::byte{1}}}, other{"user.note", {std::byte{2}}}, access{"system.acl", {}};
    const FileMetadata file{1, 2, 0644, 5, 6, {note}};
    const struct {
        FileMetadata kept;
        unsigned loss;
    } rows[] = {
        {file, 0},
        {{1, 2, 0644, 5, 9, {access, note}}, 0},
        {{7, 2, 0644, 5, 6, {note}}, metadata_loss::owner},
        {{1, 7, 0600, 5, 6, {note}}, metadata_loss::owner | metadata_loss::permissions},
        {{1, 2, 0644, 4, 6, {note}}, metadata_loss::times},
        {{1, 2, 0644, 5, 6, {access}}, metadata_loss::attributes},
        {{1, 2, 0644, 5, 6, {other}}, metadata_loss::attributes},
    };
    for (const auto& row : rows)
        EXPECT_EQ(metadataLossBetween(file, row.kept), row.loss) << &row - rows;
}

}  // namespace
}  // namespace kelvane
