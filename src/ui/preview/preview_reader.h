// Reads what a preview shows.
#pragma once

#include "ui/preview/preview_content.h"
#include "ui/preview/preview_tools.h"

namespace kelvane {

// Never fails otherwise than by the content's state and note; nothing sensible after a cancel. On the tools' thread.
[[nodiscard]] PreviewContent readPreview(const Ref<const ShellItem>& item, PreviewTools& tools);

// Bytes from a position on, as many as there are; fewer at the end. Entries of archives are read from their beginning
// each time, so only their first bytes are given.
[[nodiscard]] Result<std::vector<std::byte>> readBytes(const ShellItem& item, std::uint64_t position, std::size_t most,
                                                       PreviewTools& tools);

}  // namespace kelvane
