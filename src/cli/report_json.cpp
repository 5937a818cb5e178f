#include <array>
#include <ostream>
#include <utility>

#include "cli/listed_value.h"
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

Json rootsJson(const std::vector<std::string>& list)
{
    Json roots = Json::array();
    for (const auto& root : list) {
        Json entry;
        addPath(entry, root);
        roots.push_back(std::move(entry));
    }
    return roots;
}

Json definitionJson(const Listing& listing)
{
    if (listing.criteria == nullptr)
        return nullptr;
    const ScanCriteria& criteria = *listing.criteria;
    Json properties = Json::array();
    for (const PropRef& property : criteria.properties)
        properties.push_back(property.info->name);
    return {{"roots", rootsJson(listing.roots)},  {"category", categoryWord(criteria.category())},
            {"masks", criteria.definition.masks}, {"properties", std::move(properties)},
            {"similarity", criteria.similarity},  {"minSize", criteria.sizes.smallest},
            {"flags", flagsJson(criteria)}};
}

Json statsJson(const Listing& listing)
{
    const ScanFigures& figures = listing.figures;
    const ListedCounts counts = countListed(listing.results);
    return {
        {"files", figures.candidates},
        {"bytes", figures.candidateBytes},
        {"groups", counts.groups},
        {"duplicates", counts.duplicates()},
        {"seconds", figures.seconds},
        {"phases",
         {{"gathering", figures.walkSeconds}, {"sorting", figures.sortSeconds}, {"comparing", figures.compareSeconds}}},
        {"folders", figures.folders},
        {"filesSeen", figures.filesSeen},
        {"bytesRead", figures.bytesRead},
        {"skipped", figures.skipped},
        {"offlineSkipped", figures.offlineSkipped},
        {"withoutValue", figures.withoutValue},
        {"comparisons", figures.comparisons}};
}

Json valuesJson(const Listing& listing, ItemId id)
{
    Json values = Json::object();
    for (const PropRef& column : listing.shape.columns)
        values[std::string(column.info->name)] = listedValue(listing, id, column);
    return values;
}

Json fileJson(const Listing& listing, ItemId id)
{
    const ShellItem& item = listing.file(id);
    Json file;
    addPath(file, bytesFromNative(item.fullName()));
    file["size"] = item.info().size.bytes;
    file["modified"] = timeJson(item.info().modified);
    if (const auto score = listing.score(id))
        file["score"] = *score;
    if (listing.marksNew())
        file["new"] = listing.isNew(id);
    if (!listing.shape.columns.empty())
        file["properties"] = valuesJson(listing, id);
    return file;
}

Json groupJson(const Listing& listing, const GroupFacts& group)
{
    if (listing.shape.flat) {
        Json file = {{"group", group.number}, {"approximate", group.approximate}};
        file.update(fileJson(listing, group.files.front()));
        return file;
    }
    Json files = Json::array();
    for (const ItemId id : group.files)
        files.push_back(fileJson(listing, id));
    return {{"id", group.number}, {"approximate", group.approximate}, {"files", std::move(files)}};
}

void writeGroups(const Listing& listing, std::ostream& out)
{
    out << ",\n" << (listing.shape.flat ? "\"files\"" : "\"groups\"") << ": [";
    bool first = true;
    forEachGroup(listing, [&](const GroupFacts& group) {
        out << (std::exchange(first, false) ? "\n" : ",\n") << dump(groupJson(listing, group), Layout::oneLine);
        return out.good();
    });
    out << (first ? "]" : "\n]");
}

}  // namespace

// Group by group, one a line: a document of any length takes the memory of its largest group.
void writeJsonReport(const Listing& listing, std::ostream& out)
{
    out << "{\"definition\": " << dump(definitionJson(listing), Layout::oneLine)
        << ",\n\"stats\": " << dump(statsJson(listing), Layout::oneLine);
    if (!listing.shape.summaryOnly)
        writeGroups(listing, out);
    out << "}\n";
}

}  // namespace kelvane
