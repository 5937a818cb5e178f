#include "cli/clean_run.h"

#include <ostream>

#include "app/cleanup_bookkeeping.h"
#include "app/cleanup_tools.h"
#include "base/filled_text.h"
#include "cli/clean_outcome.h"
#include "cli/clean_report.h"
#include "cli/clean_watch.h"
#include "cli/cleanup_prompts.h"
#include "cli/problems.h"
#include "cli/settings_in_force.h"
#include "cli/settled_runs.h"
#include "platform/native_text.h"

namespace kelvane {
namespace {

CleanupOptions optionsFor(const CleanRequest& request, const Settings& settings)
{
    CleanupOptions options = cleanupOptionsFrom(settings);
    options.writeLog = options.writeLog || !request.log.empty();
    options.logFile = request.log;
    options.compareInFull = request.compareInFull;
    options.quietSummary = false;  // the sums are printed in any case
    return options;
}

bool wasStopped(const CleanupReport& report, const ConsoleCleanupQuestions& questions, const Console& console)
{
    const bool byItself = report.pass.engineFailed || report.pass.journalError.has_value();
    return questions.declined() || console.cancel.cancelled() ||
           (report.pass.cancel != CancelState::running && !byItself);
}

// Where every file is left alone their reasons say more than the refusal of the whole.
bool nothingToTell(const CleanupReport& report)
{
    return report.refused && (report.plan.skipped.empty() || !report.plan.commands.empty());
}

// Why there was no work at all.
ExitCode tellRefusal(const Error& refused, const Console& console)
{
    complain(console, errorText(refused));
    const bool asked = refused.kind == ErrorKind::invalid || refused.kind == ErrorKind::notSupported;
    return asked ? ExitCode::usage : ExitCode::incomplete;
}

void tellFailures(const CleanupReport& report, const Console& console)
{
    if (const auto& error = report.pass.journalError)
        complain(console, filledText(TextId::faultJournal) + ": " + errorText(*error));
    if (const auto& error = report.logFailure)
        complain(console, bytesFromNative(report.log.native()) + ": " + errorText(*error));
}

ExitCode print(const CleanOutcome& outcome, const CleanRequest& request, const Console& console)
{
    if (request.format == OutputFormat::json) {
        writeOutcomeJson(outcome, console.out);
    } else {
        writeOutcomeText(outcome, request.verbose, console.out);
        console.out.flush();
        writeOutcomeSums(outcome, console.err);
    }
    tellFailures(outcome.report, console);
    if (outcome.stopped)
        return stopCancelled(console);
    return exitCodeOf(outcome);
}

// The run itself, watched and asked about on the console.
CleanupReport run(const MarkedScan& marked, const CleanRequest& request, const Settings& settings, Platform& platform,
                  const Console& console, bool& stopped)
{
    SavedScan& scan = marked.scan;
    CleanWatch watch(console, platform.clock(), request.progress);
    const auto tellPlan = [&](const CleanupPlan& plan) {
        writePlanSums({scan.results, marked.preview, plan, {}, request.compareInFull}, console.err);
    };
    ConsoleCleanupQuestions questions(
        console, request.yes, {[&] { watch.erase(); }, [&](const CleanupPlan& plan) { watch.begin(plan); }, tellPlan});
    CleanupTools tools(platform);
    CleanupMemory memory;
    CleanupReport report =
        runCleanup(tools.context(scan.results, *scan.definition, marked.options, memory, questions, &watch),
                   request.action, optionsFor(request, settings), console.cancel);
    watch.erase();
    stopped = wasStopped(report, questions, console);
    return report;
}

}  // namespace

ExitCode carryOut(const MarkedScan& marked, const CleanRequest& request, CRegistryAccess& settings, Platform& platform,
                  const Console& console)
{
    if (request.action.action == CleanupAction::deletePermanently && !request.yes && !console.ask)
        return refuse(console, filledText(TextId::permanentNeedsYes));
    settleRuns(platform, console);
    if (console.cancel.cancelled())
        return stopCancelled(console);
    bool stopped = false;
    CleanupReport report;
    report.plan.action = request.action.action;
    if (marked.preview.marked.items > 0)
        report = run(marked, request, settings.settings(), platform, console, stopped);
    if (nothingToTell(report))
        return tellRefusal(*report.refused, console);
    if (stopped && !report.ran)
        return stopCancelled(console);
    const SettingsCode noted = noteCleanup(settings, *marked.scan.definition, report);
    const ExitCode code = print({marked.scan.results, marked.preview, report, stopped}, request, console);
    return noted == SettingsCode::done ? code : std::max(code, complainNotWritten(settings, noted, console));
}

}  // namespace kelvane
