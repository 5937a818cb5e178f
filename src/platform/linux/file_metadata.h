// Owner, rights, times and extended attributes of an open file.
#pragma once

#include "base/result.h"
#include "platform/held_files.h"

namespace kelvane::linux_os {

// Attributes that are listed but may not be read are left out.
[[nodiscard]] Result<FileMetadata> readMetadata(int file);

// All that can be given; the first failure is the answer. A right that was meant for an owner or a group which the file
// cannot have is left out: nobody gains any.
[[nodiscard]] Status giveMetadata(int file, const FileMetadata& metadata);

}  // namespace kelvane::linux_os
