#include "cli/undo_report.h"

#include <ostream>
#include <utility>

#include "base/filled_text.h"
#include "base/size_text.h"
#include "cli/printable.h"
#include "cli/problems.h"
#include "cli/value_json.h"
#include "platform/native_text.h"

namespace kelvane {
namespace {

std::uint32_t plain(RunNumber number)
{
    return static_cast<std::uint32_t>(number);
}

std::string pathText(const UndoneItem& item)
{
    return bytesFromNative(item.item.native());
}

std::string lineOf(const UndoneItem& item, bool dryRun)
{
    if (item.failure)
        return filledText(TextId::planSkipped, {pathText(item), textOf(*item.failure)});
    if (item.metadataNotKept)
        return filledText(TextId::undoRestoredPartly, {pathText(item), errorText(*item.metadataNotKept)});
    return filledText(dryRun ? TextId::undoWouldRestore : TextId::undoRestored, {pathText(item)});
}

Json itemJson(const UndoneItem& item)
{
    Json line;
    addPath(line, pathText(item));
    line.update({{"action", nameOf(item.action)}, {"link", nameOf(item.link)}, {"restored", !item.failure}});
    if (item.failure)
        line.update({{"why", nameOf(item.failure->fault)}, {"message", textOf(*item.failure)}});
    if (item.metadataNotKept)
        line["metadataNotKept"] = errorText(*item.metadataNotKept);
    return line;
}

TextId textOf(CleanupAction action)
{
    if (action == CleanupAction::link)
        return TextId::undoRunLink;
    return action == CleanupAction::recycle ? TextId::undoRunTrash : TextId::undoRunDelete;
}

Json runJson(const RunFigures& run)
{
    return {{"run", plain(run.number)}, {"when", timeJson(run.started)}, {"action", nameOf(run.action)},
            {"items", run.done},        {"undone", run.undone},          {"undecided", run.undecided},
            {"damaged", run.damaged}};
}

template <class List, class Line>
void writeList(const List& list, std::ostream& out, Line line)
{
    out << '[';
    bool first = true;
    for (const auto& entry : list)
        out << (std::exchange(first, false) ? "\n" : ",\n") << dump(line(entry), Layout::oneLine);
    out << (first ? "]" : "\n]");
}

}  // namespace

void writeUndoText(const UndoReport& report, std::ostream& out)
{
    for (const UndoneItem& item : report.items)
        out << printable(lineOf(item, report.dryRun)) << '\n';
}

void writeUndoSums(const UndoReport& report, std::ostream& out)
{
    if (report.dryRun) {
        out << filledText(TextId::wasDryRun) << '\n';
        return;
    }
    out << filledText(TextId::undoSums, {std::to_string(plain(report.run)), countedFiles(report.outcome.restored),
                                         sizeText({report.outcome.bytes})})
        << '\n';
    if (report.outcome.failed > 0)
        out << filledText(TextId::planLeftAlone, {countedFiles(report.outcome.failed)}) << '\n';
}

void writeUndoJson(const UndoReport& report, std::ostream& out)
{
    const Json run = plain(report.run) != 0 ? Json(plain(report.run)) : Json(nullptr);
    out << "{\"run\": " << dump(run, Layout::oneLine) << ",\n\"dryRun\": " << (report.dryRun ? "true" : "false")
        << ",\n\"restored\": " << report.outcome.restored << ",\n\"failed\": " << report.outcome.failed
        << ",\n\"bytes\": " << report.outcome.bytes << ",\n\"items\": ";
    writeList(report.items, out, itemJson);
    out << "}\n";
}

void writeRunsText(const std::vector<RunFigures>& runs, std::ostream& out)
{
    for (const RunFigures& run : runs) {
        out << filledText(TextId::undoRunLine,
                          {std::to_string(plain(run.number)), toIso8601(run.started), filledText(textOf(run.action)),
                           countedFiles(run.done), std::to_string(run.undone)});
        if (run.undecided > 0)
            out << filledText(TextId::undoRunUndecided, {std::to_string(run.undecided)});
        out << '\n';
        if (run.damaged)
            out << filledText(TextId::settledDamaged, {std::to_string(plain(run.number))}) << '\n';
    }
}

void writeRunsJson(const std::vector<RunFigures>& runs, std::ostream& out)
{
    out << "{\"runs\": ";
    writeList(runs, out, runJson);
    out << "}\n";
}

}  // namespace kelvane
