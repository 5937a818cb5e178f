#include "ui/preview/why_matched.h"

#include "app/error_text.h"
#include "app/similar_search.h"
#include "app/stage_texts.h"
#include "base/desktop_texts/file_properties.h"
#include "base/desktop_texts/preview.h"
#include "base/filled_text.h"
#include "platform/native_text.h"
#include "ui/core/property_titles.h"
#include "ui/core/shown_values.h"
#include "ui/core/text.h"

namespace kelvane {
namespace {

namespace say = desktop_text;

struct Comparing {
    const ScanCriteria& criteria;
    SimilarContent& similar;
    PreviewTools& tools;
};

// What the console has for programs, for a person.
std::vector<std::string> cellsOf(const StageReport& stage, bool approximate, const PropertyCatalogue& catalogue)
{
    enum Column { name = 1, one, other, difference, allowed };
    std::vector<std::string> cells = stageCells(stage, approximate);
    if (const PropRef property = catalogue.byName(stage.name)) {
        cells[name] = propertyTitle(property).toStdString();
        cells[one] = shownValue(property, stage.textA).toStdString();
        cells[other] = shownValue(property, stage.textB).toStdString();
    } else {
        cells[name] = filledText(stage.name == "type" ? say::propertyType : say::propertyContents);
    }
    for (const Column number : {difference, allowed})
        cells[number] = shownNumber(toQt(cells[number])).toStdString();
    return cells;
}

// Nothing where a file cannot be read: then the line says why.
std::optional<PairComparison> compareWith(const Ref<const ShellItem>& other, const Ref<const ShellItem>& file,
                                          const Comparing& by, WhyMatched& why)
{
    for (const auto& item : {other, file}) {
        if (const auto there = by.tools.platform.shell().details(*item); !there) {
            why.lines.push_back(bytesFromNative(item->fullName()) + ": " + errorText(there.error()));
            return std::nullopt;
        }
    }
    std::array<Candidate, 2> pair{Candidate(file), Candidate(other)};
    auto compared =
        comparePair(pair, by.criteria, by.tools.access.source, by.similar, by.tools.platform, by.tools.cancel);
    why.other = bytesFromNative(other->fullName());
    why.rows.clear();
    for (const StageReport& stage : compared.stages)
        why.rows.push_back(cellsOf(stage, compared.result.approximate, by.tools.access.catalogue));
    return compared;
}

void addLines(const PairComparison& compared, WhyMatched& why)
{
    for (const StageReport& stage : compared.stages)
        for (std::string& line : lookLines(stage))
            why.lines.push_back(std::move(line));
    why.lines.insert(why.lines.end(), compared.complaints.begin(), compared.complaints.end());
    why.lines.push_back(conclusionText(compared));
    if (compared.sameFile)
        why.lines.push_back(filledText(TextId::bothNamesOneFile));
}

}  // namespace

WhyMatched whyMatched(const PreviewedFile& file, PreviewTools& tools)
{
    WhyMatched why;
    if (file.approximate)
        why.lines.push_back(filledText(say::previewWhyApproximate));
    if (file.joinedByHand)
        why.lines.push_back(filledText(say::previewWhyByHand));
    if (!file.first || !file.definition) {
        why.lines.push_back(filledText(file.first ? say::previewWhyNothing : say::previewWhyAlone));
        return why;
    }
    const auto criteria = makeCriteria(*file.definition, file.options, tools.access.catalogue);
    if (!criteria) {
        why.lines.push_back(criteria.error().detail);
        return why;
    }
    SimilarSearch similar(tools.access, ProbeNumbers::perPair, 1, tools.platform);
    const Comparing by{*criteria, similar.content(), tools};
    auto compared = compareWith(file.first, file.file, by, why);
    if (compared && !compared->result.match() && file.before && !(file.before == file.first))
        compared = compareWith(file.before, file.file, by, why);
    if (compared)
        addLines(*compared, why);
    return why;
}

}  // namespace kelvane
