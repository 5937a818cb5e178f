#include "cleanup/results_export.h"

#include <algorithm>
#include <cstdio>
#include <span>

#include "base/text_table.h"
#include "base/utf.h"

namespace kelvane {
namespace {

constexpr unsigned mostTableNames = 100;

struct NewFile {
    std::filesystem::path path;
    std::unique_ptr<OutputFile> file;
};

void selectEverything(ResultsModel& results)
{
    if (results.hiddenCount() > 0)
        results.showAll();
    selectRowsInView(results);
}

std::filesystem::path pathOf(std::uint32_t ticks, const Places& places)
{
    char name[32];
    std::snprintf(name, sizeof name, "kvtmp_%x.csv", static_cast<unsigned>(ticks));
    return places.temporaryFolder() / name;
}

// Another program's file of this name, or a link laid there on purpose, is passed by.
Result<NewFile> createFile(const ExportPorts& ports)
{
    const auto ticks = static_cast<std::uint32_t>(ports.clock.ticks());
    for (std::uint32_t attempt = 0;; ++attempt) {
        std::filesystem::path path = pathOf(ticks + attempt, ports.places);
        auto file = ports.output.create(path);
        if (file)
            return NewFile{std::move(path), std::move(*file)};
        if (file.error().kind != ErrorKind::exists || attempt == mostTableNames)
            return file.error();
    }
}

std::string opening(std::u16string_view windowTitle, const Clock& clock)
{
    std::string title = toUtf8(windowTitle);
    std::replace_if(
        title.begin(), title.end(), [](char c) { return c == '\r' || c == '\n'; }, ' ');
    const FileTime now = clock.now();
    const FileTime second{now.ticks - now.ticks % ticksPerSecond};
    return std::string(utf8Mark) + title + "\r\n" + toIso8601(second) + "\r\n";
}

Status writeAll(OutputFile& file, std::initializer_list<std::string_view> texts)
{
    for (const std::string_view text : texts)
        if (Status written = file.write(std::as_bytes(std::span(text))); !written)
            return written;
    return file.close();
}

}  // namespace

void selectRowsInView(ResultsModel& results)
{
    std::vector<ItemId> rows;
    rows.reserve(results.rowCount());
    results.forEachRow([&](ItemId id) { rows.push_back(id); });
    results.mark(rows, Mark::selected, true);
}

ExportOutcome exportCsv(ResultsModel& results, const TableView& view, std::u16string_view windowTitle,
                        const ExportPorts& ports, const GoOn& goOn)
{
    selectEverything(results);
    const auto table = tableOfSelection(results, view, TableMode::csv, Formulas::defused, goOn);
    if (!table)
        return {.file = {}, .message = {}, .stopped = true};
    if (table->empty())
        return {};
    const std::u16string failure(text(TextId::contentsFileNotWritten));
    auto created = createFile(ports);
    if (!created)
        return {{}, failure, created.error(), ports.places.temporaryFolder()};
    const Status written = writeAll(*created->file, {opening(windowTitle, ports.clock), *table});
    if (!written) {
        created->file.reset();  // a file that is open cannot be removed everywhere
        static_cast<void>(ports.output.remove(created->path));
        return {{}, failure, written.error(), created->path};
    }
    const Status opened = ports.processes.openFile(created->path);
    if (!opened)
        return {created->path, toUtf16(opened.error().detail), opened.error()};
    return {created->path, {}};
}

}  // namespace kelvane
