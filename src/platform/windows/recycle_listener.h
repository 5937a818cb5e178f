// What the shell tells while it moves one item into the recycle bin.
#pragma once

#include <functional>
#include <optional>
#include <windows.h>

#include <shobjidl.h>

#include "platform/file_operations.h"
#include "platform/windows/com.h"

namespace kelvane::windows_os {

using ToldOutcome = std::function<void(const RemovalOutcome&)>;

// What has come of one item so far.
struct RecycleState {
    std::optional<Error> refused;  // by the listener, before the shell began
    bool told = false;             // the shell has said what became of the item, or the listener has
};

// Refuses, which ends the operation, when the bin of the volume would not take the item (the shell would delete it for
// good instead), and when the shell is about to take another file than the one with the item's identity. Tells of each
// answer of the shell. All references outlive the operation.
[[nodiscard]] ComPointer<IFileOperationProgressSink> makeRecycleListener(const RemovalItem& item,
                                                                         const ToldOutcome& tell, RecycleState& state);

// Says that there is not the file that was expected.
[[nodiscard]] Error anotherFile();

// Of a result that the shell gives for one item.
[[nodiscard]] RemovalOutcome outcomeOf(HRESULT result);

}  // namespace kelvane::windows_os
