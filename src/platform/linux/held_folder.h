// Open folders: changes of names that no change of the path above them can lead astray.
#pragma once

#include <filesystem>
#include <memory>

#include "base/result.h"
#include "platform/held_files.h"
#include "platform/linux/volumes.h"

namespace kelvane::linux_os {

[[nodiscard]] Result<std::unique_ptr<HeldFolder>> openHeldFolder(const std::filesystem::path& folder,
                                                                 std::shared_ptr<Volumes> volumes);

}  // namespace kelvane::linux_os
