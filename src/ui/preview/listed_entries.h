// What lies in an archive or a folder, as a preview lists it.
#pragma once

#include "ui/preview/preview_content.h"
#include "ui/preview/preview_tools.h"

namespace kelvane {

// The archive that a file of the file system is; null for any other file.
[[nodiscard]] Ref<const ShellItem> archiveIn(const ShellItem& item, PreviewTools& tools);

// Everything below, folder by folder, up to the bounds of previews.
[[nodiscard]] PreviewContent listedEntries(const Ref<const ShellItem>& folder, PreviewTools& tools);

}  // namespace kelvane
