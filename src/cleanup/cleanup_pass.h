// What the passes of a clean-up work with, and what they tell of each item.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <set>
#include <vector>

#include "base/cancel.h"
#include "cleanup/cleanup_fault.h"
#include "cleanup/cleanup_plan.h"
#include "cleanup/cleanup_questions.h"
#include "cleanup/journal.h"
#include "platform/clock.h"
#include "platform/file_operations.h"
#include "platform/file_output.h"
#include "platform/file_system.h"
#include "platform/held_files.h"
#include "platform/symbolic_link_service.h"

namespace kelvane {

// What outlives a run: it belongs to the results window, but for the elevation answer, which the process shares.
struct CleanupMemory {
    std::set<std::uint64_t> unlinkableVolumes;  // by volumeKey(): links failed there
    std::filesystem::path lastLog;
    bool elevationDeclined = false;
    bool elevationAccepted = false;  // not asked again, and the helper may be running
};

// The number of the drive letter (A is 1) where the path has one, else the volume's serial number.
[[nodiscard]] std::uint64_t volumeKey(const ShellItem& item, const PathRules& paths);

struct PassOptions {
    bool compareInFull = true;  // before a link takes the place of an item, and before an item of a group goes that
                                // was compared approximately or put together by hand
    bool compareBeforeLoss = false;  // likewise before an item goes for good: the scan found equal contents
    bool offerElevation = true;      // ask whether an administrator's process shall make symbolic links
    std::uint32_t batch = 256;       // items whose intents are flushed together: what a loss of power leaves undecided
};

// All of it outlives the pass.
struct PassPorts {
    HeldFiles& held;
    FileOperations& operations;
    FileSystem& files;
    const PathRules& paths;
    const Clock& clock;
    SymbolicLinkService* elevated = nullptr;  // null where there is none
    bool isElevated = false;                  // this process is
    FileOutput* output = nullptr;             // makes folders that are missing when something is brought back
};

enum class ItemResult : std::uint8_t {
    done,
    failed,       // stays as it was; counted as an error
    declined,     // the person said no to a link onto an external drive; counted as an error, not logged
    newOriginal,  // stays: the kept file has as many names as it can, and this one takes its place for the rest
    notReached,   // the run was stopped before
};

struct ItemOutcome {
    std::size_t command = 0;  // in the plan
    ItemResult result = ItemResult::notReached;
    LinkKind link = LinkKind::none;  // what it became
    ItemId kept{};                   // what it is linked to: not always the plan's
    std::optional<CleanupFailure> failure;
    std::int32_t code = 0;  // of a removal, as RemovalOutcome has it
    std::filesystem::path trashed;
};

// Hears of a pass, in the order of the plan, on its thread.
class PassObserver {
public:
    virtual ~PassObserver() = default;
    // Before an item is held and checked, which may take as long as its contents are compared. Items are checked some
    // hundred ahead of those that end, and one of them may begin again.
    virtual void itemBegins(std::size_t /*command*/) {}
    // Links only: items that follow are linked to this one.
    virtual void groupBegins(ItemId original) = 0;
    // Also with notReached, for everything behind the item at which the run was stopped.
    virtual void itemEnded(const ItemOutcome& outcome) = 0;
    // Items done of all, and bytes of items done of all: often, and cheap to ignore.
    virtual void progress(std::uint64_t items, std::uint64_t bytes) = 0;
};

// As the description of a run in words has it.
enum class CancelState : std::int8_t { running = 0, requested = 1, linkRunSettled = -1 };

struct PassOutcome {
    std::uint64_t succeeded = 0;
    std::uint64_t errors = 0;   // failed and declined
    std::uint64_t freed = 0;    // bytes, as the plan counts them, of what was done
    bool recycled = false;      // something is in the trash
    bool engineFailed = false;  // the system's own batch reported a failure as a whole
    CancelState cancel = CancelState::running;
    std::uint64_t undecided = 0;        // of the errors, those whose journal entry stays open: the run is not to be
                                        // ended then, and settling decides
    std::uint32_t noticesOff = 0;       // bits of bin1OffNotify that the person's answers set
    std::optional<Error> journalError;  // the journal could not be written on, and the pass stopped
};

}  // namespace kelvane
