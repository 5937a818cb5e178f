// Files that are being made beside others.
#pragma once

#include <memory>
#include <string>

#include "base/result.h"
#include "platform/held_files.h"
#include "platform/linux/volumes.h"

namespace kelvane::linux_os {

[[nodiscard]] Result<std::unique_ptr<NewFile>> createNewFile(int folder, const std::string& name,
                                                             std::shared_ptr<Volumes> volumes);

}  // namespace kelvane::linux_os
