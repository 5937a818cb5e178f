#include "cli/clean_report.h"

#include <algorithm>
#include <ostream>
#include <utility>

#include "base/filled_text.h"
#include "base/size_text.h"
#include "cli/printable.h"
#include "cli/value_json.h"
#include "platform/native_text.h"

namespace kelvane {
namespace {

std::string pathOf(const ResultsModel& results, ItemId id)
{
    return bytesFromNative(results.item(id).file.item().fullName());
}

TextId lineOf(const CleanupCommand& command)
{
    if (command.action == CleanupAction::recycle)
        return TextId::planTrash;
    if (command.action == CleanupAction::deletePermanently)
        return TextId::planDelete;
    switch (command.link) {
    case LinkKind::hard:
        return TextId::planHardLink;
    case LinkKind::symbolic:
        return TextId::planSymbolicLink;
    case LinkKind::clone:
        return TextId::planClone;
    default:
        return TextId::planLink;
    }
}

TextId sumsOf(CleanupAction action)
{
    if (action == CleanupAction::link)
        return TextId::planSumsLink;
    return action == CleanupAction::recycle ? TextId::planSumsTrash : TextId::planSums;
}

std::string countedFiles(std::uint64_t count)
{
    return countedText(count, TextId::oneFile, TextId::manyFiles);
}

// The commands of a group follow one another.
std::uint64_t groupsOf(const CleanupPlan& plan)
{
    std::uint64_t groups = 0;
    for (std::size_t at = 0; at < plan.commands.size(); ++at)
        groups += at == 0 || plan.commands[at].group != plan.commands[at - 1].group ? 1 : 0;
    return groups;
}

Json commandJson(const DryRun& run, const CleanupCommand& command)
{
    Json kept;
    addPath(kept, pathOf(run.results, command.kept));
    Json line;
    addPath(line, pathOf(run.results, command.item));
    line.update({{"action", nameOf(command.action)},
                 {"link", nameOf(command.link)},
                 {"group", command.group},
                 {"approximate", command.approximate},
                 {"sameFile", command.sameFile},
                 {"size", command.bytes},
                 {"frees", command.frees},
                 {"kept", std::move(kept)}});
    return line;
}

Json skipJson(const DryRun& run, CleanupSkip skip)
{
    Json line;
    addPath(line, pathOf(run.results, skip.item));
    line["why"] = nameOf(skip.why);
    return line;
}

Json sumsJson(const DryRun& run)
{
    return {{"files", run.preview.marked.items},
            {"bytes", run.preview.marked.bytes},
            {"groups", run.preview.groups},
            {"groupsLost", run.preview.groupsLost},
            {"protected", run.preview.protectedItems},
            {"commands", run.plan.commands.size()},
            {"skipped", run.plan.skipped.size()},
            {"frees", run.plan.frees},
            {"canBeUndone", run.plan.canBeUndone()}};
}

template <class Visit>
void forEachLostGroup(const ResultsModel& results, Visit visit)
{
    results.forEachRun([&](std::span<const ItemId> run) {
        if (std::all_of(run.begin(), run.end(), [&](ItemId id) { return results.isMarked(id); }))
            visit(run);
        return true;
    });
}

template <class List, class Line>
void writeList(const char* name, const List& list, std::ostream& out, Line line)
{
    out << ",\n\"" << name << "\": [";
    bool first = true;
    for (const auto& entry : list)
        out << (std::exchange(first, false) ? "\n" : ",\n") << dump(line(entry), Layout::oneLine);
    out << (first ? "]" : "\n]");
}

}  // namespace

void writePlanText(const DryRun& run, std::ostream& out)
{
    for (const CleanupCommand& command : run.plan.commands) {
        const std::string line =
            filledText(lineOf(command), {pathOf(run.results, command.item), pathOf(run.results, command.kept),
                                         sizeText({command.frees})});
        out << printable(line) << (command.approximate ? filledText(TextId::groupApproximate) : "") << '\n';
    }
    for (const CleanupSkip& skip : run.plan.skipped)
        out << printable(
                   filledText(TextId::planSkipped, {pathOf(run.results, skip.item), filledText(textOf(skip.why))}))
            << '\n';
}

void writePlanSums(const DryRun& run, std::ostream& out)
{
    const MarkingPreview& preview = run.preview;
    if (!run.plan.commands.empty())
        out << '\n';
    if (preview.marked.items == 0)
        out << filledText(TextId::rulesMarkNothing) << '\n';
    if (!run.plan.commands.empty())
        out << filledText(sumsOf(run.plan.action),
                          {countedFiles(run.plan.commands.size()),
                           countedText(groupsOf(run.plan), TextId::oneGroup, TextId::manyGroups),
                           sizeText({run.plan.frees})})
            << '\n';
    if (!run.plan.skipped.empty())
        out << filledText(TextId::planLeftAlone, {countedFiles(run.plan.skipped.size())}) << '\n';
    if (preview.protectedItems > 0)
        out << countedText(preview.protectedItems, TextId::oneProtectedStays, TextId::manyProtectedStay) << '\n';
    const auto approximate =
        static_cast<std::uint64_t>(std::count_if(run.plan.commands.begin(), run.plan.commands.end(),
                                                 [](const CleanupCommand& command) { return command.approximate; }));
    if (approximate > 0)
        out << countedText(approximate, TextId::oneToCompare, TextId::manyToCompare) << '\n';
    out << filledText(TextId::wasDryRun) << '\n';
}

void writePlanJson(const DryRun& run, std::ostream& out)
{
    out << "{\"dryRun\": true,\n\"action\": " << dump(nameOf(run.plan.action), Layout::oneLine)
        << ",\n\"sums\": " << dump(sumsJson(run), Layout::oneLine);
    writeList("commands", run.plan.commands, out, [&](const auto& command) { return commandJson(run, command); });
    writeList("skipped", run.plan.skipped, out, [&](const auto& skip) { return skipJson(run, skip); });
    out << "}\n";
}

void writeLostGroupsJson(const ResultsModel& results, std::ostream& out)
{
    Json groups = Json::array();
    forEachLostGroup(results, [&](std::span<const ItemId> run) {
        Json files = Json::array();
        for (const ItemId id : run)
            addPath(files.emplace_back(), pathOf(results, id));
        groups.push_back({{"id", results.groupOf(run.front()).number}, {"files", std::move(files)}});
    });
    out << dump({{"groupsLost", std::move(groups)}}, Layout::indented) << '\n';
}

void writeLostGroups(const ResultsModel& results, std::ostream& out)
{
    forEachLostGroup(results, [&](std::span<const ItemId> run) {
        out << '\n' << filledText(TextId::lostGroup, {std::to_string(results.groupOf(run.front()).number)}) << '\n';
        for (const ItemId id : run)
            out << printable(pathOf(results, id)) << '\n';
    });
}

}  // namespace kelvane
