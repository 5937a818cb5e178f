#include "cli/folder_names.h"

#include "app/folder_forms.h"
#include "base/filled_text.h"
#include "cli/problems.h"
#include "cli/settings_in_force.h"

namespace kelvane {

Result<std::vector<std::string>> FolderNames::forms(const std::string& typed) const
{
    const std::filesystem::path path = withoutEndSeparator(namedFile(typed));
    const auto item = platform_.shell().parse(path.native());
    if (!item)
        return Error{ErrorKind::invalid, 0, typed + ": " + errorText(item.error())};
    if (!(*item)->isFolder())
        return Error{ErrorKind::invalid, 0, typed + ": " + filledText(TextId::notFolder)};
    return folderForms(path, scan_.figures.roots);
}

Result<std::string> FolderNames::bestForm(const std::string& typed) const
{
    const auto all = forms(typed);
    if (!all)
        return all.error();
    return formInList(*all, scan_.results, platform_.paths());
}

}  // namespace kelvane
