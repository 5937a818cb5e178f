#include <algorithm>
#include <array>

#include "platform/path_rules.h"

namespace kelvane {
namespace {

// What the system keeps for itself, as the Filesystem Hierarchy Standard lays it out.
constexpr std::array<std::string_view, 16> systemFolders = {"/bin",   "/boot",   "/dev", "/etc",  "/lib", "/lib32",
                                                            "/lib64", "/libx32", "/opt", "/proc", "/run", "/sbin",
                                                            "/snap",  "/sys",    "/usr", "/var"};
constexpr std::string_view homeTrash = "/.local/share/Trash";

std::string_view withoutTrailingSlashes(std::string_view path)
{
    while (path.size() > 1 && path.back() == '/')
        path.remove_suffix(1);
    return path;
}

// "/a" holds "/a" and "/a/b", never "/ab".
bool isAtOrBelow(std::string_view path, std::string_view folder)
{
    if (folder == "/")
        return path.starts_with('/');
    return path.starts_with(folder) && (path.size() == folder.size() || path[folder.size()] == '/');
}

bool isSystemFolder(std::string_view path)
{
    return std::find(systemFolders.begin(), systemFolders.end(), path) != systemFolders.end();
}

bool liesInSystemFolder(std::string_view path)
{
    return std::any_of(systemFolders.begin(), systemFolders.end(),
                       [&](auto folder) { return isAtOrBelow(path, folder); });
}

// The names that the freedesktop.org trash specification gives the trash folder of a mounted volume.
bool isVolumeTrashName(std::string_view name)
{
    constexpr std::string_view shared = ".Trash";
    if (!name.starts_with(shared))
        return false;
    name.remove_prefix(shared.size());
    return name.empty() ||
           (name.size() > 1 && name[0] == '-' && name.find_first_not_of("0123456789", 1) == std::string_view::npos);
}

bool isTrashFolder(std::string_view path)
{
    return path.ends_with(homeTrash) || isVolumeTrashName(path.substr(path.rfind('/') + 1));
}

bool liesInTrash(std::string_view path)
{
    for (auto end = path.find('/', 1); end != std::string_view::npos; end = path.find('/', end + 1))
        if (isTrashFolder(path.substr(0, end)))
            return true;
    return isTrashFolder(path);
}

class PosixPathRules final : public PathRules {
public:
    std::vector<std::string> splitRoots(std::string_view list) const override
    {
        std::vector<std::string> roots(1);
        for (std::size_t i = 0; i < list.size(); ++i) {
            const bool escape = list[i] == '\\' && i + 1 < list.size() && (list[i + 1] == '|' || list[i + 1] == '\\');
            if (escape)
                roots.back() += list[++i];
            else if (list[i] == '|')
                roots.emplace_back();
            else
                roots.back() += list[i];
        }
        std::erase_if(roots, [](const std::string& root) { return root.empty(); });
        return roots;
    }

    std::string joinRoots(const std::vector<std::string>& roots) const override
    {
        std::string list;
        for (const auto& root : roots) {
            if (!list.empty())
                list += '|';
            for (const char c : root) {
                if (c == '|' || c == '\\')
                    list += '\\';
                list += c;
            }
        }
        return list;
    }

    std::string comparable(std::string_view path) const override { return std::string(withoutTrailingSlashes(path)); }

    bool rootIsProtected(std::string_view path) const override
    {
        const auto plain = withoutTrailingSlashes(path);
        return liesInSystemFolder(plain) || liesInTrash(plain);
    }

    bool isProtectedFolder(std::string_view path) const override
    {
        const auto plain = withoutTrailingSlashes(path);
        return isSystemFolder(plain) || isTrashFolder(plain);
    }

    int compareRoots(std::string_view a, std::string_view b) const override { return a.compare(b); }

    bool covers(std::string_view a, std::string_view b) const override { return isAtOrBelow(b, a); }

    // A name that looks like one of these is a file name like any other here.
    bool isComputerRoot(std::string_view) const override { return false; }
    bool isExtendedLength(std::string_view) const override { return false; }
    std::string toExtendedLength(std::string_view path) const override { return std::string(path); }

    bool isDriveRoot(std::string_view path) const override { return withoutTrailingSlashes(path) == "/"; }

    char separator() const override { return '/'; }

    bool samePath(std::string_view a, std::string_view b) const override { return a == b; }
};

}  // namespace

std::unique_ptr<PathRules> makePosixPathRules()
{
    return std::make_unique<PosixPathRules>();
}

}  // namespace kelvane
