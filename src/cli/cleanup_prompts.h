// The console program's answers to what a clean-up asks: options, or a person at the terminal.
#pragma once

#include <functional>

#include "cleanup/cleanup_questions.h"
#include "cli/console.h"

namespace kelvane {

// Where nobody can be asked, or everything was answered ahead with --yes, each question gets the answer that leaves
// files alone; only the work as a whole begins then, since it was asked for by name. The console outlives it.
class ConsoleCleanupQuestions final : public CleanupQuestions {
public:
    struct Hooks {
        std::function<void()> beforeWriting;               // takes a progress line off the screen
        std::function<void(const CleanupPlan&)> planned;   // what the work will be
        std::function<void(const CleanupPlan&)> tellPlan;  // the same for a person who is about to be asked
    };
    ConsoleCleanupQuestions(const Console& console, bool answeredAhead, Hooks hooks);

    // Nothing is hidden here, and the verb's options chose what is done.
    bool includeHidden(std::u16string_view /*question*/) override { return true; }
    CleanupChoice choose(bool /*linksOffered*/) override { return CleanupChoice::nothing; }
    void saveResults() override {}

    // Both are in the report of the run, or show in the progress.
    void warn(std::u16string_view /*text*/) override {}
    void showStatus(std::u16string_view /*text*/) override {}
    Trashless withoutTrash(std::span<const TrashlessVolume> volumes) override;
    bool confirm(const CleanupSummary& summary) override;
    ExternalLink linkToExternal(std::u16string_view question) override;
    ElevationAnswer startElevated(std::u16string_view question) override;
    // Asked once: whoever goes on once is not asked at every further file.
    bool quitAfterProblem(std::u16string_view question) override;
    // Ctrl-C is the answer already.
    bool confirmStop(std::u16string_view /*question*/) override { return true; }
    // The sums are printed anyway.
    bool notify(std::u16string_view /*text*/) override { return false; }

    // The person said no before anything was done.
    [[nodiscard]] bool declined() const { return declined_; }

private:
    [[nodiscard]] bool canAsk() const { return console_.ask && !answeredAhead_; }
    [[nodiscard]] bool ask(const std::string& question) const;

    const Console& console_;
    bool answeredAhead_;
    Hooks hooks_;
    bool declined_ = false;
    bool wentOn_ = false;
};

// Whether an answer means yes, in the language in force or in English.
[[nodiscard]] bool meansYes(std::string_view answer);

// A line for each volume without a trash, with what of the plan lies there.
void tellTrashless(std::span<const TrashlessVolume> volumes, const Console& console);

}  // namespace kelvane
