#include <CLI/CLI.hpp>
#include <algorithm>

#include "app/cleanup_tools.h"
#include "base/filled_text.h"
#include "cli/arguments.h"
#include "cli/clean_watch.h"
#include "cli/problems.h"
#include "cli/settled_runs.h"
#include "cli/undo_options.h"
#include "cli/undo_report.h"
#include "cli/verbs.h"
#include "platform/native_text.h"

namespace kelvane {
namespace {

constexpr std::string_view undoExamples = "  kelvane-cli undo\n"
                                          "  kelvane-cli undo --list\n"
                                          "  kelvane-cli undo 3 --dry-run\n"
                                          "  kelvane-cli undo --item ~/Pictures/cover.jpg\n";

std::string numberText(RunNumber number)
{
    return std::to_string(static_cast<std::uint32_t>(number));
}

class UndoCommand {
public:
    UndoCommand(const UndoRequest& request, Platform& platform, const Console& console)
        : request_(request),
          platform_(platform),
          console_(console),
          tools_(platform),
          journals_(tools_.journals()),
          items_(request.items, platform.paths())
    {
    }

    ExitCode list()
    {
        const auto numbers = journals_.list();
        if (!numbers)
            return notReadable(numbers.error());
        std::vector<RunFigures> runs;
        ExitCode code = ExitCode::done;
        for (const RunNumber number : *numbers) {
            const auto run = journals_.read(number);
            if (run && (!request_.run || *request_.run == number))
                runs.push_back(figuresOf(*run));
            else if (!run)
                code = notReadable(number, run.error());
        }
        if (request_.run && runs.empty())
            return unknown(*request_.run);
        (request_.format == OutputFormat::json ? writeRunsJson : writeRunsText)(runs, console_.out);
        return code;
    }

    ExitCode run()
    {
        ExitCode code = ExitCode::done;
        const auto number = request_.run ? request_.run : latest(code);
        if (code != ExitCode::done)
            return code;
        report_.run = number.value_or(RunNumber{});
        report_.dryRun = request_.dryRun;
        if (!number) {
            print();
            return nothing();
        }
        code = request_.dryRun ? foresee() : takeBack();
        return code == ExitCode::usage ? code : conclude(code);
    }

private:
    // The latest run of which anything can be taken back, of the chosen items where there are any.
    std::optional<RunNumber> latest(ExitCode& code)
    {
        const auto numbers = journals_.list();
        if (!numbers) {
            code = notReadable(numbers.error());
            return std::nullopt;
        }
        for (auto number = numbers->rbegin(); number != numbers->rend(); ++number) {
            const auto run = journals_.read(*number);
            if (!run)
                (void)notReadable(*number, run.error());
            else if (std::any_of(run->entries.begin(), run->entries.end(),
                                 [&](const JournalEntry& entry) { return canComeBack(entry) && isChosen(entry); }))
                return *number;
        }
        return std::nullopt;
    }

    bool isChosen(const JournalEntry& entry) { return items_.holds(entry.intent.item); }

    ExitCode foresee()
    {
        const auto run = journals_.read(report_.run);
        if (!run)
            return notOpened(run.error());
        tellDamage(*run);
        const PassPorts ports = tools_.ports();
        for (auto entry = run->entries.rbegin(); entry != run->entries.rend(); ++entry) {
            if (console_.cancel.cancelled()) {
                report_.outcome.cancelled = true;
                break;
            }
            if (entry->state == EntryState::done && isChosen(*entry))
                foresee(*entry, ports);
        }
        return ExitCode::done;
    }

    void foresee(const JournalEntry& entry, const PassPorts& ports)
    {
        auto obstacle = undoObstacle(entry, ports);
        (obstacle ? report_.outcome.failed : report_.outcome.restored) += 1;
        if (!obstacle && entry.intent.itemWas.kind == FileKind::regular)
            report_.outcome.bytes += entry.intent.itemWas.size.bytes;
        report_.items.push_back(
            {EntryNumber{}, entry.intent.item, entry.intent.action, entry.link, std::move(obstacle), {}});
    }

    // What the journal has lost cannot come back, and nothing else would say so.
    void tellDamage(const JournalRun& run)
    {
        damaged_ = run.damaged;
        if (damaged_)
            complain(console_, filledText(TextId::settledDamaged, {numberText(run.number)}));
    }

    ExitCode takeBack()
    {
        auto opened = journals_.reopen(report_.run);
        if (!opened)
            return notOpened(opened.error());
        tellDamage(opened->run);
        const auto filter = [&](const JournalEntry& entry) { return isChosen(entry); };
        CleanWatch watch(console_, platform_.clock(), request_.progress);
        watch.begin(workIn(opened->run));
        std::uint64_t bytes = 0;
        const auto told = [&](const UndoneItem& item) {
            bytes += sizeOf(opened->run.entries[static_cast<std::size_t>(item.entry)]);
            report_.items.push_back(item);
            watch.progress(report_.items.size(), bytes);
        };
        report_.outcome = undoRun(*opened, tools_.ports(), filter, told, console_.cancel);
        watch.erase();
        if (!report_.outcome.journalError)
            return ExitCode::done;
        complain(console_, filledText(TextId::undoJournalFailed, {errorText(*report_.outcome.journalError)}));
        return ExitCode::incomplete;
    }

    // What comes out of the trash is moved, which takes the same for any size.
    static std::uint64_t sizeOf(const JournalEntry& entry)
    {
        return entry.intent.action == CleanupAction::link ? entry.intent.itemWas.size.bytes : 0;
    }

    ProgressFigures workIn(const JournalRun& run)
    {
        ProgressFigures figures{filledText(TextId::takingBack), 0, 0, 0, 0, false};
        for (const JournalEntry& entry : run.entries) {
            if (entry.state != EntryState::done || !isChosen(entry))
                continue;
            figures.totalItems += 1;
            figures.totalBytes += sizeOf(entry);
        }
        return figures;
    }

    ExitCode conclude(ExitCode code)
    {
        print();
        for (const std::string& typed : items_.missed()) {
            complain(console_, filledText(TextId::undoNotInRun, {typed}));
            code = ExitCode::incomplete;
        }
        const auto fell = [](const UndoneItem& item) { return item.failure || item.metadataNotKept; };
        if (damaged_ || std::any_of(report_.items.begin(), report_.items.end(), fell))
            code = ExitCode::incomplete;
        if (report_.outcome.cancelled)
            return stopCancelled(console_);
        return report_.items.empty() && code == ExitCode::done ? nothing() : code;
    }

    void print() const
    {
        if (request_.format == OutputFormat::json)
            return writeUndoJson(report_, console_.out);
        writeUndoText(report_, console_.out);
        console_.out.flush();
        if (!report_.items.empty())
            writeUndoSums(report_, console_.err);
    }

    ExitCode nothing() const
    {
        for (const std::string& typed : items_.missed())
            complain(console_, filledText(TextId::undoNotInRun, {typed}));
        if (request_.items.empty())
            complain(console_, filledText(TextId::nothingToUndo));
        return ExitCode::incomplete;
    }

    ExitCode notOpened(const Error& error) const
    {
        if (error.kind == ErrorKind::notFound)
            return unknown(report_.run);
        if (error.kind != ErrorKind::tooManyOpen)
            return notReadable(report_.run, error);
        complain(console_, filledText(TextId::undoRunBusy, {numberText(report_.run)}));
        return ExitCode::incomplete;
    }

    ExitCode unknown(RunNumber number) const
    {
        return refuse(console_, filledText(TextId::unknownRun, {numberText(number)}));
    }

    ExitCode notReadable(const Error& error) const
    {
        complain(console_, bytesFromNative(journals_.folder().native()) + ": " + errorText(error));
        return ExitCode::incomplete;
    }

    ExitCode notReadable(RunNumber number, const Error& error) const
    {
        complain(console_,
                 bytesFromNative(journals_.folder().native()) + ", " + numberText(number) + ": " + errorText(error));
        return ExitCode::incomplete;
    }

    const UndoRequest& request_;
    Platform& platform_;
    const Console& console_;
    CleanupTools tools_;
    Journals& journals_;
    ItemChoice items_;
    UndoReport report_;
    bool damaged_ = false;
};

}  // namespace

ExitCode undoVerb(const Arguments& arguments, Platform& platform, const Console& console)
{
    CLI::App app(filledText(TextId::undoAbout), "undo");
    app.footer(footerText({TextId::undoNotes, undoExamples, {}}));
    RawUndo raw;
    addUndoOptions(app, raw);
    if (const auto over = parseArguments(app, "[RUN]", arguments, console))
        return *over;
    const auto request = makeUndoRequest(raw);
    if (!request)
        return refuse(console, request.error().detail);
    // A list and a dry run change nothing, and so do not even settle.
    if (!request->list && !request->dryRun)
        settleRuns(platform, console);
    UndoCommand command(*request, platform, console);
    return request->list ? command.list() : command.run();
}

}  // namespace kelvane
