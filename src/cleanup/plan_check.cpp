#include "cleanup/plan_check.h"

#include <optional>
#include <utility>

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

Result<std::size_t> leaveChangedAlone(CleanupPlan& plan, const ResultsModel& model, const CleanupFacts& facts,
                                      FileSystem& files, const CancelFlag& cancel)
{
    Check check(model, files);
    std::vector<CleanupCommand> commands;
    std::vector<CleanupSkip> changed;
    for (CleanupCommand command : plan.commands) {
        if (cancel.cancelled())
            return Error{ErrorKind::cancelled, 0, {}};
        command.frees = 0;
        if (const auto why = check.obstacle(command))
            changed.push_back({command.item, *why});
        else
            commands.push_back(command);
    }
    if (changed.empty())
        return std::size_t{0};
    plan.commands = std::move(commands);
    plan.skipped.insert(plan.skipped.end(), changed.begin(), changed.end());
    plan.frees = countFreedBytes(model, facts, plan.commands);
    return changed.size();
}

}  // namespace kelvane
