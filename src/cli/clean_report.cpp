#include "cli/clean_report.h"

#include <algorithm>
#include <array>
#include <ostream>

#include "base/filled_text.h"
#include "base/size_text.h"
#include "cli/clean_lines.h"
#include "cli/printable.h"
#include "platform/native_text.h"

namespace kelvane {
namespace {

TextId sumsOf(CleanupAction action)
{
    if (action == CleanupAction::link)
        return TextId::planSumsLink;
    return action == CleanupAction::recycle ? TextId::planSumsTrash : TextId::planSums;
}

// The commands of a group follow one another.
std::uint64_t groupsOf(const CleanupPlan& plan)
{
    std::uint64_t groups = 0;
    for (std::size_t at = 0; at < plan.commands.size(); ++at)
        groups += at == 0 || plan.commands[at].group != plan.commands[at - 1].group ? 1 : 0;
    return groups;
}

Json waysJson(std::uint8_t ways)
{
    Json words = Json::array();
    for (const auto& [bit, kind] : {std::pair{link_way::clone, LinkKind::clone},
                                    {link_way::hard, LinkKind::hard},
                                    {link_way::symbolic, LinkKind::symbolic}}) {
        if ((ways & bit) != 0)
            words.push_back(nameOf(kind));
    }
    return words;
}

struct Loss {
    std::uint8_t bit;
    std::string_view word;  // for programs
    TextId text;
};
constexpr std::array losses = {
    Loss{metadata_loss::owner, "owner", TextId::lossOwner},
    Loss{metadata_loss::permissions, "permissions", TextId::lossPermissions},
    Loss{metadata_loss::times, "times", TextId::lossTimes},
    Loss{metadata_loss::attributes, "attributes", TextId::lossAttributes},
};

Json lossesJson(std::uint8_t lost)
{
    Json words = Json::array();
    for (const Loss& loss : losses) {
        if ((lost & loss.bit) != 0)
            words.push_back(loss.word);
    }
    return words;
}

Json commandJson(const PlanReport& report, const CleanupCommand& command)
{
    Json line = pathJson(pathOf(report.results, command.item));
    line.update({{"action", nameOf(command.action)},
                 {"link", nameOf(command.link)},
                 {"ways", waysJson(command.ways)},
                 {"group", command.group},
                 {"approximate", command.approximate},
                 {"joinedByHand", command.joinedByHand},
                 {"sameFile", command.sameFile},
                 {"size", command.bytes},
                 {"frees", command.frees},
                 {"loses", lossesJson(command.loses)},
                 {"kept", pathJson(pathOf(report.results, command.kept))}});
    return line;
}

Json sumsJson(const PlanReport& report)
{
    return {{"files", report.preview.marked.items},
            {"bytes", report.preview.marked.bytes},
            {"groups", report.preview.groups},
            {"groupsLost", report.preview.groupsLost},
            {"protected", report.preview.protectedItems},
            {"commands", report.plan.commands.size()},
            {"skipped", report.plan.skipped.size()},
            {"frees", report.plan.frees},
            {"canBeUndone", report.plan.canBeUndone()}};
}

Json volumeJson(const TrashlessVolume& volume)
{
    Json entry = pathJson(bytesFromNative(volume.place.native()));
    entry.update({{"why", volume.reason}, {"files", volume.items}, {"bytes", volume.bytes}});
    return entry;
}

template <class Wanted>
std::uint64_t countCommands(const CleanupPlan& plan, Wanted wanted)
{
    return static_cast<std::uint64_t>(std::count_if(plan.commands.begin(), plan.commands.end(), wanted));
}

void writeComparisons(const CleanupPlan& plan, bool compareInFull, std::ostream& out)
{
    if (!compareInFull) {
        out << filledText(TextId::nothingCompared) << '\n';
        return;
    }
    const auto approximate = countCommands(plan, [](const auto& command) { return command.approximate; });
    if (approximate > 0)
        out << countedText(approximate, TextId::oneToCompare, TextId::manyToCompare) << '\n';
    const auto byHand = countCommands(plan, [](const auto& command) { return command.joinedByHand; });
    if (byHand > 0)
        out << countedText(byHand, TextId::oneJoinedByHand, TextId::manyJoinedByHand) << '\n';
}

void writeLosses(const CleanupPlan& plan, std::ostream& out)
{
    std::string words;
    for (const Loss& loss : losses) {
        const auto count = countCommands(plan, [&](const auto& command) { return (command.loses & loss.bit) != 0; });
        if (count > 0)
            words += (words.empty() ? "" : ", ") + filledText(loss.text, {std::to_string(count)});
    }
    if (!words.empty())
        out << filledText(TextId::linksWouldLose, {words}) << '\n';
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

}  // namespace

void writePlanText(const PlanReport& report, std::ostream& out)
{
    for (const CleanupCommand& command : report.plan.commands)
        out << commandLine(report.results, command) << (command.approximate ? filledText(TextId::groupApproximate) : "")
            << '\n';
    for (const CleanupSkip& skip : report.plan.skipped)
        out << aloneLine(report.results, skip.item, filledText(textOf(skip.why))) << '\n';
}

void writePlanSums(const PlanReport& report, std::ostream& out)
{
    const MarkingPreview& preview = report.preview;
    const CleanupPlan& plan = report.plan;
    if (preview.marked.items == 0)
        out << filledText(TextId::rulesMarkNothing) << '\n';
    if (!plan.commands.empty())
        out << filledText(sumsOf(plan.action),
                          {countedFiles(plan.commands.size()),
                           countedText(groupsOf(plan), TextId::oneGroup, TextId::manyGroups), sizeText({plan.frees})})
            << '\n';
    if (!plan.skipped.empty())
        out << filledText(TextId::planLeftAlone, {countedFiles(plan.skipped.size())}) << '\n';
    if (preview.protectedItems > 0)
        out << countedText(preview.protectedItems, TextId::oneProtectedStays, TextId::manyProtectedStay) << '\n';
    writeLosses(plan, out);
    if (!plan.commands.empty())
        writeComparisons(plan, report.compareInFull, out);
}

void writePlanJson(const PlanReport& report, std::ostream& out)
{
    out << "{\"dryRun\": true,\n\"action\": " << dump(nameOf(report.plan.action), Layout::oneLine)
        << ",\n\"sums\": " << dump(sumsJson(report), Layout::oneLine);
    writeJsonList("commands", report.plan.commands, out,
                  [&](const auto& command) { return commandJson(report, command); });
    writeJsonList("skipped", report.plan.skipped, out,
                  [&](const auto& skip) { return skipJson(report.results, skip); });
    writeJsonList("withoutTrash", report.withoutTrash, out, volumeJson);
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
