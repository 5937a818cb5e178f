#include "engine/results_file.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <utility>

#include "base/filled_text.h"
#include "base/utf.h"
#include "engine/results_content.h"
#include "engine/row_resolver.h"
#include "engine/stored_paths.h"

namespace kelvane {
namespace {

constexpr std::u16string_view definitionName = u"binLastScan";

std::u16string columnString(const std::vector<PropRef>& columns)
{
    std::u16string names;
    for (const PropRef& column : columns) {
        if (!column)
            continue;
        if (!names.empty())
            names += u',';
        names += toUtf16(column.info->name);
    }
    return names;
}

// Every name, in order. An empty string is no column, not one without a name.
Result<std::vector<PropRef>> columnsOf(std::u16string_view names, const PropertyCatalogue& catalogue)
{
    std::vector<PropRef> columns;
    while (!names.empty()) {
        const auto comma = names.find(u',');
        const std::string name = toUtf8(names.substr(0, comma));
        const PropRef column = catalogue.byName(name);
        if (!column || comma == names.size() - 1)
            return Error{ErrorKind::invalid, 0, filledText(TextId::unknownColumn, {name})};
        columns.push_back(column);
        names.remove_prefix(comma == std::u16string_view::npos ? names.size() : comma + 1);
    }
    return columns;
}

std::vector<std::byte> definitionBlob(const StoredResults& results, bool withFigures)
{
    StoredNode top;
    if (results.definition) {
        top.children.push_back(storedNode(*results.definition));
        top.children.back().name = definitionName;
    }
    if (withFigures && results.figures)
        top.children.push_back(storedNode(*results.figures));
    return top.children.empty() ? std::vector<std::byte>() : encodeNode(top);
}

std::vector<std::byte> definitionBlob(const StoredResults& results)
{
    auto blob = definitionBlob(results, true);
    return blob.empty() ? definitionBlob(results, false) : blob;
}

// What of it can be read.
void readDefinition(const std::vector<std::byte>& blob, StoredResults& results)
{
    if (auto scan = scanNodeFromBlob(blob, definitionName))
        results.definition = std::move(*scan);
    const auto top = decodeNode(blob);
    if (!top)
        return;
    for (const StoredNode& child : top->children) {
        if (auto figures = scanFiguresOf(child))
            results.figures = std::move(*figures);
    }
}

Status checkGroups(const std::vector<StoredRow>& rows)
{
    for (const StoredRow& row : rows) {
        if (row.group == 0 || row.group > highestGroup)
            return Error{ErrorKind::invalid, 0, "a row is in group " + std::to_string(row.group)};
    }
    return {};
}

std::string pathOf(const ItemBlock& items, std::uint32_t row)
{
    const auto below = [](std::string folder, const std::string& name) {
        const bool parted = folder.empty() || folder.back() == '/' || folder.back() == '\\';
        return std::move(folder) + (parted ? "" : std::string(1, nativeSeparator)) + name;
    };
    const StoredPlace place = items.row(row);
    const std::string path = below(items.folder(), place.path);
    return place.inArchive ? below(path, place.inside) : path;
}

Result<ResultsContent> readContent(const std::filesystem::path& path, FileSystem& files, const CancelFlag& cancel)
{
    const auto reader = files.openForReading(path, ReadPattern::sequential, Links::followed);
    if (!reader)
        return reader.error();
    return decodeResults(**reader, cancel);
}

}  // namespace

Result<std::uint64_t> saveResults(const std::filesystem::path& path, const StoredResults& results, FileOutput& output,
                                  const CancelFlag* cancel)
{
    if (results.rows.empty())
        return std::uint64_t{0};
    auto block = buildItemBlock(results.rows);
    if (!block)
        return block.error();
    // What could not be loaded again is never written.
    if (const Status groups = checkGroups(results.rows); !groups)
        return groups.error();
    auto items = ItemBlock::check(std::move(*block));
    if (!items)
        return items.error();
    ResultsContent content{
        columnString(results.columns), results.detailsView, results.viewOption, std::move(*items), {},
        definitionBlob(results)};
    for (const StoredRow& row : results.rows)
        content.groups.push_back(row.group);
    const std::vector<std::byte> bytes = encodeResults(content);
    if (cancel != nullptr && cancel->cancelled())
        return Error{ErrorKind::cancelled, 0, {}};
    if (const Status written = replaceContents(output, path, bytes); !written)
        return written.error();
    return std::uint64_t{bytes.size()};
}

Result<LoadedResults> loadResults(const std::filesystem::path& path, ShellNamespace& shell,
                                  const PropertyCatalogue& catalogue, const CancelFlag& cancel, AllMissing allMissing,
                                  WorkCount* count)
{
    const auto content = readContent(path, shell.files(), cancel);
    if (!content)
        return content.error();
    auto columns = columnsOf(content->columns, catalogue);
    if (!columns)
        return columns.error();
    const auto files = resolveRows(content->items, shell, cancel, count);
    if (!files)
        return files.error();
    const auto isThere = [](const ResolvedRow& row) { return row.file != nullptr; };
    if (allMissing == AllMissing::fails && std::none_of(files->begin(), files->end(), isThere))
        return Error{ErrorKind::invalid, 0, filledText(TextId::noRowLocated, {std::to_string(files->size())})};
    LoadedResults loaded{{std::move(*columns), content->detailsView, content->viewOption, {}, {}, {}}, 0, {}};
    for (std::uint32_t row = 0; row < content->items.rows(); ++row) {
        if (const ResolvedRow& found = (*files)[row]; found.file)
            loaded.results.rows.push_back({found.file, content->groups[row], found.approximate});
        else
            loaded.missingFiles.push_back(pathOf(content->items, row));
    }
    loaded.missing = static_cast<std::uint32_t>(loaded.missingFiles.size());
    readDefinition(content->definition, loaded.results);
    return loaded;
}

}  // namespace kelvane
