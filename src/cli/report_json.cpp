#include <array>
#include <ostream>
#include <utility>

#include "cli/report.h"
#include "cli/value_json.h"
#include "platform/native_text.h"

namespace kelvane {
namespace {

constexpr std::array<std::pair<std::uint32_t, const char*>, 7> definitionFlags = {{
    {scan_flag::contents, "content"},
    {scan_flag::sameType, "same-type"},
    {scan_flag::protect, "protect"},
    {scan_flag::skipLinks, "skip-links"},
    {scan_flag::ignoreSmall, "ignore-small"},
    {scan_flag::skipEmpty, "skip-empty"},
    {scan_flag::subfolders, "subfolders"},
}};

Json flagsJson(const ScanCriteria& criteria)
{
    Json words = Json::array();
    for (const auto& [bit, word] : definitionFlags) {
        if (criteria.has(bit))
            words.push_back(word);
    }
    if (criteria.options.has(option_flag::enterVirtualFolders))
        words.push_back("archives");
    return words;
}

Json rootsJson(const ScanReport& report)
{
    Json roots = Json::array();
    for (const auto& root : report.roots.roots) {
        Json entry;
        addPath(entry, root);
        roots.push_back(std::move(entry));
    }
    return roots;
}

Json definitionJson(const ScanOutcome& outcome)
{
    const ScanCriteria& criteria = outcome.criteria;
    Json properties = Json::array();
    for (const PropRef& property : criteria.properties)
        properties.push_back(property.info->name);
    return {{"roots", rootsJson(outcome.report)}, {"category", categoryWord(criteria.category())},
            {"masks", criteria.definition.masks}, {"properties", std::move(properties)},
            {"similarity", criteria.similarity},  {"minSize", criteria.sizes.smallest},
            {"flags", flagsJson(criteria)}};
}

Json statsJson(const ScanOutcome& outcome)
{
    const ScanReport& report = outcome.report;
    const std::uint64_t groups = outcome.results.groupCount();
    return {{"files", report.candidates},
            {"bytes", report.candidateBytes},
            {"groups", groups},
            {"duplicates", outcome.results.itemCount() - groups},
            {"seconds", report.seconds},
            {"phases",
             {{"gathering", report.walkSeconds},
              {"sorting", report.grouping.sortSeconds},
              {"comparing", report.grouping.compareSeconds}}},
            {"folders", report.walk.folders},
            {"filesSeen", report.walk.filesSeen},
            {"bytesRead", report.grouping.bytesRead},
            {"skipped", report.walk.skipped + report.grouping.skipped},
            {"offlineSkipped", report.walk.offlineSkipped},
            {"withoutValue", report.walk.withoutValue}};
}

Json groupJson(const GroupFacts& group)
{
    Json files = Json::array();
    for (const ShellItem* item : group.files) {
        const FileInfo& info = item->info();
        Json file;
        addPath(file, bytesFromNative(item->fullName()));
        file["size"] = info.size.bytes;
        file["modified"] = timeJson(info.modified);
        files.push_back(std::move(file));
    }
    return {{"id", group.number}, {"approximate", group.approximate}, {"files", std::move(files)}};
}

}  // namespace

// Group by group, one a line: a document of any length takes the memory of its largest group.
void writeJsonReport(const ScanOutcome& outcome, std::ostream& out)
{
    out << "{\"definition\": " << dump(definitionJson(outcome), Layout::oneLine)
        << ",\n\"stats\": " << dump(statsJson(outcome), Layout::oneLine) << ",\n\"groups\": [";
    bool first = true;
    forEachGroup(outcome.results, [&](const GroupFacts& group) {
        out << (std::exchange(first, false) ? "\n" : ",\n") << dump(groupJson(group), Layout::oneLine);
        return out.good();
    });
    out << (first ? "" : "\n") << "]}\n";
}

}  // namespace kelvane
