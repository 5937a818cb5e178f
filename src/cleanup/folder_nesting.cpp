#include "cleanup/folder_nesting.h"

namespace kelvane {
namespace {

using Wanted = std::function<bool(FileIdentity)>;

bool anyNamedAbove(const std::filesystem::path& path, FileSystem& files, const Wanted& wanted)
{
    for (std::filesystem::path folder = path; folder.has_relative_path();) {
        folder = folder.parent_path();
        const auto details = files.details(folder, Links::followed);
        if (details && wanted(details->identity))
            return true;
    }
    return false;
}

// The system resolves ".." behind links to the folder that really holds them; the top is its own parent.
bool anyReallyAbove(std::filesystem::path folder, FileSystem& files, const Wanted& wanted)
{
    constexpr int deepest = 10'000;  // no file system nests deeper; ends where a top is not its own parent
    FileIdentity below;
    for (int depth = 0; depth < deepest; ++depth) {
        const auto details = files.details(folder, Links::followed);
        if (!details || details->kind != FileKind::folder || !details->identity.known() || details->identity == below)
            return false;
        if (wanted(details->identity))
            return true;
        below = details->identity;
        folder /= "..";
    }
    return false;
}

}  // namespace

bool anyFolderAbove(const std::filesystem::path& path, FileSystem& files, const Wanted& wanted)
{
    return anyNamedAbove(path, files, wanted) || anyReallyAbove(path.parent_path(), files, wanted) ||
           anyReallyAbove(path / "..", files, wanted);
}

}  // namespace kelvane
