#include "props/property_source.h"

#include <bit>

#include "props/comment_reader.h"
#include "props/file_readers.h"
#include "props/record_values.h"
#include "props/value_convert.h"

namespace kelvane {
namespace {

PropValue valueOf(const PROPCACHE& node)
{
    return {node.kind, node.value, node.text};
}

}  // namespace

double PropValue::real() const
{
    return std::bit_cast<double>(bits);
}

PropertySource::PropertySource(const PropertyCatalogue& catalogue, ShellNamespace& shell, PropertyReaders& readers,
                               const TextFolding& folding, KindMasks kinds)
    : catalogue_(catalogue),
      shell_(shell),
      readers_(readers),
      folding_(folding),
      kinds_(std::move(kinds)),
      substitutes_(catalogue),
      latitudeRef_(catalogue.byName("System.GPS.LatitudeRef")),
      longitudeRef_(catalogue.byName("System.GPS.LongitudeRef"))
{
}

PropValue PropertySource::value(ItemContext& file, const PropRef& property) const
{
    if (!property)
        return {};
    if (const auto number = recordNumber(file, property))
        return {property.kind(), number->comparable(), {}};
    return valueOf(cached(file, property));
}

PROPCACHE& PropertySource::cached(ItemContext& file, const PropRef& property) const
{
    if (PROPCACHE* known = file.find(property.identifier, property.kind())) {
        if (known->pending())
            fill(file, property, *known);
        return *known;
    }
    auto node = std::make_unique<PROPCACHE>();
    fill(file, property, *node);
    return file.push(std::move(node));
}

void PropertySource::prefill(ItemContext& file, const PropRef& property) const
{
    if (!property || property.has(property_flag::fromFileRecord))
        return;
    if (property.identifier == property_id::fileCount && !file.item().isFolder())
        return;
    if (file.find(property.identifier, property.kind()) != nullptr)
        return;
    auto node = std::make_unique<PROPCACHE>();
    convertValue(*node, property, {});
    node->raw.data = std::uint64_t{PROPCACHE::pendingMark};
    file.push(std::move(node));
}

std::u16string_view PropertySource::foldedText(ItemContext& file, const PropRef& property) const
{
    PROPCACHE& node = cached(file, property);
    if (node.kind != PropKind::text || node.missing())
        return {};
    if (!node.folded)
        node.folded = foldText(node.text, folding_);
    return *node.folded;
}

void PropertySource::groupChanged(ItemContext& file) const
{
    const PropRef group = catalogue_.stock(StockProperty::groupId);
    if (PROPCACHE* node = file.find(group.identifier, group.kind()))
        fill(file, group, *node);
}

// The pending mark goes with the first attempt, whatever comes of it.
void PropertySource::fill(ItemContext& file, const PropRef& property, PROPCACHE& node) const
{
    convertValue(node, property, property.kind() != PropKind::none ? readRaw(file, property) : RawValue{});
    applyHemisphere(file, node);
}

RawValue PropertySource::readRaw(ItemContext& file, const PropRef& property) const
{
    if (property.has(property_flag::combined))
        return combinedList(file, property);
    RawValue own = readOwn(file, property);
    return own.empty() ? substitute(file, property) : own;
}

RawValue PropertySource::readOwn(ItemContext& file, const PropRef& property) const
{
    if (const auto number = recordNumber(file, property))
        return number->raw();
    const ShellItem& item = file.item();
    if (const unsigned index = catalogue_.stockIndex(property)) {
        auto value = readStock(shell_, kinds_, item, static_cast<StockProperty>(index - 1));
        return value ? *std::move(value) : readers_.read(*property.info, item);
    }
    if (auto value = readFileProperty(shell_, item, property))
        return *std::move(value);
    if (property.identifier == property_id::comment)
        return readComment({shell_, readers_, folding_}, *property.info, item);
    return readers_.read(*property.info, item);
}

RawValue PropertySource::combinedList(ItemContext& file, const PropRef& property) const
{
    const auto components = catalogue_.components(property);
    std::u16string all;
    for (auto component = components.rbegin(); component != components.rend(); ++component) {
        const PropValue part = value(file, *component);
        if (part.missing())
            continue;
        if (!all.empty())
            all += u' ';
        all += part.text;
    }
    return all.empty() ? RawValue{} : RawValue::text(uniqueWords(foldText(all, folding_)));
}

// A coordinate is taken as the signed number that it was made into, other values as they were read.
RawValue PropertySource::substitute(ItemContext& file, const PropRef& property) const
{
    for (const PropRef& source : substitutes_.of(property)) {
        const PROPCACHE& node = cached(file, source);
        if (!node.missing())
            return node.kind == PropKind::real ? RawValue::float64(node.real()) : node.raw;
    }
    return {};
}

void PropertySource::applyHemisphere(ItemContext& file, PROPCACHE& node) const
{
    const bool latitude = node.identifier == property_id::gpsLatitude;
    if ((!latitude && node.identifier != property_id::gpsLongitude) || node.missing())
        return;
    const std::u16string_view hemisphere = value(file, latitude ? latitudeRef_ : longitudeRef_).text;
    if (!hemisphere.starts_with(u'S') && !hemisphere.starts_with(u'W'))
        return;
    const double negated = -node.real();
    node.value = std::bit_cast<std::uint64_t>(negated);
    node.raw = RawValue::float64(negated);
}

}  // namespace kelvane
