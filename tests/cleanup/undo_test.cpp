#include "cleanup/undo.h"

#include <gmock/gmock.h>

#include <set>

#include "platform/platform.h"
#include "support/fakes.h"
#include "support/faulty_held_files.h"
#include "support/real_files.h"
#include "support/temp_tree.h"

namespace kelvane {
namespace {

namespace fs = std::filesystem;
using testing::Fault;

// A folder that things are moved to and from.
class FakeTrash final : public FileOperations {
public:
    BatchOutcome remove(std::span<const RemovalItem>, RemovalSink&, const CancelFlag&) override { return {}; }
    Status canTrash(const fs::path&) override { return {}; }
    bool isInTrash(const fs::path&) override { return false; }
    Status restore(const fs::path& trashed, const fs::path& place) override
    {
        std::error_code error;
        fs::rename(trashed, place, error);
        return error ? Status(Error{ErrorKind::io, error.value(), error.message()}) : Status();
    }
    Status forget(const fs::path&) override { return {}; }
};

// The action, and the kind of link where it is one.
struct Deed {
    CleanupAction action = CleanupAction::link;
    LinkKind link = LinkKind::none;
};
constexpr Deed hard{CleanupAction::link, LinkKind::hard};
constexpr Deed symbolic{CleanupAction::link, LinkKind::symbolic};
constexpr Deed cloned{CleanupAction::link, LinkKind::clone};
constexpr Deed recycled{CleanupAction::recycle, LinkKind::none};
constexpr Deed deleted{CleanupAction::deletePermanently, LinkKind::none};

// A tree, and a run that was carried out on it.
class World {
public:
    World()
    {
        auto begun = journals_.begin(CleanupAction::link, clock_.now());
        EXPECT_TRUE(begun);
        writer_ = begun ? std::move(*begun) : nullptr;
        number_ = writer_ ? writer_->number() : RunNumber{};
    }

    // False where this system cannot make such a link.
    [[nodiscard]] bool carryOut(Deed deed, const std::string& item, const std::string& kept)
    {
        if (deed.link == LinkKind::symbolic && !testing::TempTree::canLink())
            return false;
        const JournalIntent intent{deed.action,         tree.path(item),           stampOf(look(item)), tree.path(kept),
                                   stampOf(look(kept)), testing::native("unused"), metadata(item)};
        const auto entry = writer_->intend(intent);
        if (!entry)
            return false;
        act(deed, item, kept);
        const fs::path trashed = deed.action == CleanupAction::recycle ? inTrash(item) : fs::path{};
        return writer_->finish(*entry, EntryState::done, deed.link, trashed).ok();
    }

    UndoOutcome undo(const CancelFlag& cancel = {}, const UndoFilter& filter = {})
    {
        finishRun();
        told.clear();
        auto opened = journals_.reopen(number_);
        EXPECT_TRUE(opened);
        const auto outcome = undoRun(
            *opened, ports(), filter,
            [&](const UndoneItem& item) {
                told.push_back(item);
                if (afterItem)
                    afterItem();
            },
            cancel);
        ended = opened->run.ended;
        opened->writer.reset();
        const auto stored = journals_.read(number_);
        EXPECT_TRUE(stored && stored->entries.size() == opened->run.entries.size());
        for (std::size_t at = 0; at < stored->entries.size(); ++at)
            EXPECT_EQ(stored->entries[at].state, opened->run.entries[at].state) << at;
        return outcome;
    }

    PassPorts ports()
    {
        return {held_, trash_, platform_->files(), platform_->paths(), clock_, nullptr, false, &platform_->output()};
    }

    JournalEntry onlyEntry()
    {
        const auto run = journals_.read(number_);
        return run && run->entries.size() == 1 ? run->entries.front() : JournalEntry{};
    }

    FileDetails look(const std::string& name)
    {
        const auto details = platform_->files().details(tree.path(name), Links::asThemselves);
        return details ? *details : FileDetails{};
    }

    // But for the time of the last access, which looking changes.
    FileMetadata metadata(const std::string& name)
    {
        const fs::path path = tree.path(name);
        const auto folder = platform_->heldFiles().openFolder(path.parent_path());
        const auto file = folder ? folder.value()->open(path.filename().native()) : folder.error();
        auto all = file ? file.value()->metadata() : file.error();
        EXPECT_TRUE(all) << name;
        if (!all)
            return {};
        all->accessed = 0;
        return *all;
    }

    std::set<fs::path> names() const
    {
        std::set<fs::path> all;
        for (const fs::directory_entry& entry : fs::recursive_directory_iterator(tree.path("files")))
            all.insert(entry.path());
        return all;
    }

    fs::path inTrash(const std::string& item) const
    {
        return tree.path("trash") / fs::path(tree.path(item)).filename();
    }

    bool canExchange()
    {
        tree.write("probe/a", "");
        tree.write("probe/b", "");
        const auto folder = platform_->heldFiles().openFolder(tree.path("probe"));
        return folder && folder.value()->exchange(testing::native("a"), testing::native("b"));
    }

private:
    void finishRun()
    {
        if (writer_) {
            EXPECT_TRUE(writer_->end());
        }
        writer_.reset();
    }

    void act(Deed deed, const std::string& item, const std::string& kept)
    {
        const fs::path path = tree.path(item);
        if (deed.action == CleanupAction::recycle) {
            tree.folder("trash");
            fs::rename(path, inTrash(item));
        } else if (deed.link != LinkKind::clone) {
            fs::remove(path);
        }
        if (deed.link == LinkKind::hard)
            fs::create_hard_link(tree.path(kept), path);
        if (deed.link == LinkKind::symbolic)
            fs::create_symlink(tree.path(kept), path);
    }

    std::unique_ptr<Platform> platform_ = makePlatform();
    FakeTrash trash_;
    testing::FakeClock clock_;
    std::unique_ptr<JournalWriter> writer_;
    RunNumber number_{};

public:
    testing::TempTree tree;
    testing::FaultPlan faults;
    std::vector<UndoneItem> told;
    std::function<void()> afterItem;
    bool ended = false;

private:
    testing::FaultyHeldFiles held_{platform_->heldFiles(), faults};
    Journals journals_{platform_->files(), platform_->output(), tree.path("state")};
};

// More than is copied at once.
const std::string longContents((1u << 20) + 3, 'x');

TEST(UndoRun, TakesEveryKindBackAsItWas)
{
    for (const bool canExchange : {true, false}) {
        World world;
        world.faults.canExchange = canExchange;
        const std::string& contents = longContents;
        world.tree.write("files/kept", contents);
        const std::vector<std::pair<Deed, std::string>> deeds = {
            {hard, "files/" + std::string(120, 'h')},
            {symbolic, "files/s " + testing::unusualNames().front()},
            {cloned, "files/c"},
            {recycled, "files/below/r"},
            {hard, "files/empty"},
        };
        std::map<std::string, FileMetadata> before;
        for (const auto& [deed, name] : deeds) {
            const fs::path path = world.tree.write(name, name == "files/empty" ? "" : contents);
            (void)testing::makeStream(path, "note", name);
            fs::last_write_time(path, fs::last_write_time(path) - std::chrono::nanoseconds(86'400'123'456'700));
            if (deed.link == LinkKind::hard && testing::pathsArePosix)
                fs::permissions(path, fs::perms::owner_read | fs::perms::group_read);
            before[name] = world.metadata(name);
        }
        world.tree.write("files/nothing", "");
        const auto names = world.names();
        std::uint64_t done = 0;
        for (const auto& [deed, name] : deeds)
            done += world.carryOut(deed, name, name == "files/empty" ? "files/nothing" : "files/kept") ? 1 : 0;
        world.tree.remove("files/below");

        const UndoOutcome outcome = world.undo();
        EXPECT_EQ(outcome.restored, done);
        EXPECT_EQ(outcome.bytes, (done - 1) * contents.size());
        EXPECT_FALSE(outcome.failed > 0 || outcome.cancelled || outcome.journalError);
        EXPECT_TRUE(world.ended);
        EXPECT_EQ(world.names(), names);
        std::set<std::uint64_t> files;
        for (const auto& [deed, name] : deeds) {
            EXPECT_EQ(world.look(name).kind, FileKind::regular) << name;
            EXPECT_TRUE(files.insert(world.look(name).identity.index).second) << name;
            EXPECT_EQ(world.metadata(name), before[name]) << name;
            EXPECT_EQ(world.tree.read(name), name == "files/empty" ? "" : contents);
        }
        EXPECT_NE(world.look("files/kept").identity, world.look(deeds.front().second).identity);
        for (const UndoneItem& item : world.told)
            EXPECT_FALSE(item.failure || item.metadataNotKept) << item.item;
        EXPECT_EQ(world.undo().restored + world.told.size(), 0u) << "nothing is left to be taken back";
    }
}

TEST(UndoRun, LeavesAloneWhatIsNoLongerTheWorkOfTheRun)
{
    using enum CleanupFault;
    struct Case {
        const char* name;
        Deed deed;
        std::optional<CleanupFault> fault;  // nothing: it comes back
        void (*meanwhile)(World&);
    };
    const Case cases[] = {
        {"replaced", hard, placeTaken,
         [](World& w) {
             w.tree.remove("files/i");
             w.tree.write("files/i", "equal");
         }},
        {"written through", hard, changed, [](World& w) { w.tree.write("files/k", "longer than before"); }},
        {"removed", hard, gone, [](World& w) { w.tree.remove("files/i"); }},
        {"folder instead", hard, placeTaken,
         [](World& w) {
             w.tree.remove("files/i");
             w.tree.folder("files/i");
         }},
        {"the other name removed", hard, std::nullopt, [](World& w) { w.tree.remove("files/k"); }},
        {"its folder removed", hard, gone, [](World& w) { w.tree.remove("files"); }},
        {"kept changed", symbolic, keptChanged, [](World& w) { w.tree.write("files/k", "longer than before"); }},
        {"kept replaced", symbolic, keptChanged,
         [](World& w) {
             w.tree.write("files/n", "equal");
             fs::rename(w.tree.path("files/n"), w.tree.path("files/k"));
         }},
        {"kept a link", symbolic, keptChanged,
         [](World& w) {
             fs::rename(w.tree.path("files/k"), w.tree.path("files/n"));
             w.tree.symlink("files/k", w.tree.path("files/n"));
         }},
        {"kept gone", symbolic, gone, [](World& w) { w.tree.remove("files/k"); }},
        {"leads elsewhere", symbolic, placeTaken,
         [](World& w) {
             w.tree.remove("files/i");
             w.tree.symlink("files/i", w.tree.path("files"));
         }},
        {"file instead of link", symbolic, placeTaken,
         [](World& w) {
             w.tree.remove("files/i");
             w.tree.write("files/i", "new");
         }},
        {"clone changed", cloned, changed, [](World& w) { w.tree.write("files/i", "longer than before"); }},
        {"clone replaced", cloned, placeTaken,
         [](World& w) {
             w.tree.write("files/n", "equal");
             fs::rename(w.tree.path("files/n"), w.tree.path("files/i"));
         }},
        {"clone with two names", cloned, system, [](World& w) { w.tree.hardLink("files/n", "files/i"); }},
        {"place taken", recycled, placeTaken, [](World& w) { w.tree.write("files/i", "new"); }},
        {"trash emptied", recycled, gone, [](World& w) { w.tree.remove("trash/i"); }},
        {"trash and all", recycled, gone, [](World& w) { w.tree.remove("trash"); }},
        {"other in the trash", recycled, gone,
         [](World& w) {
             w.tree.write("trash/n", "equal");
             fs::rename(w.tree.path("trash/n"), w.tree.path("trash/i"));
         }},
        {"folder gone", recycled, std::nullopt, [](World& w) { w.tree.remove("files"); }},
        {"for good", deleted, forGood, [](World& w) { w.tree.remove("files/i"); }},
    };
    for (const Case& each : cases) {
        SCOPED_TRACE(each.name);
        World world;
        world.tree.write("files/k", "equal");
        world.tree.write("files/i", "equal");
        if (!world.carryOut(each.deed, "files/i", "files/k"))
            continue;
        each.meanwhile(world);
        const bool there = fs::exists(world.tree.path("files"));
        const auto names = there ? world.names() : std::set<fs::path>{};
        const auto foreseen = undoObstacle(world.onlyEntry(), world.ports());
        const UndoOutcome outcome = world.undo();
        ASSERT_EQ(world.told.size(), 1u);
        const auto& failure = world.told.front().failure;
        EXPECT_EQ(failure ? std::optional(failure->fault) : std::nullopt, each.fault);
        EXPECT_EQ(foreseen ? std::optional(foreseen->fault) : std::nullopt, each.fault);
        EXPECT_EQ(outcome.failed, each.fault ? 1u : 0u);
        if (!each.fault) {
            EXPECT_EQ(world.tree.read("files/i"), "equal");
        } else if (there) {
            EXPECT_EQ(world.names(), names);
        }
    }
}

// Whatever is done at whatever moment: `meanwhile` comes right before the n-th call, for every n.
template <class Check>
void atEveryMoment(Deed deed, const std::function<void(World&, CancelFlag&)>& meanwhile, Check check)
{
    for (int operation = 1;; ++operation) {
        SCOPED_TRACE(operation);
        World world;
        world.tree.write("files/k", longContents);
        world.tree.write("files/i", longContents);
        if (!world.carryOut(deed, "files/i", "files/k"))
            return;
        CancelFlag cancel;
        world.faults.onFault([&] { meanwhile(world, cancel); });
        world.faults.fail(Fault::witnessed, operation);
        const UndoOutcome outcome = world.undo(cancel);
        const bool reached = world.faults.failed();
        world.faults.fail(Fault::none, 0);
        if (!reached) {
            EXPECT_GT(operation, 10);
            return;
        }
        check(world, outcome);
    }
}

TEST(UndoRun, WhatTakesThePlaceAtAnyMomentStays)
{
    if (!World().canExchange())
        GTEST_SKIP() << "without an exchange of names the very last moment cannot be guarded";
    for (const Deed deed : {hard, symbolic, cloned}) {
        atEveryMoment(
            deed,
            [](World& world, CancelFlag&) {
                world.tree.remove("files/i");
                world.tree.write("files/i", "new");
            },
            [&](World& world, const UndoOutcome&) {
                EXPECT_EQ(world.tree.read("files/i"), "new");
                EXPECT_EQ(world.tree.read("files/k"), longContents);
                EXPECT_EQ(world.names().size(), 2u);
            });
    }
}

TEST(UndoRun, TakesSingleItemsBackTheLastFirstAndGoesOnAfterACancel)
{
    World world;
    for (const char* name : {"files/k", "files/1", "files/2", "files/3", "files/4"})
        world.tree.write(name, "equal");
    for (const char* name : {"files/1", "files/2", "files/3", "files/4"})
        ASSERT_TRUE(world.carryOut(recycled, name, "files/k"));
    const fs::path second = world.tree.path("files/2");
    EXPECT_EQ(world.undo({}, [&](const JournalEntry& entry) { return entry.intent.item == second; }).restored, 1u);
    EXPECT_EQ(world.told.front().item, second);
    CancelFlag cancel;
    world.afterItem = [&] { cancel.cancel(); };
    const UndoOutcome stopped = world.undo(cancel);
    EXPECT_TRUE(stopped.cancelled);
    EXPECT_EQ(stopped.restored, 1u);
    EXPECT_EQ(world.told.front().item, world.tree.path("files/4"));
    world.afterItem = nullptr;
    EXPECT_EQ(world.undo().restored, 2u);
    EXPECT_EQ(world.names().size(), 5u);
}

}  // namespace
}  // namespace kelvane
