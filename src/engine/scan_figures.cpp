#include "engine/scan_figures.h"

#include <bit>
#include <cmath>
#include <optional>
#include <utility>

#include "base/byte_stream.h"

namespace kelvane {
namespace {

constexpr std::u16string_view nodeName = u"scanFigures";

struct CountField {
    std::uint16_t tag;
    std::uint64_t ScanFigures::*member;
};
struct SecondsField {
    std::uint16_t tag;
    double ScanFigures::*member;
};

// Ascending. Tags are never given another meaning, only new ones added.
constexpr CountField countFields[] = {
    {1, &ScanFigures::candidates},     {2, &ScanFigures::candidateBytes}, {3, &ScanFigures::folders},
    {4, &ScanFigures::filesSeen},      {5, &ScanFigures::bytesRead},      {6, &ScanFigures::skipped},
    {7, &ScanFigures::offlineSkipped}, {8, &ScanFigures::withoutValue},
};
constexpr SecondsField secondsFields[] = {
    {9, &ScanFigures::seconds},
    {10, &ScanFigures::walkSeconds},
    {11, &ScanFigures::sortSeconds},
    {12, &ScanFigures::compareSeconds},
};
constexpr std::uint16_t figureFlagsTag = 13;
constexpr std::uint16_t rootsTag = 14;
constexpr CountField comparisonsField = {15, &ScanFigures::comparisons};
constexpr std::uint32_t archivesFlag = 1;

template <std::unsigned_integral Number>
NodeField numberField(std::uint16_t tag, Number value)
{
    ByteWriter writer;
    writer.number(value);
    return {tag, writer.take()};
}

template <std::unsigned_integral Number>
std::optional<Number> numberOf(const NodeField& field)
{
    ByteReader reader(field.bytes);
    const auto number = reader.number<Number>();
    return reader.atEnd() ? number : std::nullopt;
}

NodeField rootsField(const std::vector<std::string>& roots)
{
    ByteWriter writer;
    for (const std::string& root : roots) {
        writer.number(static_cast<std::uint32_t>(root.size()));
        writer.text(root);
    }
    return {rootsTag, writer.take()};
}

bool readRoots(const NodeField& field, std::vector<std::string>& roots)
{
    ByteReader reader(field.bytes);
    while (!reader.atEnd()) {
        const auto length = reader.number<std::uint32_t>();
        const auto bytes = length ? reader.bytes(*length) : std::nullopt;
        if (!bytes)
            return false;
        roots.emplace_back(reinterpret_cast<const char*>(bytes->data()), bytes->size());
    }
    return true;
}

bool readCount(const NodeField& field, std::uint64_t& count)
{
    const auto value = numberOf<std::uint64_t>(field);
    count = value.value_or(0);
    return value.has_value();
}

bool readSeconds(const NodeField& field, double& seconds)
{
    seconds = std::bit_cast<double>(numberOf<std::uint64_t>(field).value_or(UINT64_MAX));
    return std::isfinite(seconds) && seconds >= 0;
}

bool readFlags(const NodeField& field, ScanFigures& figures)
{
    const auto flags = numberOf<std::uint32_t>(field);
    figures.archives = (flags.value_or(0) & archivesFlag) != 0;
    return flags.has_value();
}

bool readField(const NodeField& field, ScanFigures& figures)
{
    for (const CountField& count : countFields) {
        if (count.tag == field.tag)
            return readCount(field, figures.*count.member);
    }
    if (field.tag == comparisonsField.tag)
        return readCount(field, figures.comparisons);
    for (const SecondsField& seconds : secondsFields) {
        if (seconds.tag == field.tag)
            return readSeconds(field, figures.*seconds.member);
    }
    if (field.tag == figureFlagsTag)
        return readFlags(field, figures);
    return field.tag != rootsTag || readRoots(field, figures.roots);
}

}  // namespace

ScanFigures figuresOf(const ScanReport& report, const EngineOptions& options)
{
    ScanFigures figures;
    figures.candidates = report.candidates;
    figures.candidateBytes = report.candidateBytes;
    figures.folders = report.walk.folders;
    figures.filesSeen = report.walk.filesSeen;
    figures.bytesRead = report.grouping.bytesRead;
    figures.skipped = report.walk.skipped + report.grouping.skipped;
    figures.offlineSkipped = report.walk.offlineSkipped;
    figures.withoutValue = report.walk.withoutValue;
    for (const auto& [reason, files] : report.walk.undescribed)
        figures.withoutValue += files;
    figures.seconds = report.seconds;
    figures.walkSeconds = report.walkSeconds;
    figures.sortSeconds = report.grouping.sortSeconds;
    figures.compareSeconds = report.grouping.compareSeconds;
    figures.archives = options.has(option_flag::enterVirtualFolders);
    figures.roots = report.roots.roots;
    figures.comparisons = report.grouping.comparisons;
    return figures;
}

StoredNode storedNode(const ScanFigures& figures)
{
    StoredNode node{static_cast<std::uint16_t>(NodeKind::named), std::u16string(nodeName), {}, {}};
    for (const CountField& field : countFields)
        node.fields.push_back(numberField(field.tag, figures.*field.member));
    for (const SecondsField& field : secondsFields)
        node.fields.push_back(numberField(field.tag, std::bit_cast<std::uint64_t>(figures.*field.member)));
    node.fields.push_back(numberField(figureFlagsTag, figures.archives ? archivesFlag : 0));
    node.fields.push_back(rootsField(figures.roots));
    node.fields.push_back(numberField(comparisonsField.tag, figures.comparisons));
    return node;
}

Result<ScanFigures> scanFiguresOf(const StoredNode& node)
{
    if (node.kind != static_cast<std::uint16_t>(NodeKind::named) || node.name != nodeName)
        return Error{ErrorKind::wrongType, 0, "a stored node that holds no figures"};
    ScanFigures figures;
    for (const NodeField& field : node.fields) {
        if (!readField(field, figures))
            return Error{ErrorKind::invalid, 0, "a field of the scan's figures is damaged"};
    }
    return figures;
}

}  // namespace kelvane
