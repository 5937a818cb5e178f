#include "platform/windows/trash_paths.h"

#include <algorithm>
#include <string_view>
#include <windows.h>

namespace kelvane::windows_os {
namespace {

namespace fs = std::filesystem;

bool areSameName(std::wstring_view a, std::wstring_view b)
{
    return ::CompareStringOrdinal(a.data(), static_cast<int>(a.size()), b.data(), static_cast<int>(b.size()), TRUE) ==
           CSTR_EQUAL;
}

bool isTrashFolder(const fs::path& part)
{
    return areSameName(part.native(), L"$Recycle.Bin") || areSameName(part.native(), L"RECYCLER") ||
           areSameName(part.native(), L"RECYCLED");
}

}  // namespace

bool liesInTrash(const fs::path& path)
{
    return std::any_of(path.begin(), path.end(), isTrashFolder);
}

std::optional<fs::path> trashNote(const fs::path& trashed)
{
    std::wstring name = trashed.filename().native();
    if (!name.starts_with(L"$R") && !name.starts_with(L"$r"))
        return std::nullopt;
    name[1] = L'I';
    return trashed.parent_path() / name;
}

}  // namespace kelvane::windows_os
