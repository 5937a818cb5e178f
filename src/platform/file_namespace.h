// The tree of shell items over any file system and archive port.
#pragma once

#include "platform/archive_folders.h"
#include "platform/shell_namespace.h"
#include "platform/text_folding.h"

namespace kelvane {

// Plain files and archives; serves every system whose shell has nothing more to offer. The ports must outlive it.
// archives may be null: then no archive is ever seen as a folder.
[[nodiscard]] std::unique_ptr<ShellNamespace> makeFileNamespace(FileSystem& files, ArchiveFolders* archives,
                                                                const TextFolding& folding);

}  // namespace kelvane
