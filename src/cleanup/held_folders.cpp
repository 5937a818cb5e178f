#include "cleanup/held_folders.h"

namespace kelvane {

Result<SharedFolder> HeldFolders::open(const std::filesystem::path& folder)
{
    constexpr std::size_t mostIdle = 64;  // handles that nobody needs any more; the items hold those that they do
    const auto known = open_.find(folder.native());
    if (known != open_.end())
        return known->second;
    auto opened = held_.openFolder(folder);
    if (!opened)
        return opened.error();
    if (open_.size() >= mostIdle)
        open_.clear();
    return open_.emplace(folder.native(), std::move(*opened)).first->second;
}

}  // namespace kelvane
