#include "app/folder_forms.h"

#include <algorithm>

#include "platform/native_text.h"
#include "results/folder_text.h"

namespace kelvane {
namespace {

using Path = std::filesystem::path;

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

Path withoutEndSeparator(const Path& path)
{
    const Path normal = path.lexically_normal();
    return normal.has_filename() || !normal.has_relative_path() ? normal : normal.parent_path();
}

std::vector<std::string> folderForms(const Path& folder, std::span<const std::string> roots)
{
    const Path path = withoutEndSeparator(folder);
    const Path real = realPath(path);
    std::vector<std::string> all = {bytesFromNative(path.native())};
    const auto add = [&](const Path& form) {
        std::string bytes = bytesFromNative(withoutEndSeparator(form).native());
        if (std::find(all.begin(), all.end(), bytes) == all.end())
            all.push_back(std::move(bytes));
    };
    add(real);
    for (const std::string& root : roots) {
        const Path named = nativeFromBytes(root);
        const Path below = real.lexically_relative(realPath(named));
        if (!below.empty() && *below.begin() != "..")
            add(named / below);
    }
    return all;
}

const std::string& formInList(const std::vector<std::string>& forms, const ResultsModel& results,
                              const PathRules& rules)
{
    const auto best = std::find_if(forms.begin(), forms.end(),
                                   [&](const std::string& form) { return holdsAny(form, results, rules); });
    return best == forms.end() ? forms.front() : *best;
}

}  // namespace kelvane
