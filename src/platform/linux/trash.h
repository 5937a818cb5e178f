// Moving into a trash and out of it.
#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>

#include "base/result.h"
#include "platform/file_info.h"
#include "platform/linux/trash_places.h"

namespace kelvane::linux_os {

// What is to go: a name in an open folder.
struct TrashItem {
    int folder;
    std::filesystem::path folderPath;  // without links
    std::string name;
    FileIdentity identity;
};

// What became of it. An item that turned out to be another one than expected, and could not be put back, has both.
struct TrashMove {
    std::optional<Error> error;
    std::optional<std::filesystem::path> trashed;
};

using Placing = std::function<Status(const std::filesystem::path& trashed)>;

// The note comes first; `placing` hears of the name before anything moves. After a failure there is no note.
[[nodiscard]] TrashMove moveToTrash(const TrashItem& item, const TrashPlace& place, const Placing& placing);

// As FileOperations says.
[[nodiscard]] Status restoreFromTrash(const std::filesystem::path& trashed, const std::filesystem::path& place);
[[nodiscard]] Status forgetInTrash(const std::filesystem::path& trashed);

// The error of an item that is not the expected one.
[[nodiscard]] Error notThatFile();

// Of a name itself; links are not followed.
[[nodiscard]] Result<FileIdentity> identityAt(int folder, const std::string& name);

}  // namespace kelvane::linux_os
