#include "ui/clean/marking_figures.h"

#include <algorithm>
#include <unordered_map>

#include "platform/native_text.h"

namespace kelvane {

MarksByFolder marksByFolder(const ResultsModel& results, std::size_t most)
{
    // Siblings share their parent, so that no path has to be put together for most of them.
    std::unordered_map<const ShellItem*, MarkSum> byParent;
    std::unordered_map<std::string, MarkSum> byName;
    results.forEachRow([&](ItemId id) {
        if (!results.isMarked(id))
            return;
        const ShellItem& item = results.item(id).file.item();
        MarkSum& sum = item.parent() != nullptr ? byParent[item.parent()]
                                                : byName[bytesFromNative(item.path().parent_path().native())];
        ++sum.items;
        sum.bytes += item.info().size.bytes;
    });
    for (const auto& [parent, sum] : byParent) {
        MarkSum& all = byName[bytesFromNative(parent->fullName())];
        all.items += sum.items;
        all.bytes += sum.bytes;
    }
    MarksByFolder marks;
    for (const auto& [folder, sum] : byName)
        marks.top.push_back({folder, sum});
    const auto kept = std::min(most, marks.top.size());
    std::partial_sort(marks.top.begin(), marks.top.begin() + static_cast<std::ptrdiff_t>(kept), marks.top.end(),
                      [](const FolderMarks& a, const FolderMarks& b) {
                          return a.sum.bytes != b.sum.bytes ? a.sum.bytes > b.sum.bytes : a.folder < b.folder;
                      });
    marks.others = marks.top.size() - kept;
    marks.top.resize(kept);
    return marks;
}

std::uint32_t groupsWhollyMarked(const RowMirror& rows)
{
    if (!rows.figures().grouped)
        return 0;
    const bool ticks = rows.figures().tickBoxes;
    std::uint32_t groups = 0;
    bool all = false;
    for (Row row = 0; row < rows.count(); ++row) {
        const RowEntry& entry = rows.at(row);
        if (rows.beginsGroup(row)) {
            groups += all ? 1 : 0;
            all = true;
        }
        all = all && (ticks ? entry.isTicked() : entry.isSelected());
    }
    return groups + (all ? 1 : 0);
}

}  // namespace kelvane
