// What the shell tells while it moves one item into the recycle bin.
#pragma once

#include <optional>
#include <windows.h>

#include <shobjidl.h>

#include "platform/file_operations.h"
#include "platform/windows/com.h"

namespace kelvane::windows_os {

// What has come of one item so far.
struct RecycleState {
    std::optional<Error> refused;        // by the listener, before the shell began
    std::optional<RemovalOutcome> told;  // the shell's last answer that was no step of its own
};

// Refuses, which ends the operation, when the bin of the volume would not take the item (the shell would delete it for
// good instead), and when the shell is about to take another file than the one with the item's identity. All
// references outlive the operation.
[[nodiscard]] ComPointer<IFileOperationProgressSink> makeRecycleListener(const RemovalItem& item, RecycleState& state);

// Says that there is not the file that was expected.
[[nodiscard]] Error anotherFile();

// Of a result that the shell gives for one item.
[[nodiscard]] RemovalOutcome outcomeOf(HRESULT result);

}  // namespace kelvane::windows_os
