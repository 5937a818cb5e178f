#include "results/result_columns.h"

#include "base/size_text.h"
#include "base/utf.h"
#include "props/record_values.h"
#include "props/value_convert.h"
#include "results/list_values.h"

namespace kelvane {
namespace {

constexpr std::uint64_t ticksPerSecond = 10'000'000;

// Up to the minute: what comes behind says nothing to people.
std::u16string dateText(std::uint64_t ticks)
{
    std::string text = toIso8601({static_cast<std::int64_t>(ticks)});
    const std::size_t day = text.find('T');
    text[day] = ' ';
    text.resize(day + std::string_view(" 02:31").size());
    return toUtf16(text);
}

// Hours, minutes and seconds.
std::u16string durationText(std::uint64_t ticks)
{
    const std::uint64_t seconds = ticks / ticksPerSecond + (ticks % ticksPerSecond >= ticksPerSecond / 2 ? 1 : 0);
    const auto twoDigits = [](std::uint64_t number) { return (number < 10 ? ":0" : ":") + std::to_string(number); };
    return toUtf16(std::to_string(seconds / 3600) + twoDigits(seconds / 60 % 60) + twoDigits(seconds % 60));
}

// A number that stands for something, and nothing for any other value.
std::optional<std::u16string> figureText(const PropRef& column, std::uint64_t bits)
{
    if (bits == PROPCACHE::missingMark)
        return std::u16string();
    if (column.kind() == PropKind::date)
        return bits != 0 ? dateText(bits) : std::u16string();
    if (isDuration(column))
        return durationText(bits);
    if (isSize(column))
        return toUtf16(sizeText({bits}));
    return std::nullopt;
}

std::u16string keptText(const PROPCACHE& node, const PropRef& column)
{
    if (node.kind == PropKind::text)
        return node.text;
    auto text = figureText(column, node.value);
    return text ? *std::move(text) : formatRaw(node.raw);
}

}  // namespace

std::u16string cellText(ItemContext& file, const PropRef& column, const PropertySource& properties)
{
    if (!column)
        return {};
    if (const auto number = recordNumber(file, column)) {
        auto text = figureText(column, number->comparable());
        return text ? *std::move(text) : formatRaw(number->raw());
    }
    if (!isMadeOfName(column))
        return keptText(properties.cached(file, column), column);
    std::u16string text;
    withListValue(file, column, properties, [&](const PropValue& value) { text = value.text; });
    return text;
}

bool isSize(const PropRef& column)
{
    return column.identifier == property_id::size || column.identifier == property_id::fileAllocationSize ||
           column.info->name == "Stock.TotalFileSize";
}

bool isDuration(const PropRef& column)
{
    return column.info->name == "System.Media.Duration";
}

std::u16string columnTitle(const PropRef& column)
{
    return column ? std::u16string(column.info->displayName) : std::u16string();
}

Result<std::vector<PropRef>> parseColumns(std::string_view names, const PropertyCatalogue& catalogue)
{
    std::vector<std::string> unknown;
    std::vector<PropRef> columns = catalogue.parseList(names, &unknown);
    if (!unknown.empty())
        return Error{ErrorKind::invalid, 0, unknown.front()};
    if (columns.empty())
        return Error{ErrorKind::invalid, 0, std::string(names)};
    return columns;
}

std::string joinColumns(const std::vector<PropRef>& columns)
{
    std::string names;
    for (const PropRef& column : columns) {
        names += names.empty() ? "" : ",";
        names += column.info->name;
    }
    return names;
}

}  // namespace kelvane
