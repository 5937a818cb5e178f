// A list, and everything that a clean-up of it needs.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "cleanup/cleanup_run.h"
#include "cleanup/stub_ports.h"
#include "platform/platform.h"
#include "results/marking_world.h"
#include "support/fake_cleanup_questions.h"
#include "support/fake_places.h"
#include "support/memory_file_system.h"
#include "support/paths.h"
#include "support/temp_tree.h"

namespace kelvane::testing {

// Files in memory, the journal and the log in a folder of their own, and a pass that does what a test tells it.
struct RunWorld : MarkingWorld {
    // Of 100 bytes each, a group for each space in between: the first of a group is kept, the others are ticked.
    explicit RunWorld(const std::vector<std::vector<std::string>>& groups)
    {
        tree.folder("temporary");
        definition.properties = "System.Size";
        std::uint32_t number = 0;
        for (const auto& group : groups) {
            ++number;
            for (const std::string& path : group) {
                files.addFile(path, std::string(100, 'x'));
                if (path.starts_with("/usb"))
                    files.setVolume("/usb", usb());
                const auto now = files.details(native(path), Links::asThemselves);
                const ItemId id = add({path, number, 100, now->modified.ticks, now->identity});
                if (path != group.front())
                    model.mark(std::span(&id, 1), Mark::ticked, true);
            }
        }
    }

    CleanupReport run(const CleanupRequest& request, std::vector<ItemOutcome> outcomes, PassOutcome total = {})
    {
        const PassRunner pass = [&](const CleanupPlan& plan, CleanupQuestions&, JournalWriter&,
                                    PassObserver& observer) {
            std::uint32_t group = 0;
            for (std::size_t at = 0; at < plan.commands.size(); ++at) {
                if (plan.action == CleanupAction::link && std::exchange(group, plan.commands[at].group) != group)
                    observer.groupBegins(plan.commands[at].kept);
                ItemOutcome outcome = at < outcomes.size() ? outcomes[at] : ItemOutcome{};
                outcome.command = at;
                total.errors += outcome.result == ItemResult::failed || outcome.result == ItemResult::declined ? 1 : 0;
                observer.itemEnded(outcome);
            }
            ++passes;
            return total;
        };
        return runCleanupBy(pass, context, request, options, cancel);
    }

    [[nodiscard]] static VolumeFacts usb()
    {
        VolumeFacts facts;
        facts.serial = 2;
        return facts;
    }

    // Of the only file in the folder of temporary files.
    [[nodiscard]] std::string log() const { return tree.read("temporary/kv_cleanupLog00abcdef.log"); }

    TempTree tree;
    std::unique_ptr<Platform> platform = makePlatform();
    CScanNode definition;
    MemoryFileSystem files;
    NoHeldFiles held;
    StubOperations operations;
    FakeClock clock;
    FakePlaces places{tree.path()};
    Journals journals{platform->files(), platform->output(), tree.path("journals")};
    CleanupMemory memory;
    FakeCleanupQuestions questions;
    CancelFlag cancel;
    CleanupOptions options;
    CleanupContext context{model,
                           definition,
                           {definition, *scan.paths},
                           {held, operations, files, *scan.paths, clock},
                           platform->output(),
                           places,
                           journals,
                           memory,
                           questions,
                           nullptr,
                           "Category: Photos\r\n"};
    int passes = 0;
};

}  // namespace kelvane::testing
