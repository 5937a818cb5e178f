#include "ui/clean/clean_job.h"

#include <QAction>
#include <QApplication>
#include <mutex>

#include "app/cleanup_bookkeeping.h"
#include "app/cleanup_tools.h"
#include "base/desktop_texts/clean.h"
#include "base/utf.h"
#include "cleanup/pre_check.h"
#include "ui/clean/boxes.h"
#include "ui/clean/cleanup_dialogs.h"
#include "ui/clean/left_items.h"
#include "ui/clean/text_values.h"
#include "ui/core/shown_values.h"
#include "ui/core/text.h"
#include "ui/core/window_link.h"

namespace kelvane {
namespace {

void tell(Workbench& bench, const QString& text)
{
    bench.tell(fromQt(text));
}

// The answer about an administrator's process holds for all windows.
class SharedElevation {
public:
    SharedElevation(Desktop& desktop, CleanupMemory& memory) : desktop_(desktop), memory_(memory)
    {
        memory_.elevationDeclined = desktop_.elevationDeclined;
        memory_.elevationAccepted = desktop_.elevationAccepted;
    }
    ~SharedElevation()
    {
        desktop_.elevationDeclined = memory_.elevationDeclined;
        desktop_.elevationAccepted = memory_.elevationAccepted;
    }
    SharedElevation(const SharedElevation&) = delete;
    SharedElevation& operator=(const SharedElevation&) = delete;

private:
    Desktop& desktop_;
    CleanupMemory& memory_;
};

void note(Workbench& bench, const CScanNode& definition, const CleanupReport& report)
{
    CXApplication& application = bench.desktop().application();
    const std::lock_guard lock(application.sharedState());
    if (noteCleanup(application, definition, report) != SettingsCode::done)
        bench.tell(text(desktop_text::cleanupNotNoted));
}

void warn(Workbench& bench, const QString& text)
{
    bench.toMain([text](WindowLink& link) {
        openBox(link, {"cleanupTrouble", QMessageBox::Warning, shown(TextId::cleanupTitle), text});
    });
}

// The status line alone is easily missed after a page that was confirmed.
void tellTroubles(Workbench& bench, const CleanupReport& report, bool confirmed)
{
    if (report.refused && confirmed)
        warn(bench, shown(desktop_text::cleanupNotBegun, {report.refused->detail}));
    if (const auto& error = report.pass.journalError)
        warn(bench, shown(desktop_text::cleanupNoJournal, {textOf({CleanupFault::journal, *error})}));
    if (const auto& error = report.logFailure)
        warn(bench, shown(desktop_text::logNotWritten,
                          {pathShown(report.log).toStdString(), errorShown(*error).toStdString()}));
    if (report.refused && !report.ran && !report.plan.skipped.empty())
        tellLeft(bench, leftItems(report, bench.results()));
}

// The files that no clean-up is for: nobody knows what the list was searched by.
void cleanUpUnknown(Workbench& bench, CleanupDialogs& dialogs)
{
    const PreCheck check =
        preCheck(bench.results(), false, [&](std::u16string_view question) { return dialogs.includeHidden(question); });
    bench.tell(text(check.message().value_or(desktop_text::cleanNoDefinition)));
}

void saveLater(Workbench& bench)
{
    bench.toMain([](WindowLink& link) {
        if (auto* const save = link.frame()->findChild<QAction*>(QStringLiteral("list.save")))
            save->trigger();
    });
}

CleanupReport carryOut(Workbench& bench, const CScanNode& definition, CleanupMemory& memory, CleanupDialogs& dialogs)
{
    Desktop& desktop = bench.desktop();
    const SharedElevation elevation(desktop, memory);
    CleanupTools tools(desktop.platform(), &desktop.application().linkHelper());
    CleanupContext context =
        tools.context(bench.results(), definition, bench.session()->options, memory, dialogs, &dialogs);
    dialogs.watchLooks(context.facts);
    context.sizes = shownSizeText;
    context.done = [&bench, &definition](const CleanupReport& report) { note(bench, definition, report); };
    return cleanUp(context, cleanupOptionsFrom(desktop.settings()), bench.cancel());
}

}  // namespace

void cleanUpMarked(Workbench& bench, CleanupMemory& memory)
{
    auto running = bench.begin(Job::cleaning);
    if (!running)
        return bench.tell(text(desktop_text::otherWorkRuns));
    CleanupDialogs dialogs(bench);
    if (bench.session() == nullptr || !bench.session()->definition)
        return cleanUpUnknown(bench, dialogs);
    const CScanNode definition = *bench.session()->definition;
    const CleanupReport report = carryOut(bench, definition, memory, dialogs);
    dialogs.endProgress();
    if (report.noticesOff != 0)
        bench.desktop().change([&](Settings& settings) { settings.noticesOff |= report.noticesOff; });
    if (report.ran)
        tellLeft(bench, leftItems(report, bench.results()));
    tellTroubles(bench, report, dialogs.isConfirmed());
    running.reset();
    if (dialogs.wantsSave())
        saveLater(bench);
}

void deleteSelected(Workbench& bench, CleanupMemory& memory)
{
    const auto running = bench.begin(Job::cleaning);
    if (!running)
        return bench.tell(text(desktop_text::otherWorkRuns));
    CleanupDialogs dialogs(bench);
    const CScanNode unknown;
    const ListSession* const session = bench.session();
    if (session == nullptr)
        return;
    const CScanNode& definition = session->definition ? *session->definition : unknown;
    CleanupTools tools(bench.platform());
    const CleanupContext context =
        tools.context(bench.results(), definition, session->options, memory, dialogs, &dialogs);
    const bool expert = cleanupOptionsFrom(bench.desktop().settings()).expert;
    dialogs.expect(bench.results().inView(Mark::selected).items);
    const DirectDeletion deleted = directDelete(context, expert, bench.cancel());
    dialogs.endProgress();
    if (deleted.refused)
        return;
    if (deleted.removed > 0)
        tell(bench,
             toQt(countedText(deleted.removed, desktop_text::oneDeletedDirectly, desktop_text::manyDeletedDirectly)));
    if (!deleted.failed.empty()) {
        tell(bench, shown(desktop_text::deleteDirectlyFailed, {countedItems(deleted.failed.size()).toStdString()}));
        bench.toMain([](WindowLink&) { QApplication::beep(); });
        tellLeft(bench, leftItems(deleted, bench.results()), desktop_text::directDeleteStays);
    }
}

}  // namespace kelvane
