#include "platform/file_operations.h"

#include "platform/windows/adapters.h"
#include "platform/windows/file_facts.h"
#include "platform/windows/name_changes.h"
#include "platform/windows/os_error.h"
#include "platform/windows/recycle_bins.h"
#include "platform/windows/recycling.h"
#include "platform/windows/system_path.h"
#include "platform/windows/trash_paths.h"

namespace kelvane {
namespace windows_os {
namespace {

namespace fs = std::filesystem;

RemovalOutcome failure(Error error)
{
    const auto code = static_cast<std::int32_t>(resultOf(error));
    return {code, std::move(error), std::nullopt};
}

// What was looked at is what goes: both by one handle.
Status removeForGood(const RemovalItem& item)
{
    const Handle file = openToRemove(systemPath(item.path));
    if (!file.valid())
        return lastError();
    if (identityOf(file.get()) != item.identity)
        return anotherFile();
    return removeOpen(file.get());
}

// The shell is asked item by item, since a refusal of one item makes it drop all that come after.
class WindowsFileOperations final : public FileOperations {
public:
    BatchOutcome remove(std::span<const RemovalItem> items, RemovalSink& sink, const CancelFlag& cancel) override
    {
        const ComOnThread com;
        BatchOutcome batch;
        for (std::size_t i = 0; i < items.size(); ++i) {
            if (cancel.cancelled() || batch.aborted)
                return {batch.ok, true};
            if (!sink.before(i))
                continue;
            sink.after(i, items[i].removal == Removal::forGood ? outcomeOf(removeForGood(items[i]))
                                                               : toTrash(items[i], com, batch));
        }
        return batch;
    }

    Status canTrash(const fs::path& path) override { return canRecycle(path); }

    bool isInTrash(const fs::path& path) override
    {
        if (liesInTrash(path))
            return true;
        const auto folder = finalPath(path.parent_path());
        const auto end = finalPath(path);
        return (folder && liesInTrash(*folder)) || (end && liesInTrash(*end));
    }

    Status restore(const fs::path& trashed, const fs::path& place) override { return restoreRecycled(trashed, place); }

    // The shell makes its note and moves the item by itself; names are never told ahead.
    Status forget(const fs::path& /*trashed*/) override { return {}; }

private:
    static RemovalOutcome outcomeOf(const Status& status)
    {
        return status ? RemovalOutcome{} : failure(status.error());
    }

    static RemovalOutcome toTrash(const RemovalItem& item, const ComOnThread& com, BatchOutcome& batch)
    {
        if (FAILED(com.result())) {
            batch.ok = false;
            return windows_os::outcomeOf(com.result());
        }
        const Recycled recycled = recycle(item);
        batch.ok = batch.ok && recycled.operation.ok;
        batch.aborted = recycled.operation.aborted;
        return recycled.item;
    }
};

}  // namespace
}  // namespace windows_os

std::unique_ptr<FileOperations> makeWindowsFileOperations()
{
    return std::make_unique<windows_os::WindowsFileOperations>();
}

}  // namespace kelvane
