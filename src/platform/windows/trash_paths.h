// Where the recycle bins of Windows keep things, as string logic.
#pragma once

#include <filesystem>
#include <optional>

namespace kelvane::windows_os {

// Whether a component of the path is the folder of a recycle bin, of this or an older version of the system. A name
// like it deeper in a path is counted too: bins of shared folders lie there.
[[nodiscard]] bool liesInTrash(const std::filesystem::path& path);

// The bin's note about the item that it keeps as "$Rxxxxxx.ext": "$Ixxxxxx.ext" beside it. Nothing for other names.
[[nodiscard]] std::optional<std::filesystem::path> trashNote(const std::filesystem::path& trashed);

}  // namespace kelvane::windows_os
