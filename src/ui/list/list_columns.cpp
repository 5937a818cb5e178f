#include "ui/list/list_columns.h"

#include <algorithm>

#include "results/result_columns.h"
#include "ui/core/text.h"

namespace kelvane {
namespace {

void append(std::vector<PropRef>& columns, const PropRef& column)
{
    if (column && std::find(columns.begin(), columns.end(), column) == columns.end())
        columns.push_back(column);
}

ListColumn described(const PropRef& column)
{
    const bool right = column.kind() == PropKind::number || column.kind() == PropKind::real;
    return {std::string(column.info->name), toQt(columnTitle(column)), right};
}

std::vector<PropRef> firstColumns(const ListSession& session)
{
    std::vector<PropRef> columns;
    const PropertyCatalogue& catalogue = session.access.catalogue;
    for (const char* const name :
         {"System.FileName", "System.ItemFolderPathDisplay", "System.Size", "System.DateModified"})
        append(columns, catalogue.byName(name));
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
    for (const PropRef& column : columnsInView(bench))
        columns.push_back(described(column));
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
        if (property && !property.info->displayName.empty() && property.kind() != PropKind::none &&
            std::find(inView.begin(), inView.end(), property) == inView.end())
            columns.push_back(described(property));
    }
    std::sort(columns.begin(), columns.end(), [](const ListColumn& one, const ListColumn& other) {
        return one.title.compare(other.title, Qt::CaseInsensitive) < 0;
    });
    return columns;
}

void chooseColumns(Workbench& bench, const std::vector<std::string>& names)
{
    ListSession* const session = bench.session();
    if (session == nullptr)
        return;
    std::vector<PropRef> columns;
    for (const std::string& name : names)
        append(columns, session->access.catalogue.byName(name));
    session->chosen = !columns.empty();
    session->inView = std::move(columns);
}

}  // namespace kelvane
