#include "ui/list/list_columns.h"

#include <algorithm>

#include "results/result_columns.h"
#include "ui/core/property_titles.h"
#include "ui/core/shown_values.h"

namespace kelvane {
namespace {

bool holds(const std::vector<PropRef>& columns, const PropRef& column)
{
    return std::find(columns.begin(), columns.end(), column) != columns.end();
}

void append(std::vector<PropRef>& columns, const PropRef& column)
{
    if (column && !holds(columns, column))
        columns.push_back(column);
}

bool holdsAmounts(const PropRef& column)
{
    return column.kind() == PropKind::number || column.kind() == PropKind::real;
}

// In the language of the person, so that a column is wide enough for its unit.
QString sampleOf(const PropRef& column)
{
    constexpr std::uint64_t mostExactBytes = 10'239;  // from there on sizes are told in larger units
    if (isSize(column))
        return shownSize(mostExactBytes);
    if (column.kind() == PropKind::date)
        return QStringLiteral("2000-00-00 00:00");
    return holdsAmounts(column) ? shownCell(column, u"1234567") : QString();
}

ListColumn described(const PropRef& column)
{
    return {.name = std::string(column.info->name),
            .title = propertyTitle(column),
            .rightAligned = holdsAmounts(column),
            .sample = sampleOf(column)};
}

std::vector<PropRef> columnsOfEveryList(const PropertyCatalogue& catalogue)
{
    std::vector<PropRef> columns;
    for (const char* const name :
         {"System.FileName", "System.ItemFolderPathDisplay", "System.Size", "System.DateModified"})
        append(columns, catalogue.byName(name));
    return columns;
}

std::vector<PropRef> firstColumns(const ListSession& session)
{
    std::vector<PropRef> columns = columnsOfEveryList(session.access.catalogue);
    for (const PropRef& column : session.columns)
        append(columns, column);
    return columns;
}

}  // namespace

const std::vector<PropRef>& columnsInView(Workbench& bench)
{
    static const std::vector<PropRef> none;
    ListSession* const session = bench.session();
    if (session == nullptr)
        return none;
    if (!session->chosen)
        session->inView = firstColumns(*session);
    return session->inView;
}

std::vector<ListColumn> describedColumns(Workbench& bench)
{
    std::vector<ListColumn> columns;
    const ListSession* const session = bench.session();
    if (session == nullptr)
        return columns;
    const std::vector<PropRef> always = columnsOfEveryList(session->access.catalogue);
    for (const PropRef& column : columnsInView(bench)) {
        columns.push_back(described(column));
        columns.back().given = holds(session->columns, column) && !holds(always, column);
    }
    return columns;
}

std::vector<ListColumn> furtherColumns(Workbench& bench)
{
    std::vector<ListColumn> columns;
    if (bench.session() == nullptr)
        return columns;
    const PropertyCatalogue& catalogue = bench.session()->access.catalogue;
    const std::vector<PropRef>& inView = columnsInView(bench);
    for (const std::string& name : catalogue.names()) {
        const PropRef property = catalogue.byName(name);
        if (isForPeople(property) && !property.info->displayName.empty() &&
            std::find(inView.begin(), inView.end(), property) == inView.end())
            columns.push_back(described(property));
    }
    std::sort(columns.begin(), columns.end(), [](const ListColumn& one, const ListColumn& other) {
        return one.title.localeAwareCompare(other.title) < 0;
    });
    return columns;
}

void arrangeColumns(Workbench& bench, const KeptColumns& kept)
{
    ListSession* const session = bench.session();
    if (session == nullptr)
        return;
    std::vector<PropRef> columns;
    for (const auto& [name, given] : kept.chosen) {
        const PropRef column = session->access.catalogue.byName(name);
        if (!given || holds(session->columns, column))
            append(columns, column);
    }
    const auto isWanted = [&](const PropRef& column) {
        return std::find(kept.without.begin(), kept.without.end(), column.info->name) == kept.without.end();
    };
    session->chosen = !columns.empty();
    for (const PropRef& column : session->columns)
        if (column && isWanted(column))
            append(columns, column);
    session->inView = std::move(columns);
}

}  // namespace kelvane
