#include "app/scan_notes.h"

#include "base/filled_text.h"

namespace kelvane {

std::vector<std::string> leftOutNotes(const ScanReport& report, const ScanCriteria& criteria)
{
    const WalkStats& walk = report.walk;
    std::vector<std::string> notes;
    if (walk.withoutValue > 0)
        notes.push_back(filledText(walk.withoutValue == 1 ? TextId::oneWithoutValue : TextId::manyWithoutValue,
                                   {criteria.primary.info->name, std::to_string(walk.withoutValue)}));
    for (const auto& [reason, files] : walk.undescribed)
        notes.push_back(
            filledText(files == 1 ? TextId::oneUndescribed : TextId::manyUndescribed, {reason, std::to_string(files)}));
    if (walk.offlineSkipped > 0)
        notes.push_back(countedText(walk.offlineSkipped, TextId::oneStoredElsewhere, TextId::manyStoredElsewhere));
    return notes;
}

}  // namespace kelvane
