// What is made sure of before an item goes: on open handles, not on paths.
#pragma once

#include <memory>
#include <variant>

#include "cleanup/cleanup_fault.h"
#include "cleanup/cleanup_pass.h"

namespace kelvane {

// A folder that the items of a batch share.
using SharedFolder = std::shared_ptr<HeldFolder>;

// An item and its kept file, opened and held.
struct HeldPair {
    std::filesystem::path itemPath;
    SharedFolder folder;             // of the item
    NativeString name;               // of the item in it
    std::unique_ptr<HeldFile> item;  // null for a folder or a link, which cannot be opened as files
    FileDetails itemNow;             // of the name itself
    std::filesystem::path keptPath;  // as the list has it; where that is a link, `kept` is what it leads to
    std::shared_ptr<HeldFile> kept;  // null for a folder
    FileDetails keptNow;
};

// Looks at items one after the other; neighbours share folders and kept files. Knows which files the plan takes away,
// so that none of them is relied on as the kept one. One thread; everything given outlives it.
class Guards {
public:
    Guards(const PassPorts& ports, const PassOptions& options, const ResultsModel& model, const CleanupPlan& plan,
           const CancelFlag& cancel);
    ~Guards();

    // Everything that can be checked before: both are as the scan saw them, are two files, the kept one is outside
    // any trash and not marked in another group, and where it is asked for both were compared byte by byte. `kept` is
    // the plan's unless another original took its place. `cancelled` as an error of fault `system`.
    [[nodiscard]] std::variant<HeldPair, CleanupFailure> hold(const CleanupCommand& command, ItemId kept);

    // Right before the action: the names still lead to the held files, and these are as they were. Whether somebody
    // writes to an item is looked at here no more, since that shows for certain once the item has left its name.
    [[nodiscard]] std::optional<CleanupFailure> recheck(const HeldPair& pair);

    // The item stays where it is after all, and may be relied on as a kept one.
    void keep(ItemId item);

    // Lets go of shared handles; to be called between batches.
    void release();

private:
    class Impl;
    std::unique_ptr<Impl> impl_;
};

// Byte by byte, through the handles: true when equal. `cancelled` between two chunks.
[[nodiscard]] Result<bool> sameContents(HeldFile& a, HeldFile& b, const CancelFlag& cancel);

}  // namespace kelvane
