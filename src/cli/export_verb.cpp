#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>

#include "base/filled_text.h"
#include "cleanup/results_export.h"
#include "cleanup/results_table.h"
#include "cli/arguments.h"
#include "cli/choices.h"
#include "cli/problems.h"
#include "cli/settings_in_force.h"
#include "cli/verbs.h"
#include "cli/view_options.h"

namespace kelvane {
namespace {

constexpr std::string_view exportExamples =
    "  kelvane-cli export copies.ikvs > copies.csv\n"
    "  kelvane-cli export copies.ikvs --format tsv --sort folder,name | cut -f 2\n"
    "  kelvane-cli export copies.ikvs --output copies.csv\n";

constexpr std::array tableModes = {
    Choice<TableMode>{"csv", TableMode::csv},
    Choice<TableMode>{"tsv", TableMode::tabs},
};

struct RawExport {
    std::vector<std::string> files;
    std::string format = "csv", output, settings;
    bool overwrite = false;
    RawView view;
};

void addExportOptions(CLI::App& app, RawExport& raw)
{
    const std::string output = filledText(TextId::groupOutput);
    app.add_option("FILE", raw.files, filledText(TextId::savedScanHelp))->type_name("");
    addViewOptions(app, raw.view, TextId::helpExportColumns);
    app.add_option("--format", raw.format, filledText(TextId::helpExportFormat))
        ->type_name("WORD")
        ->take_last()
        ->group(output);
    app.add_option("--output", raw.output, filledText(TextId::helpOutput))
        ->check(notEmpty)
        ->type_name("FILE")
        ->take_last()
        ->group(output);
    app.add_flag("--overwrite", raw.overwrite, filledText(TextId::helpOutputOverwrite))->group(output);
    app.add_option("--settings", raw.settings, filledText(TextId::helpSettings))
        ->type_name("FILE")
        ->take_last()
        ->group(filledText(TextId::groupRun));
}

// A CSV file is what spreadsheets open, and they compute cells that look like formulas.
std::string makeTable(SavedScan& scan, const std::vector<PropRef>& named, TableMode mode, const CancelFlag& cancel)
{
    TableView table = viewOfColumns(tableColumns(scan, named), scan.properties.source);
    // A person who no longer waits gets no table: from then on no property is read.
    table.cell = [&cancel, cell = std::move(table.cell)](ItemContext& file, std::size_t column) {
        return cancel.cancelled() ? std::u16string{} : cell(file, column);
    };
    selectRowsInView(scan.results);
    return tableOfSelection(scan.results, table, mode, mode == TableMode::csv ? Formulas::defused : Formulas::kept);
}

ExitCode writeFile(const std::string& typed, const std::string& table, std::uint32_t rows, Platform& platform,
                   const Console& console)
{
    const auto bytes = std::as_bytes(std::span(table.data(), table.size()));
    if (const Status written = replaceContents(platform.output(), namedFile(typed), bytes); !written) {
        complain(console,
                 typed + ": " + filledText(TextId::contentsFileNotWritten) + ": " + errorText(written.error()));
        return written.error().kind == ErrorKind::notFound ? ExitCode::usage : ExitCode::incomplete;
    }
    complain(console,
             filledText(rows == 1 ? TextId::oneRowWritten : TextId::manyRowsWritten, {typed, std::to_string(rows)}));
    return ExitCode::done;
}

ExitCode write(const RawExport& raw, TableMode mode, SavedScan& scan, const View& view, Platform& platform,
               const Console& console)
{
    if (const auto over = applyView(view, GroupedOrder::yes, scan, console))
        return *over;
    if (!filterFound(view, scan, console))
        return ExitCode::incomplete;
    const std::string table = makeTable(scan, view.columns, mode, console.cancel);
    if (console.cancel.cancelled())
        return stopCancelled(console);
    if (table.empty())
        return ExitCode::incomplete;
    if (!raw.output.empty())
        return writeFile(raw.output, table, scan.results.rowCount(), platform, console);
    console.out << table;
    return ExitCode::done;
}

bool isTaken(const RawExport& raw, Platform& platform)
{
    return !raw.output.empty() && !raw.overwrite &&
           platform.files().details(namedFile(raw.output), Links::asThemselves).ok();
}

}  // namespace

ExitCode exportVerb(const Arguments& arguments, Platform& platform, const Console& console)
{
    CLI::App app(filledText(TextId::exportAbout), "export");
    app.footer(footerText({TextId::exportNotes, exportExamples, {}}));
    RawExport raw;
    addExportOptions(app, raw);
    if (const auto over = parseArguments(app, "FILE", arguments, console))
        return *over;
    if (raw.output == "-")
        raw.output.clear();
    if (const auto message = notOneFile("export", raw.files))
        return refuse(console, *message);
    const auto mode = choose<TableMode>(TextId::unknownFormat, raw.format, tableModes);
    if (!mode)
        return refuse(console, mode.error().detail);
    if (isTaken(raw, platform))
        return refuse(console, filledText(TextId::outputExists, {raw.output}));
    ExitCode code = ExitCode::done;
    const auto scan = openSavedScan(raw.files.front(), raw.settings, platform, console, code);
    if (!scan)
        return code;
    const auto view = makeView(raw.view, scan->properties.catalogue);
    if (!view)
        return refuse(console, view.error().detail);
    code = write(raw, *mode, *scan, *view, platform, console);
    return std::max(code, tellMissing(*scan, console));
}

}  // namespace kelvane
