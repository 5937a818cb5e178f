#include "engine/matcher.h"

#include <algorithm>
#include <utility>

#include "base/filled_text.h"
#include "base/utf.h"
#include "engine/compared_ranges.h"
#include "engine/property_stage.h"
#include "props/gestalt.h"
#include "props/value_convert.h"
#include "props/value_order.h"

namespace kelvane {
namespace {

// Tag searches may leave apart what one folder holds: the songs of one album have much in common.
constexpr std::string_view seriesProperty = "System.ItemFolderPathDisplay";

bool comparesContents(const ScanCriteria& criteria)
{
    return criteria.has(scan_flag::contents) && criteria.category() < Category::folders;
}

bool hasDescriptor(Category category)
{
    return category == Category::audio || category == Category::video || category == Category::documents ||
           category == Category::images;
}

bool isSeriesSearch(const ScanCriteria& criteria, const PropertyCatalogue& catalogue)
{
    const Category category = criteria.category();
    if (criteria.exact() || criteria.has(scan_flag::contents) || criteria.options.seriesProperties.empty())
        return false;
    if (category != Category::audio && category != Category::video)
        return false;
    return !criteria.options.has(option_flag::keepSameSeries) &&
           criteria.properties == catalogue.parseList(criteria.options.seriesProperties);
}

MatchResult partedAt(std::int32_t stage, bool endsWalk = false)
{
    return {stage, endsWalk, false};
}

std::u16string valueText(const PropertySource& properties, Candidate& file, const PropRef& property)
{
    const PropValue value = properties.value(file, property);
    if (value.kind == PropKind::text || value.missing())
        return std::u16string(value.text);
    return formatRaw(properties.cached(file, property).raw);
}

}  // namespace

Matcher::Matcher(const ScanCriteria& criteria, const PropertySource& properties, ShellNamespace& shell,
                 ContentComparer& contents, SimilarContent* similar)
    : criteria_(criteria),
      properties_(properties),
      shell_(shell),
      contents_(contents),
      similar_(similar),
      propertyCount_(criteria.onlyPrimary ? std::min<std::size_t>(criteria.properties.size(), 1)
                                          : criteria.properties.size()),
      keepsSeriesApart_(isSeriesSearch(criteria, properties.catalogue())),
      folderName_(properties.catalogue().byName(seriesProperty))
{
}

MatchResult Matcher::compare(Candidate& a, Candidate& b, std::optional<bool> keysEqual)
{
    if (keysPart(keysEqual))
        return partedAt(1, true);
    for (std::size_t i = startIndex(keysEqual); i < propertyCount_; ++i) {
        if (parted(i, a, b))
            return partedAt(static_cast<std::int32_t>(i) + 1, i == 0 && criteria_.primaryIsFirst);
    }
    if (criteria_.onlyPrimary)
        return {};
    return compareStages(a, b);
}

// Different classes part an exact search at once. Not so for dates: those of neighbouring classes may lie within the
// tolerance.
bool Matcher::keysPart(std::optional<bool> keysEqual) const
{
    return criteria_.primaryIsFirst && keysEqual == false && criteria_.exact() &&
           criteria_.primary.kind() != PropKind::date;
}

std::size_t Matcher::startIndex(std::optional<bool> keysEqual) const
{
    if (!criteria_.primaryIsFirst)
        return 0;
    const bool skipsPrimary = criteria_.similarContents() && criteria_.category() == Category::images &&
                              (criteria_.options.moreFlags & more_option_flag::imagesSkipPrimary) != 0;
    return keysEqual == true || skipsPrimary ? 1 : 0;
}

bool Matcher::parted(std::size_t index, Candidate& a, Candidate& b)
{
    const PropRef& property = criteria_.properties[index];
    const PropValue valueA = properties_.value(a, property);
    const PropValue valueB = properties_.value(b, property);
    bool equal = equalValues(valueA, valueB, criteria_.options.dateTolerance);
    std::optional<std::int32_t> percent;
    if (!criteria_.exact() && !valueA.missing() && !valueB.missing()) {
        percent = equal ? 0 : difference(property, a, b);
        equal = percent && *percent <= allowed(index);
    }
    if (report_ != nullptr)
        reportProperty(index, a, b, percent, equal);
    return !equal;
}

// In percent; nothing for values that have no measure of how far apart they are.
std::optional<std::int32_t> Matcher::difference(const PropRef& property, Candidate& a, Candidate& b) const
{
    const PropValue valueA = properties_.value(a, property);
    const PropValue valueB = properties_.value(b, property);
    if (valueA.kind != valueB.kind)
        return std::nullopt;
    switch (valueA.kind) {
    case PropKind::number:
        return numberDifference(valueA.number(), valueB.number());
    case PropKind::date:
        return dateDifference(valueA.number(), valueB.number(), criteria_.options.hoursPerPercent);
    case PropKind::real:
        return realDifference(valueA.real(), valueB.real());
    case PropKind::text:
        return 100 - textSimilarity(properties_.foldedText(a, property), properties_.foldedText(b, property));
    case PropKind::none:
        break;
    }
    return std::nullopt;
}

std::int32_t Matcher::allowed(std::size_t index) const
{
    const bool moreIsCompared = propertyCount_ > 1 || criteria_.has(scan_flag::contents);
    return 100 - requiredPercent(criteria_.similarity, index == 0, moreIsCompared);
}

MatchResult Matcher::compareStages(Candidate& a, Candidate& b)
{
    auto stage = static_cast<std::int32_t>(propertyCount_);
    if (criteria_.has(scan_flag::sameType)) {
        ++stage;
        if (!sameType(stage, a, b))
            return partedAt(stage);
    }
    MatchResult contents;
    if (comparesContents(criteria_)) {
        ++stage;
        contents = criteria_.exact() ? exactContents(stage, a, b) : similarContents(stage, a, b);
        if (!contents.match())
            return contents;
    }
    if (keepsSeriesApart_ && sameSeries(a, b))
        return partedAt(stage + 1);
    return contents;
}

bool Matcher::sameType(std::int32_t stage, const Candidate& a, const Candidate& b) const
{
    if (criteria_.category() >= Category::folders)
        return true;
    const std::u16string typeA = shell_.itemType(a.item());  // lower case; empty for none
    const std::u16string typeB = shell_.itemType(b.item());
    const bool same = typeA == typeB;
    if (report_ != nullptr)
        report_->push_back({stage, "type", {}, {}, typeA, typeB, {}, {}, {}, same});
    return same;
}

MatchResult Matcher::exactContents(std::int32_t stage, const Candidate& a, const Candidate& b)
{
    std::optional<ContentResult> known = oracle_ ? oracle_(a, b) : std::nullopt;
    const ContentResult result = known ? *known : contents_.compare(a.item(), b.item());
    if (result == ContentResult::cancelled)
        return partedAt(-1);
    const bool equal = result == ContentResult::equal;
    if (report_ != nullptr)
        report_->push_back({stage, "content", {}, {}, {}, {}, {}, {}, {}, equal});
    return {equal ? 0 : stage, false, comparedBySamples(a.item(), b.item(), criteria_.options)};
}

// A category without descriptors has nothing to compare here. Where the descriptors' order says that nothing later can
// match, the two parted at what they are sorted by: stage 1; so do pictures always, which stand in the order of what
// they look like, although that alone does not end the walk.
MatchResult Matcher::similarContents(std::int32_t stage, Candidate& a, Candidate& b)
{
    if (!hasDescriptor(criteria_.category()))
        return {};
    if (similar_ == nullptr || !similar_->supports(criteria_.category()))
        return partedAt(stage);
    const auto known = scoreOracle_ ? scoreOracle_() : std::nullopt;
    const CancelFlag& cancel = contents_.cancel();
    const ContentScore score = known ? *known : similar_->compare(criteria_, a, b, cancel);
    if (!known && cancel.cancelled())
        return {.stage = -1};
    const bool similar = score.comparable && score.score >= criteria_.similarity && !score.vetoed;
    const std::int32_t partedStage = score.endsWalk || criteria_.category() == Category::images ? 1 : stage;
    if (report_ != nullptr)
        reportScore(similar ? stage : partedStage, score, similar);
    return similar ? MatchResult{.score = score.score} : partedAt(partedStage, score.endsWalk);
}

// Sizes that are too different have a number of their own in place of a score.
void Matcher::reportScore(std::int32_t stage, const ContentScore& score, bool similar) const
{
    StageReport line;
    line.stage = stage;
    line.name = "content";
    line.equal = similar;
    line.allowed = 100.0 - criteria_.similarity;
    if (score.comparable || score.endsWalk)
        line.score = score.score;
    const auto measured = [](const ContentMeasure& measure) {
        return measure == ContentMeasure{} ? std::nullopt : std::optional(measure);
    };
    line.measureA = measured(score.a);
    line.measureB = measured(score.b);
    line.look = score.look;
    line.vetoed = score.vetoed;
    report_->push_back(std::move(line));
}

bool Matcher::sameSeries(Candidate& a, Candidate& b) const
{
    const TextFolding& folding = properties_.folding();
    const PropValue folderA = properties_.value(a, folderName_);
    const PropValue folderB = properties_.value(b, folderName_);
    return !folderA.missing() && folding.lower(folderA.text) == folding.lower(folderB.text);
}

void Matcher::reportProperty(std::size_t index, Candidate& a, Candidate& b, std::optional<std::int32_t> percent,
                             bool equal) const
{
    const PropRef& property = criteria_.properties[index];
    StageReport line;
    line.stage = static_cast<std::int32_t>(index) + 1;
    line.name = property ? std::string(property.info->name) : std::string();
    line.a = properties_.value(a, property);
    line.b = properties_.value(b, property);
    line.textA = valueText(properties_, a, property);
    line.textB = valueText(properties_, b, property);
    line.equal = equal;
    if (percent) {
        line.difference = *percent;
        line.allowed = allowed(index);
    }
    report_->push_back(std::move(line));
}

bool comparedBySamples(const ShellItem& a, const ShellItem& b, const EngineOptions& options)
{
    const bool plainFiles = a.inFileSystem() && b.inFileSystem();
    return isSampled(a.info().size, hugeLimit(options.hugeFile, plainFiles));
}

bool isDescribed(const ScanCriteria& criteria, const SimilarContent* similar)
{
    return similar != nullptr && criteria.similarContents() && similar->supports(criteria.category());
}

Status checkDescriptors(const ScanCriteria& criteria, const SimilarContent* similar)
{
    const Category category = criteria.category();
    if (!criteria.similarContents() || category >= Category::folders || isDescribed(criteria, similar))
        return {};
    const auto& categories = criteria.options.categories;
    const auto index = static_cast<std::size_t>(category);
    const std::string name = index < categories.size() ? toUtf8(categories[index].name) : "this category";
    return Error{ErrorKind::notSupported, 0, filledText(TextId::similarNotCompared, {name})};
}

}  // namespace kelvane
