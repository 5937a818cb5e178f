#include "cleanup/held_folders.h"

namespace kelvane {

Result<SharedFolder> HeldFolders::open(const std::filesystem::path& folder)
{
    const auto known = open_.find(folder.native());
    if (known != open_.end())
        return known->second;
    auto opened = held_.openFolder(folder);
    if (!opened)
        return opened.error();
    return open_.emplace(folder.native(), std::move(*opened)).first->second;
}

}  // namespace kelvane
