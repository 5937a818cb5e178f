// What a clean-up asks and tells, as dialogs over its window.
#pragma once

#include <vector>

#include "cleanup/cleanup_questions.h"
#include "ui/clean/choice_dialog.h"
#include "ui/clean/progress_teller.h"

namespace kelvane {

class Workbench;

// On the thread of the window; for one run. Also watches the pass.
class CleanupDialogs final : public CleanupQuestions, public PassObserver {
public:
    explicit CleanupDialogs(Workbench& bench) : bench_(bench), progress_(bench) {}

    [[nodiscard]] bool includeHidden(std::u16string_view question) override;
    void warn(std::u16string_view text) override;
    [[nodiscard]] CleanupChoice choose(bool linksOffered) override;
    [[nodiscard]] LinkKind linkKind() override { return way_.links; }
    // Done when the job is over: saving is a job of its own.
    void saveResults() override { wantsSave_ = true; }
    [[nodiscard]] Trashless withoutTrash(std::span<const TrashlessVolume> volumes) override;
    // Says yes only while the marks are those that the plan was made of.
    [[nodiscard]] bool confirm(const CleanupSummary& summary) override;
    [[nodiscard]] ExternalLink linkToExternal(std::u16string_view question) override;
    [[nodiscard]] ElevationAnswer startElevated(std::u16string_view question) override;
    [[nodiscard]] bool quitAfterProblem(std::u16string_view question) override;
    [[nodiscard]] bool confirmStop(std::u16string_view question) override;
    void showStatus(std::u16string_view text) override;
    [[nodiscard]] bool notify(std::u16string_view text) override;

    void groupBegins(ItemId /*original*/) override {}
    void itemEnded(const ItemOutcome& outcome) override;
    void progress(std::uint64_t items, std::uint64_t bytes) override;

    [[nodiscard]] bool wantsSave() const { return wantsSave_; }
    // The work is over, or never began.
    void endProgress() { progress_.end(); }

private:
    [[nodiscard]] bool askSummary(const std::string& html);
    [[nodiscard]] bool marksStand(const CleanupPlan& plan);
    void beginProgress(const CleanupPlan& plan);

    Workbench& bench_;
    ProgressTeller progress_;
    CleanupWay way_;
    bool wantsSave_ = false;
    bool bytesCount_ = false;      // for how long it takes
    std::vector<ItemId> planned_;  // by the number of the command
    std::size_t ended_ = 0;        // the command that ended last
};

}  // namespace kelvane
