#include "ui/scan/property_rows.h"

#include <QStringList>
#include <algorithm>

#include "ui/core/property_titles.h"
#include "ui/core/text.h"

namespace kelvane {
namespace {

PropertyRow rowOf(const PropRef& property)
{
    PropertyRow row;
    row.name = toQt(property.info->name);
    row.label = propertyTitle(property);
    row.description = propertyDescription(property);
    row.kind = property.info->enumerated ? shown(TextId::kindEnumerated) : toQt(kindName(property.kind()));
    return row;
}

std::vector<PropertyRow> rowsOf(const PropertyCatalogue& catalogue)
{
    std::vector<PropertyRow> rows;
    for (const std::string& name : catalogue.names()) {
        const PropRef property = catalogue.byName(name);
        if (isForPeople(property))
            rows.push_back(rowOf(property));
    }
    std::sort(rows.begin(), rows.end(), [](const PropertyRow& a, const PropertyRow& b) {
        const int byKind = a.kind.localeAwareCompare(b.kind);
        return byKind != 0 ? byKind < 0 : a.label.localeAwareCompare(b.label) < 0;
    });
    const auto same = [](const PropertyRow& a, const PropertyRow& b) { return a.name == b.name; };
    rows.erase(std::unique(rows.begin(), rows.end(), same), rows.end());
    return rows;
}

}  // namespace

std::vector<PropertyRow> propertyRows(Workbench& bench)
{
    if (const ListSession* const session = bench.session())
        return rowsOf(session->access.catalogue);
    const Desktop& desktop = bench.desktop();
    const PropertyAccess access(bench.platform(), desktop.engineOptions(desktop.settings()));
    return rowsOf(access.catalogue);
}

QString labelsOf(const QString& names, const std::vector<PropertyRow>& rows)
{
    QStringList labels;
    for (const QString& name : names.split(u',', Qt::SkipEmptyParts)) {
        const auto row =
            std::find_if(rows.begin(), rows.end(), [&](const PropertyRow& each) { return each.name == name; });
        labels.append(row != rows.end() ? row->label : name);
    }
    return labels.join(QStringLiteral(", "));
}

}  // namespace kelvane
