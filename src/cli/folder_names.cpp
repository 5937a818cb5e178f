#include "cli/folder_names.h"

#include <algorithm>

#include "base/filled_text.h"
#include "cli/problems.h"
#include "cli/settings_in_force.h"
#include "platform/native_text.h"
#include "results/folder_text.h"

namespace kelvane {
namespace {

using Path = std::filesystem::path;

Path withoutEndSeparator(const Path& path)
{
    const Path normal = path.lexically_normal();
    return normal.has_filename() || !normal.has_relative_path() ? normal : normal.parent_path();
}

// Without links on the way; the path itself where that cannot be told.
Path realPath(const Path& path)
{
    std::error_code error;
    const Path real = std::filesystem::canonical(path, error);
    return error ? path : real;
}

bool holdsAny(const std::string& folder, const ResultsModel& results, const PathRules& rules)
{
    const FolderText text(folder, rules);
    const auto order = results.order();
    return std::any_of(order.begin(), order.end(),
                       [&](ItemId id) { return text.holds(comparablePath(results.item(id).file.item(), rules)); });
}

}  // namespace

Result<std::vector<std::string>> FolderNames::forms(const std::string& typed) const
{
    const Path path = withoutEndSeparator(namedFile(typed));
    const auto item = platform_.shell().parse(path.native());
    if (!item)
        return Error{ErrorKind::invalid, 0, typed + ": " + errorText(item.error())};
    if (!(*item)->isFolder())
        return Error{ErrorKind::invalid, 0, typed + ": " + filledText(TextId::notFolder)};
    const Path real = realPath(path);
    std::vector<std::string> all = {bytesFromNative(path.native())};
    const auto add = [&](const Path& form) {
        std::string bytes = bytesFromNative(withoutEndSeparator(form).native());
        if (std::find(all.begin(), all.end(), bytes) == all.end())
            all.push_back(std::move(bytes));
    };
    add(real);
    for (const std::string& root : scan_.figures.roots) {
        const Path named = nativeFromBytes(root);
        const Path below = real.lexically_relative(realPath(named));
        if (!below.empty() && *below.begin() != "..")
            add(named / below);
    }
    return all;
}

Result<std::string> FolderNames::bestForm(const std::string& typed) const
{
    auto all = forms(typed);
    if (!all)
        return all.error();
    const auto best = std::find_if(all->begin(), all->end(), [&](const std::string& form) {
        return holdsAny(form, scan_.results, platform_.paths());
    });
    return best == all->end() ? all->front() : *best;
}

}  // namespace kelvane
