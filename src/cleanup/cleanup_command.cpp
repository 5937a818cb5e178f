// The command as a whole, and which pass carries a plan out.
#include "base/filled_text.h"
#include "base/utf.h"
#include "cleanup/cleanup_run.h"
#include "cleanup/delete_pass.h"
#include "cleanup/link_pass.h"
#include "cleanup/pre_check.h"

namespace kelvane {
namespace {

CleanupReport refusal(const PreCheck& check, CleanupQuestions& questions)
{
    CleanupReport report;
    const std::optional<TextId> message = check.message();
    if (!message)
        return report;
    if (check.outcome == PreCheckOutcome::groupsWhollyMarked)
        questions.warn(text(*message));
    else
        questions.showStatus(text(*message));
    report.refused = Error{ErrorKind::invalid, 0, filledText(*message)};
    return report;
}

}  // namespace

CleanupReport runCleanup(const CleanupContext& context, const CleanupRequest& request, const CleanupOptions& options,
                         const CancelFlag& cancel)
{
    PassOptions passOptions;
    passOptions.compareInFull = options.compareInFull;
    // A file may have been altered without its size or time showing it.
    passOptions.compareBeforeLoss =
        context.definition.has(scan_flag::contents) && !context.definition.has(scan_flag::fuzzy);
    passOptions.offerElevation = options.offerElevation;
    const PassRunner pass = [&](const CleanupPlan& plan, CleanupQuestions& questions, JournalWriter& journal,
                                PassObserver& observer) {
        if (plan.action == CleanupAction::link)
            return runLinkPass(plan, context.results, context.ports, passOptions, context.memory, questions, journal,
                               observer, cancel);
        return runDeletePass(plan, context.results, context.ports, passOptions, questions, journal, observer, cancel);
    };
    return runCleanupBy(pass, context, request, options, cancel);
}

CleanupReport cleanUp(const CleanupContext& context, const CleanupOptions& options, const CancelFlag& cancel)
{
    CleanupQuestions& questions = context.questions;
    const PreCheck check = preCheck(context.results, true,
                                    [&](std::u16string_view question) { return questions.includeHidden(question); });
    if (check.outcome != PreCheckOutcome::ready)
        return refusal(check, questions);
    CleanupRequest request{CleanupAction::recycle, LinkKind::none, options.noHardLinks, options.noSymbolicLinks};
    switch (questions.choose(options.expert)) {
    case CleanupChoice::createLinks:
        request.action = CleanupAction::link;
        request.link = questions.linkKind();
        [[fallthrough]];
    case CleanupChoice::deleteItems:
        return runCleanup(context, request, options, cancel);
    case CleanupChoice::saveResults:
        questions.saveResults();
        [[fallthrough]];
    case CleanupChoice::nothing:
        break;
    }
    return {};
}

}  // namespace kelvane
