#include "cli/clean_outcome.h"

#include <algorithm>
#include <ostream>

#include "base/filled_text.h"
#include "base/size_text.h"
#include "cli/clean_lines.h"
#include "cli/printable.h"
#include "platform/native_text.h"

namespace kelvane {
namespace {

constexpr std::int32_t privilegeNotHeld = 1314;  // Windows alone has an error of this number

std::string_view nameOf(ItemResult result)
{
    switch (result) {
    case ItemResult::done:
        return "done";
    case ItemResult::failed:
        return "failed";
    case ItemResult::declined:
        return "declined";
    case ItemResult::newOriginal:
        return "newOriginal";
    case ItemResult::notReached:
        break;
    }
    return "notReached";
}

std::string reasonOf(const CleanupFailure& failure)
{
    const std::string text = textOf(failure);
    return failure.error.systemCode == privilegeNotHeld ? text + "; " + filledText(TextId::symbolicLinksNeedRight)
                                                        : text;
}

// The command as it was carried out.
CleanupCommand carriedOut(const CleanupPlan& plan, const ItemOutcome& item)
{
    CleanupCommand command = plan.commands[item.command];
    if (command.action == CleanupAction::link) {
        command.link = item.link;
        command.kept = item.kept;
    }
    return command;
}

std::uint64_t countOf(const CleanupReport& report, ItemResult result)
{
    return static_cast<std::uint64_t>(std::count_if(report.items.begin(), report.items.end(),
                                                    [&](const ItemOutcome& item) { return item.result == result; }));
}

std::uint64_t leftAlone(const CleanupReport& report)
{
    return report.plan.skipped.size() + countOf(report, ItemResult::declined) +
           countOf(report, ItemResult::newOriginal);
}

// The line of one file; empty for one that is only counted.
std::string lineOf(const CleanOutcome& outcome, const ItemOutcome& item, bool all)
{
    const CleanupCommand& command = outcome.report.plan.commands[item.command];
    switch (item.result) {
    case ItemResult::done:
        return all ? commandLine(outcome.results, carriedOut(outcome.report.plan, item)) : std::string{};
    case ItemResult::failed:
        return printable(filledText(TextId::itemFailed, {pathOf(outcome.results, command.item),
                                                         reasonOf(item.failure.value_or(CleanupFailure{}))}));
    case ItemResult::declined:
        return aloneLine(outcome.results, command.item, filledText(TextId::linkLeadsOutside));
    case ItemResult::newOriginal:
        return aloneLine(outcome.results, command.item, filledText(TextId::tookOverAsKept));
    case ItemResult::notReached:
        break;
    }
    return {};
}

Json itemJson(const CleanOutcome& outcome, const ItemOutcome& item)
{
    const CleanupCommand command = carriedOut(outcome.report.plan, item);
    Json line = pathJson(pathOf(outcome.results, command.item));
    line["result"] = nameOf(item.result);
    if (item.result == ItemResult::done && command.action == CleanupAction::link)
        line["link"] = nameOf(item.link);
    if (item.result == ItemResult::done)
        line["kept"] = pathJson(pathOf(outcome.results, command.kept));
    if (item.failure) {
        line["why"] = nameOf(item.failure->fault);
        line["message"] = reasonOf(*item.failure);
    }
    if (!item.trashed.empty())
        line["trashed"] = pathJson(bytesFromNative(item.trashed.native()));
    return line;
}

Json sumsJson(const CleanOutcome& outcome)
{
    const CleanupReport& report = outcome.report;
    const bool toTrash = report.plan.action == CleanupAction::recycle;
    return {{"files", outcome.preview.marked.items},
            {"bytes", outcome.preview.marked.bytes},
            {"protected", outcome.preview.protectedItems},
            {"done", countOf(report, ItemResult::done)},
            {"failed", countOf(report, ItemResult::failed)},
            {"declined", countOf(report, ItemResult::declined)},
            {"newOriginals", countOf(report, ItemResult::newOriginal)},
            {"notReached", countOf(report, ItemResult::notReached)},
            {"skipped", report.plan.skipped.size()},
            {"freed", toTrash ? 0 : report.pass.freed},
            {"comesFreeWithTrash", toTrash ? report.pass.freed : 0}};
}

TextId doneText(CleanupAction action)
{
    if (action == CleanupAction::link)
        return TextId::doneLinks;
    return action == CleanupAction::recycle ? TextId::doneToTrash : TextId::doneForGood;
}

void writeCount(std::uint64_t count, TextId text, std::ostream& out)
{
    if (count > 0)
        out << filledText(text, {countedFiles(count)}) << '\n';
}

bool hasLog(const CleanupReport& report)
{
    return !report.log.empty() && !report.logFailure;
}

}  // namespace

void writeOutcomeText(const CleanOutcome& outcome, bool all, std::ostream& out)
{
    for (const ItemOutcome& item : outcome.report.items) {
        if (const std::string line = lineOf(outcome, item, all); !line.empty())
            out << line << '\n';
    }
    for (const CleanupSkip& skip : outcome.report.plan.skipped)
        out << aloneLine(outcome.results, skip.item, filledText(textOf(skip.why))) << '\n';
}

void writeOutcomeSums(const CleanOutcome& outcome, std::ostream& out)
{
    const CleanupReport& report = outcome.report;
    const CleanupAction action = report.plan.action;
    const std::uint64_t done = countOf(report, ItemResult::done);
    if (outcome.preview.marked.items == 0)
        out << filledText(TextId::rulesMarkNothing) << '\n';
    else if (done > 0)
        out << filledText(doneText(action), {countedFiles(done), sizeText({report.pass.freed})}) << '\n';
    writeCount(countOf(report, ItemResult::failed), TextId::filesFailed, out);
    writeCount(leftAlone(report), TextId::planLeftAlone, out);
    writeCount(countOf(report, ItemResult::notReached), TextId::filesNotReached, out);
    if (const std::uint64_t stay = outcome.preview.protectedItems; stay > 0)
        out << countedText(stay, TextId::oneProtectedStays, TextId::manyProtectedStay) << '\n';
    if (report.run && done > 0)
        out << filledText(action == CleanupAction::deletePermanently ? TextId::forGoodStaysGone : TextId::undoTakesBack,
                          {std::to_string(static_cast<std::uint32_t>(*report.run))})
            << '\n';
    if (hasLog(report))
        out << printable(filledText(TextId::logIsHere, {bytesFromNative(report.log.native())})) << '\n';
}

void writeOutcomeJson(const CleanOutcome& outcome, std::ostream& out)
{
    const CleanupReport& report = outcome.report;
    const Json run = report.run ? Json(static_cast<std::uint32_t>(*report.run)) : Json();
    out << "{\"dryRun\": false,\n\"run\": " << dump(run, Layout::oneLine)
        << ",\n\"action\": " << dump(kelvane::nameOf(report.plan.action), Layout::oneLine)
        << ",\n\"cancelled\": " << (outcome.stopped ? "true" : "false")
        << ",\n\"sums\": " << dump(sumsJson(outcome), Layout::oneLine);
    if (hasLog(report))
        out << ",\n\"log\": " << dump(pathJson(bytesFromNative(report.log.native())), Layout::oneLine);
    writeJsonList("items", report.items, out, [&](const auto& item) { return itemJson(outcome, item); });
    writeJsonList("skipped", report.plan.skipped, out,
                  [&](const auto& skip) { return skipJson(outcome.results, skip); });
    out << "}\n";
}

ExitCode exitCodeOf(const CleanOutcome& outcome)
{
    const CleanupReport& report = outcome.report;
    if (outcome.stopped)
        return ExitCode::cancelled;
    const bool allDone = report.plan.skipped.empty() && !report.pass.journalError && !report.logFailure &&
                         countOf(report, ItemResult::done) == report.items.size();
    return allDone ? ExitCode::done : ExitCode::incomplete;
}

}  // namespace kelvane
