#include "results/mark_wizard.h"

#include <algorithm>

#include "base/filled_text.h"
#include "base/utf.h"
#include "results/compared_values.h"

namespace kelvane {
namespace {

std::vector<std::string> folderList(const std::string& roots, const PathRules& paths,
                                    const std::vector<std::string>& drives)
{
    std::vector<std::string> folders;
    const auto add = [&](const std::string& folder) {
        const auto same = [&](const std::string& known) { return paths.samePath(known, folder); };
        if (std::none_of(folders.begin(), folders.end(), same))
            folders.push_back(folder);
    };
    const std::vector<std::string> searched = paths.splitRoots(roots);
    std::for_each(searched.begin(), searched.end(), add);
    const auto isComputer = [&](const std::string& root) { return paths.isComputerRoot(root); };
    if (std::any_of(searched.begin(), searched.end(), isComputer))
        std::for_each(drives.begin(), drives.end(), add);
    return folders;
}

void askAboutHidden(ResultsModel& model, MarkWizardMemory& memory,
                    const std::function<bool(std::u16string_view)>& askYesNo)
{
    if (model.hiddenCount() == 0 || memory.hiddenStayHidden)
        return;
    if (askYesNo(text(TextId::includeHiddenQuestion)))
        model.showAll();
    else
        memory.hiddenStayHidden = true;
}

}  // namespace

CMarkWizardDlg::CMarkWizardDlg(const CScanNode& definition, const PathRules& paths,
                               const std::vector<std::string>& drives, MarkWizardMemory& memory)
    : definition_(definition), memory_(memory), folders_(folderList(definition.roots, paths, drives))
{
}

const std::array<MarkWizardRow, 7>& CMarkWizardDlg::rows()
{
    using enum TextId;
    static const std::array<MarkWizardRow, 7> rows{{
        {KeepRule::biggest, headingQuality, keepBiggest, whyBiggest},
        {KeepRule::smallest, headingQuality, keepSmallest, whySmallest},
        {KeepRule::newest, headingDates, keepNewest, whyNewest},
        {KeepRule::oldest, headingDates, keepOldest, whyOldest},
        {KeepRule::first, headingOrder, keepFirst, {}},
        {KeepRule::last, headingOrder, keepLast, {}},
        {KeepRule::under, headingLocation, keepUnder, {}},
    }};
    return rows;
}

bool CMarkWizardDlg::isEnabled(KeepRule rule) const
{
    switch (rule) {
    case KeepRule::biggest:
    case KeepRule::smallest:
        return !listsProperty(definition_, "System.Size") && !definition_.has(scan_flag::contents) &&
               definition_.category() != Category::folders;
    case KeepRule::newest:
    case KeepRule::oldest:
        return !listsProperty(definition_, "System.DateModified");
    case KeepRule::under:
        return !folders_.empty();
    default:
        return true;
    }
}

KeepRule CMarkWizardDlg::preselected() const
{
    if (memory_.rule && isEnabled(*memory_.rule))
        return *memory_.rule;
    const auto enabled = [this](const MarkWizardRow& row) { return isEnabled(row.rule); };
    return std::find_if(rows().begin(), rows().end(), enabled)->rule;
}

Result<MarkingPreview> CMarkWizardDlg::apply(ResultsModel& model, const MarkingRule& chosen, const MarkingPorts& ports,
                                             const std::function<bool(std::u16string_view)>& askYesNo)
{
    if (!isEnabled(chosen.rule))
        return Error{ErrorKind::invalid, 0, filledText(TextId::nothingToKeep)};
    const MarkingPlan plan{{chosen}, {}, {}};
    if (const auto possible = previewMarks(model, plan, ports); !possible)
        return possible;
    memory_.rule = chosen.rule;
    return apply(model, plan, ports, askYesNo);
}

Result<MarkingPreview> CMarkWizardDlg::apply(ResultsModel& model, const MarkingPlan& plan, const MarkingPorts& ports,
                                             const std::function<bool(std::u16string_view)>& askYesNo)
{
    if (const auto possible = previewMarks(model, plan, ports); !possible)
        return possible;
    askAboutHidden(model, memory_, askYesNo);
    // Items that came back into view count as well.
    const auto preview = previewMarks(model, plan, ports);
    if (preview && preview->groupsLost > 0 && !askYesNo(toUtf16(lossWarning(*preview))))
        return Error{ErrorKind::cancelled, 0, {}};
    return applyMarks(model, plan, ports);
}

std::string lossWarning(const MarkingPreview& preview)
{
    return preview.groupsLost > 0 ? countedText(preview.groupsLost, TextId::oneGroupLost, TextId::manyGroupsLost)
                                  : std::string();
}

}  // namespace kelvane
