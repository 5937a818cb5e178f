// What a clean-up asks and tells a person: windows in the desktop program, options and prompts in the console program,
// prepared answers in tests.
#pragma once

#include <cstdint>
#include <filesystem>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "cleanup/cleanup_plan.h"

namespace kelvane {

enum class CleanupChoice : std::uint8_t { nothing, deleteItems, saveResults, createLinks };

enum class ExternalLink : std::uint8_t { yes, no, cancel };

struct ElevationAnswer {
    bool start = false;
    bool doNotAskAgain = false;
};

// Items whose volume has no trash.
struct TrashlessVolume {
    std::filesystem::path place;  // where the volume is mounted, as far as that can be seen from its first item
    std::string reason;           // the system's, in UTF-8
    std::uint64_t items = 0;
    std::uint64_t bytes = 0;
    std::vector<ItemId> rows;  // the items, in the order of the list
};

enum class Trashless : std::uint8_t { leaveAlone, deleteForGood, stop };

// The page before anything happens.
struct CleanupSummary {
    const CleanupPlan& plan;
    std::string html;  // in UTF-8: the report template, filled in
};

// On the clean-up's thread; each may wait for the person. Texts are in the language in force.
class CleanupQuestions {
public:
    virtual ~CleanupQuestions() = default;

    [[nodiscard]] virtual bool includeHidden(std::u16string_view question) = 0;
    // A warning that stops the command: groups that would lose every copy.
    virtual void warn(std::u16string_view text) = 0;
    [[nodiscard]] virtual CleanupChoice choose(bool linksOffered) = 0;
    // Of which kind, after "Create links".
    [[nodiscard]] virtual LinkKind linkKind() { return LinkKind::automatic; }
    // "Save results".
    virtual void saveResults() = 0;
    // Before anything happens. `deleteForGood` only when the person asked for it by name.
    [[nodiscard]] virtual Trashless withoutTrash(std::span<const TrashlessVolume> volumes) = 0;
    [[nodiscard]] virtual bool confirm(const CleanupSummary& summary) = 0;

    // While it runs.
    [[nodiscard]] virtual ExternalLink linkToExternal(std::u16string_view question) = 0;
    [[nodiscard]] virtual ElevationAnswer startElevated(std::u16string_view question) = 0;
    // After a link failed: true ends the run.
    [[nodiscard]] virtual bool quitAfterProblem(std::u16string_view question) = 0;
    // After a request to cancel: true ends the run. With false the cancel flag is to be reset by who answers.
    [[nodiscard]] virtual bool confirmStop(std::u16string_view question) = 0;

    // A short text for the status line.
    virtual void showStatus(std::u16string_view text) = 0;
    // A text with a tick "do not show again": true when it was ticked.
    [[nodiscard]] virtual bool notify(std::u16string_view text) = 0;
};

}  // namespace kelvane
