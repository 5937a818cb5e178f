#include "results/result_columns.h"

#include "base/size_text.h"
#include "base/utf.h"
#include "props/value_convert.h"

namespace kelvane {
namespace {

bool isSize(const PropRef& column)
{
    return column.identifier == property_id::size || column.identifier == property_id::fileAllocationSize ||
           (column.info != nullptr && column.info->name == "Stock.TotalFileSize");
}

std::u16string textOf(ItemContext& file, const PropRef& column, const PropertySource& properties)
{
    if (isSize(column)) {
        const PropValue value = properties.value(file, column);
        return value.missing() ? std::u16string() : toUtf16(sizeText({value.bits}));
    }
    const PROPCACHE& node = properties.cached(file, column);
    return node.kind == PropKind::text ? node.text : formatRaw(node.raw);
}

}  // namespace

std::u16string cellText(ItemContext& file, const PropRef& column, const PropertySource& properties)
{
    if (!column)
        return {};
    if (!column.has(property_flag::fromFileRecord))
        return textOf(file, column, properties);
    ItemContext passing(file.itemRef());
    passing.group = file.group;
    return textOf(passing, column, properties);
}

std::u16string columnTitle(const PropRef& column)
{
    if (!column)
        return {};
    return column.info->displayName.empty() ? toUtf16(column.info->name) : std::u16string(column.info->displayName);
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
    for (const PropRef& column : columns)
        names += (names.empty() ? "" : ",") + std::string(column.info->name);
    return names;
}

}  // namespace kelvane
