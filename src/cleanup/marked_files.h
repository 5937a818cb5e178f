// Which files a plan takes away, so that none of them is relied on as the one that stays.
#pragma once

#include <string>
#include <unordered_set>
#include <vector>

#include "cleanup/cleanup_plan.h"
#include "engine/known_files.h"

namespace kelvane {

class MarkedFiles {
public:
    MarkedFiles(const CleanupPlan& plan, const ResultsModel& model, const PathRules& paths);

    // The row is to go, or its file is under another name. A name that goes while the plan keeps another name of the
    // same file takes nothing away.
    [[nodiscard]] bool isMarked(ItemId id) const;
    [[nodiscard]] bool hasFolders() const { return !folders_.empty(); }
    [[nodiscard]] bool isMarkedFolder(FileIdentity folder) const { return folders_.contains(folder); }

    // The item stays after all.
    void keep(ItemId id);

private:
    const ResultsModel& model_;
    const PathRules& paths_;
    std::vector<bool> rows_;
    std::unordered_set<FileIdentity, FileIdentityHash> files_, folders_;
    std::unordered_set<std::string> withoutIdentity_;
};

}  // namespace kelvane
