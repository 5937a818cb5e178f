#include "engine/criteria.h"

#include <algorithm>
#include <charconv>

#include "base/filled_text.h"
#include "base/words.h"

namespace kelvane {
namespace {

constexpr std::string_view itemTypeNames[] = {"System.ItemType", "System.ItemTypeText"};

std::string unknownNamesMessage(const std::vector<std::string>& unknown, const PropertyCatalogue& catalogue)
{
    std::string message;
    for (const auto& name : unknown) {
        message += (message.empty() ? "" : "; ") + filledText(TextId::unknownProperty, {name});
        std::string offer;
        for (const auto& near : nearestWords(name, catalogue.names()))
            offer += (offer.empty() ? "" : ", ") + near;
        if (!offer.empty())
            message += ' ' + filledText(TextId::didYouMean, {offer});
    }
    return message;
}

// Digits only: no sign, no spaces, nothing that does not fit.
bool parseBytes(std::string_view text, std::uint64_t& bytes)
{
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), bytes);
    return error == std::errc{} && end == text.data() + text.size();
}

Result<SizeRange> parseSizeRange(std::string_view text)
{
    SizeRange range;
    if (text.empty())
        return range;
    const auto dash = text.find('-');
    const bool complete = dash != std::string_view::npos && parseBytes(text.substr(0, dash), range.smallest) &&
                          (dash + 1 == text.size() || parseBytes(text.substr(dash + 1), range.largest));
    if (!complete)
        return invalid(filledText(TextId::sizeRangeMalformed, {text}));
    if (range.smallest > range.largest)
        return invalid(filledText(TextId::sizeRangeBackwards, {text}));
    return range;
}

// Files of one type are told apart by the type rule; the property would only repeat it as a stage of its own.
void dropItemType(std::vector<PropRef>& properties)
{
    const auto isItemType = [](const PropRef& property) {
        return std::find(std::begin(itemTypeNames), std::end(itemTypeNames), property.info->name) !=
               std::end(itemTypeNames);
    };
    // At least one property stays, so that a list of nothing but types still says what to compare.
    for (auto at = properties.begin(); at != properties.end() && properties.size() > 1;)
        at = isItemType(*at) ? properties.erase(at) : at + 1;
}

Status addSize(std::vector<PropRef>& properties, const PropertyCatalogue& catalogue)
{
    const auto isSize = [](const PropRef& property) { return property.identifier == property_id::size; };
    if (std::any_of(properties.begin(), properties.end(), isSize))
        return {};
    const PropRef size = catalogue.byName("System.Size");
    if (!size)
        return Error{ErrorKind::notSupported, 0, "the property catalogue has no System.Size"};
    properties.push_back(size);
    return {};
}

// The property by whose order similar contents of a category come to stand next to one another.
PropRef categoryPrimary(Category category, const PropertyCatalogue& catalogue)
{
    switch (category) {
    case Category::audio:
    case Category::video:
        return catalogue.byName("System.Media.Duration");
    case Category::documents:
        return catalogue.stock(StockProperty::simDocDescriptor);
    case Category::images:
        return catalogue.stock(StockProperty::thumbnail);
    default:
        return {};
    }
}

// Every candidate must have a value for the primary property. A fuzzy search by properties alone therefore sorts by
// what was asked for: with the category's own property as primary, a search for music by year would silently leave
// out each file without a duration. Only where the first listed property cannot be compared does the category decide.
PropRef choosePrimary(const ScanCriteria& criteria, const PropertyCatalogue& catalogue)
{
    const PropRef first = criteria.properties.empty() ? PropRef{} : criteria.properties.front();
    if (criteria.exact() || (!criteria.similarContents() && first.kind() != PropKind::none))
        return first;
    const PropRef byCategory = categoryPrimary(criteria.category(), catalogue);
    return byCategory ? byCategory : first;
}

bool opensFiles(const ScanCriteria& criteria)
{
    const auto opens = [](const PropRef& property) { return !property.has(property_flag::fromFileRecord); };
    return criteria.has(scan_flag::contents) || opens(criteria.primary) ||
           std::any_of(criteria.properties.begin(), criteria.properties.end(), opens);
}

Status fillProperties(ScanCriteria& criteria, const PropertyCatalogue& catalogue)
{
    std::vector<std::string> unknown;
    criteria.properties = catalogue.parseList(criteria.definition.properties, &unknown);
    if (!unknown.empty())
        return invalid(unknownNamesMessage(unknown, catalogue));
    if (criteria.has(scan_flag::sameType))
        dropItemType(criteria.properties);
    if (criteria.exactContents()) {
        if (auto added = addSize(criteria.properties, catalogue); !added)
            return added;
    }
    criteria.primary = choosePrimary(criteria, catalogue);
    if (!criteria.primary)
        return invalid(filledText(TextId::nothingIsCompared));
    criteria.primaryIsFirst = !criteria.properties.empty() && criteria.primary == criteria.properties.front();
    return {};
}

Status fillLimits(ScanCriteria& criteria)
{
    auto sizes = parseSizeRange(criteria.definition.sizeRange);
    if (!sizes)
        return sizes.error();
    criteria.sizes = *sizes;
    if (criteria.has(scan_flag::skipEmpty))
        criteria.sizes.smallest = std::max<std::uint64_t>(criteria.sizes.smallest, 1);
    criteria.similarity = criteria.definition.effectiveSimilarity();
    if (criteria.similarity < 1 || criteria.similarity > 100)
        return invalid(filledText(TextId::similarityRange));
    return {};
}

}  // namespace

std::string masksInForce(const CScanNode& definition, const EngineOptions& options)
{
    // A single character is what an emptied mask field is left with ("*", a comma), not a choice of files.
    if (definition.masks.size() > 1)
        return definition.masks;
    const auto index = static_cast<std::size_t>(definition.category());
    const auto custom = static_cast<std::size_t>(Category::custom);
    if (index > custom)
        return {};
    const std::string masks = index < options.categories.size() ? options.categories[index].masks : std::string{};
    if (index == custom)
        return masks.size() > 1 ? masks : std::string{};
    return masks.empty() ? defaultCategories()[index].masks : masks;
}

Result<ScanCriteria> makeCriteria(const CScanNode& definition, const EngineOptions& options,
                                  const PropertyCatalogue& catalogue)
{
    ScanCriteria criteria;
    criteria.definition = definition;
    criteria.options = options;
    if (auto filled = fillProperties(criteria, catalogue); !filled)
        return filled.error();
    if (auto filled = fillLimits(criteria); !filled)
        return filled.error();
    criteria.masks = FileMasks(masksInForce(definition, options));
    criteria.skipOffline = opensFiles(criteria);
    return criteria;
}

}  // namespace kelvane
