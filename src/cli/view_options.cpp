#include "cli/view_options.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>

#include "base/filled_text.h"
#include "base/utf.h"
#include "base/words.h"
#include "cli/choices.h"
#include "results/quick_filter.h"
#include "results/result_columns.h"

namespace kelvane {
namespace {

constexpr std::array shortKeys = {
    Choice<std::string_view>{"size", "System.Size"},
    Choice<std::string_view>{"name", "System.ItemNameDisplay"},
    Choice<std::string_view>{"path", "System.ItemPathDisplay"},
    Choice<std::string_view>{"folder", "System.ItemFolderPathDisplay"},
    Choice<std::string_view>{"modified", "System.DateModified"},
    Choice<std::string_view>{"type", "System.ItemType"},
    Choice<std::string_view>{"group", "Stock.GroupID"},
};
constexpr std::array leadingColumns = {"System.ItemNameDisplay", "System.ItemFolderPathDisplay"};

// All canonical names are too many to be listed.
Result<std::vector<PropRef>> parseColumnNames(const std::string& typed, const PropertyCatalogue& catalogue)
{
    std::vector<std::string> unknown;
    std::vector<PropRef> columns = catalogue.parseList(typed, &unknown);
    if (unknown.empty())
        return columns;
    return invalid(unknownWord(TextId::unknownProperty, unknown.front(), catalogue.names(), {}) +
                   filledText(TextId::listPrintsNames));
}

// The short words are all listed, the canonical names are too many for that.
Error unknownKey(std::string_view typed, const PropertyCatalogue& catalogue)
{
    std::vector<std::string> words;
    for (const auto& key : shortKeys)
        words.emplace_back(key.word);
    std::vector<std::string> names = catalogue.names();
    names.insert(names.end(), words.begin(), words.end());
    return invalid(unknownWord(TextId::unknownSortKey, typed, names, words) + filledText(TextId::listPrintsNames));
}

PropRef keyProperty(std::string_view word, const PropertyCatalogue& catalogue)
{
    const auto known =
        std::find_if(shortKeys.begin(), shortKeys.end(), [&](const auto& key) { return key.word == word; });
    return catalogue.byName(known == shortKeys.end() ? word : known->value);
}

void appendNew(std::vector<PropRef>& columns, const PropRef& column)
{
    if (column && std::find(columns.begin(), columns.end(), column) == columns.end())
        columns.push_back(column);
}

}  // namespace

void addViewOptions(CLI::App& app, RawView& raw, TextId columnsHelp)
{
    const auto word = [&](const char* name, std::string& value, const char* type, TextId help, TextId group) {
        app.add_option(name, value, filledText(help))->type_name(type)->take_last()->group(filledText(group));
    };
    word("--filter", raw.filter, "TEXT", TextId::helpFilter, TextId::groupWhich);
    app.add_flag("--all-columns", raw.allColumns, filledText(TextId::helpAllColumns))
        ->group(filledText(TextId::groupWhich));
    word("--sort", raw.sort, "KEYS", TextId::helpSort, TextId::groupOrder);
    word("--columns", raw.columns, "LIST", columnsHelp, TextId::groupOutput);
}

Result<std::vector<SortKey>> parseSortKeys(std::string_view typed, const PropertyCatalogue& catalogue)
{
    std::vector<SortKey> keys;
    for (const std::string& word : splitWords(typed, ',')) {
        const bool descending = word.starts_with('-');
        const std::string name = word.substr(descending ? 1 : 0);
        const PropRef property = keyProperty(name, catalogue);
        if (!property)
            return unknownKey(name, catalogue);
        keys.push_back({property, !descending});
    }
    return keys;
}

Result<View> makeView(const RawView& raw, const PropertyCatalogue& catalogue)
{
    View view;
    if (raw.allColumns && raw.filter.empty())
        return invalid(filledText(TextId::optionNeeds, {"--all-columns", "--filter"}));
    view.filter = toUtf16KeepingBytes(raw.filter);
    view.allColumns = raw.allColumns;
    auto keys = parseSortKeys(raw.sort, catalogue);
    if (!keys)
        return keys.error();
    view.sort = std::move(*keys);
    auto columns = parseColumnNames(raw.columns, catalogue);
    if (!columns)
        return columns.error();
    view.columns = std::move(*columns);
    return view;
}

std::vector<PropRef> tableColumns(const SavedScan& scan, const std::vector<PropRef>& named)
{
    std::vector<PropRef> columns;
    for (const char* name : leadingColumns)
        appendNew(columns, scan.properties.catalogue.byName(name));
    for (const PropRef& column : named.empty() ? scan.columns : named)
        appendNew(columns, column);
    return columns;
}

std::optional<ExitCode> applyView(const View& view, GroupedOrder grouped, SavedScan& scan, const Console& console)
{
    const PropertySource& properties = scan.properties.source;
    if (!view.filter.empty()) {
        QuickFilter filter(scan.results, properties);
        std::vector<PropRef> columns = tableColumns(scan, view.columns);
        if (!view.allColumns)
            columns.resize(1);
        filter.searchIn(std::move(columns));
        (void)filter.apply(view.filter);
    }
    const bool asItIs = view.sort.empty() && grouped == GroupedOrder::yes;
    if (asItIs || sortResults(scan.results, view.sort, grouped, properties, console.cancel))
        return std::nullopt;
    return stopCancelled(console);
}

bool filterFound(const View& view, const SavedScan& scan, const Console& console)
{
    if (view.filter.empty() || scan.results.rowCount() > 0)
        return true;
    complain(console, filledText(view.allColumns ? TextId::allColumnsFoundNothing : TextId::filterFoundNothing,
                                 {toUtf8(view.filter)}));
    return false;
}

}  // namespace kelvane
