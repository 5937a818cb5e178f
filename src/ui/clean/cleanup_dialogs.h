// What a clean-up asks and tells, as dialogs over its window.
#pragma once

#include <functional>
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
    void itemBegins(std::size_t command) override;
    void itemEnded(const ItemOutcome& outcome) override;
    void progress(std::uint64_t items, std::uint64_t bytes) override;

    // Tells of the looks at marked files that planning takes. Once the person cancels nothing is looked at any more,
    // and confirm() says no.
    void watchLooks(CleanupFacts& facts);
    // Progress for so many items without a plan.
    void expect(std::uint64_t items);

    [[nodiscard]] bool wantsSave() const { return wantsSave_; }
    // Whether a pass was to begin.
    [[nodiscard]] bool isConfirmed() const { return confirmed_; }
    // The work is over, or never began.
    void endProgress() { progress_.end(); }

private:
    [[nodiscard]] bool askSummary(const std::string& html);
    [[nodiscard]] bool marksStand(const CleanupPlan& plan);
    void beginProgress(const CleanupPlan& plan);

    Workbench& bench_;
    ProgressTeller progress_;
    CleanupWay way_;
    template <class Answer, class... Items>
    std::function<Answer(Items...)> watched(std::function<Answer(Items...)> ask);
    [[nodiscard]] QString nameOf(std::size_t command) const;

    bool wantsSave_ = false;
    bool confirmed_ = false;
    bool bytesCount_ = false;  // for how long it takes
    struct Planned {
        ItemId item{};
        std::uint64_t bytes = 0;
    };
    std::vector<Planned> planned_;  // by the number of the command
    std::size_t current_ = 0;       // the command that is worked on
    std::size_t begun_ = 0;         // commands before this one were begun
    std::uint64_t bytesBegun_ = 0;  // of these
    std::uint64_t ended_ = 0;       // items
};

}  // namespace kelvane
