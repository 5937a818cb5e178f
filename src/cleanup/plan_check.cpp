#include "cleanup/plan_check.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <utility>
#include <vector>

#include "cleanup/freed_bytes.h"

namespace kelvane {
namespace {

// As the scan looked at it: roots, and links that it went through, for what they lead to.
Links waysOf(const ShellItem& item)
{
    const bool throughLink = item.isReparsePoint() && item.info().kind != FileKind::link;
    return throughLink || item.parent() == nullptr ? Links::followed : Links::asThemselves;
}

bool sameIdentity(FileIdentity a, FileIdentity b)
{
    return !a.known() || !b.known() || a == b;
}

class Check {
public:
    Check(const ResultsModel& model, FileSystem& files) : model_(model), files_(files) {}

    std::optional<CleanupObstacle> obstacle(const CleanupCommand& command)
    {
        if (!isAsListed(model_.item(command.item).file.item(), files_))
            return CleanupObstacle::changed;
        // The commands of one group follow one another, mostly with one kept file.
        if (!hasKept_ || kept_ != command.kept) {
            hasKept_ = true;
            kept_ = command.kept;
            keptIsThere_ = isAsListed(model_.item(command.kept).file.item(), files_);
        }
        return keptIsThere_ ? std::nullopt : std::optional(CleanupObstacle::keptChanged);
    }

private:
    const ResultsModel& model_;
    FileSystem& files_;
    ItemId kept_{};
    bool hasKept_ = false;
    bool keptIsThere_ = false;
};

}  // namespace

bool isAsListed(const ShellItem& item, FileSystem& files)
{
    if (!item.inFileSystem())
        return true;
    const auto now = files.details(item.path(), waysOf(item));
    const FileInfo& then = item.info();
    if (!now || now->kind != then.kind || !sameIdentity(now->identity, then.identity) || now->modified != then.modified)
        return false;
    return then.kind == FileKind::folder || now->size == then.size;
}

void leaveAlone(CleanupPlan& plan, std::span<const CleanupSkip> items, const ResultsModel& model,
                const CleanupFacts& facts)
{
    if (items.empty())
        return;
    std::size_t next = 0;
    std::erase_if(plan.commands, [&](const CleanupCommand& command) {
        const bool out = next < items.size() && items[next].item == command.item;
        next += out ? 1 : 0;
        return out;
    });
    std::vector<CleanupSkip> skipped;
    skipped.reserve(plan.skipped.size() + items.size());
    std::merge(plan.skipped.begin(), plan.skipped.end(), items.begin(), items.end(), std::back_inserter(skipped),
               [&](CleanupSkip a, CleanupSkip b) { return model.rowOf(a.item) < model.rowOf(b.item); });
    plan.skipped = std::move(skipped);
    plan.frees = countFreedBytes(model, facts, plan.commands);
}

Result<std::size_t> leaveChangedAlone(CleanupPlan& plan, const ResultsModel& model, const CleanupFacts& facts,
                                      FileSystem& files, const CancelFlag& cancel)
{
    Check check(model, files);
    std::vector<CleanupSkip> changed;
    for (const CleanupCommand& command : plan.commands) {
        if (cancel.cancelled())
            return Error{ErrorKind::cancelled, 0, {}};
        if (const auto why = check.obstacle(command))
            changed.push_back({command.item, *why});
    }
    leaveAlone(plan, changed, model, facts);
    return changed.size();
}

}  // namespace kelvane
