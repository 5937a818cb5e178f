#include <CLI/CLI.hpp>
#include <algorithm>

#include "base/filled_text.h"
#include "cli/arguments.h"
#include "cli/group_choice.h"
#include "cli/printable.h"
#include "cli/report.h"
#include "cli/verbs.h"
#include "cli/view_options.h"

namespace kelvane {
namespace {

constexpr std::string_view showExamples = "  kelvane-cli show copies.ikvs\n"
                                          "  kelvane-cli show copies.ikvs --sort=-size --filter .jpg\n"
                                          "  kelvane-cli show copies.ikvs --groups-of ~/Pictures/cat.jpg\n"
                                          "  kelvane-cli show today.ikvs --since yesterday.ikvs --json\n"
                                          "  kelvane-cli show copies.ikvs --columns System.DateModified\n";

struct RawShow {
    std::vector<std::string> files, groupsOf;
    std::string since, format, settings;
    RawView view;
    bool ungrouped = false, summary = false, json = false;
};

void addShowOptions(CLI::App& app, RawShow& raw)
{
    const std::string which = filledText(TextId::groupWhich);
    const std::string output = filledText(TextId::groupOutput);
    app.add_option("FILE", raw.files, filledText(TextId::savedScanHelp))->type_name("");
    addViewOptions(app, raw.view, TextId::helpShowColumns);
    app.add_option("--groups-of", raw.groupsOf, filledText(TextId::helpGroupsOf))
        ->check(notEmpty)
        ->type_name("PATH")
        ->allow_extra_args(false)
        ->group(which);
    app.add_option("--since", raw.since, filledText(TextId::helpSince))
        ->check(notEmpty)
        ->type_name("FILE")
        ->take_last()
        ->group(which);
    app.add_flag("--ungrouped", raw.ungrouped, filledText(TextId::helpUngrouped))
        ->group(filledText(TextId::groupOrder));
    app.add_option("--format", raw.format, filledText(TextId::helpFormat))
        ->type_name("WORD")
        ->take_last()
        ->group(output);
    app.add_flag("--json", raw.json, filledText(TextId::helpJson))->group(output);
    app.add_flag("--summary", raw.summary, filledText(TextId::helpShowSummary))->group(output);
    app.add_option("--settings", raw.settings, filledText(TextId::helpSettings))
        ->type_name("FILE")
        ->take_last()
        ->group(filledText(TextId::groupRun));
}

// NUL-terminated names have no place for counts or values.
std::optional<std::string> notInNullFormat(const RawShow& raw, OutputFormat format)
{
    if (format != OutputFormat::null || (!raw.summary && raw.view.columns.empty()))
        return std::nullopt;
    return filledText(TextId::optionsExclude, {raw.summary ? "--summary" : "--columns", "--format null"});
}

void writeText(const Listing& listing, const Console& console)
{
    std::ostream& out = listing.shape.summaryOnly ? console.out : console.err;
    if (listing.results.rowCount() == listing.results.itemCount())
        writeSummary(listing, out);
    else
        writeSummaryOfPart(listing, out);
    if (!listing.shape.summaryOnly)
        return;
    for (const std::string& root : listing.roots)
        out << printable(filledText(TextId::searchedIn, {root})) << '\n';
}

ExitCode print(const Listing& listing, OutputFormat format, const Console& console)
{
    writeReport(format, listing, console.out);
    console.out.flush();
    const bool nothingLeft = listing.results.rowCount() == 0;  // which was said already
    if (format == OutputFormat::text && !nothingLeft)
        writeText(listing, console);
    return format != OutputFormat::json && console.cancel.cancelled() ? ExitCode::cancelled : ExitCode::done;
}

class Show {
public:
    Show(const RawShow& raw, OutputFormat format, Platform& platform, const Console& console)
        : raw_(raw), format_(format), platform_(platform), console_(console)
    {
    }

    ExitCode run()
    {
        ExitCode code = ExitCode::done;
        const auto scan = openSavedScan(raw_.files.front(), raw_.settings, platform_, console_, code);
        if (!scan)
            return code;
        const auto view = makeView(raw_.view, scan->properties.catalogue);
        if (!view)
            return refuse(console_, view.error().detail);
        const auto grouped = raw_.ungrouped ? GroupedOrder::no : GroupedOrder::yes;
        if (const auto over = applyView(*view, grouped, *scan, console_))
            return *over;
        const bool found = filterFound(*view, *scan, console_);
        if (!chooseGroups(*scan, code))
            return code;
        const ExitCode printed = print(*scan, view->columns);
        const bool anyLeft = scan->results.rowCount() > 0;
        if (found && !anyLeft && code == ExitCode::done && !(nothingNew_ && raw_.groupsOf.empty()))
            code = complainOfNothing();
        return std::max({code, printed, found ? ExitCode::done : ExitCode::incomplete, tellMissing(*scan, console_)});
    }

private:
    // False when the verb is over.
    bool chooseGroups(SavedScan& scan, ExitCode& code)
    {
        if (!raw_.groupsOf.empty() && !showGroupsOf(raw_.groupsOf, scan, platform_, console_))
            code = ExitCode::incomplete;
        if (raw_.since.empty())
            return true;
        ExitCode earlierCode = ExitCode::done;
        const auto earlier =
            openSavedScan(raw_.since, raw_.settings, platform_, console_, earlierCode, AllMissing::isLoaded);
        if (!earlier) {
            code = earlierCode;
            return false;
        }
        isNew_ = newSince(*earlier, scan, platform_.paths());
        showGroupsWithNew(isNew_, scan);
        nothingNew_ = std::find(isNew_.begin(), isNew_.end(), true) == isNew_.end();
        if (nothingNew_)
            complain(console_, filledText(TextId::nothingNew, {raw_.since}));
        return true;
    }

    ExitCode print(SavedScan& scan, const std::vector<PropRef>& columns) const
    {
        const ScanCriteria* criteria = scan.criteria ? &*scan.criteria : nullptr;
        const ListingShape shape{raw_.ungrouped, raw_.summary, columns, &scan.properties.source,
                                 raw_.since.empty() ? nullptr : &isNew_};
        return kelvane::print({criteria, scan.figures.roots, scan.figures, scan.results, console_.cancel, shape},
                              format_, console_);
    }

    // Each option found something, but no file has all that is asked for.
    [[nodiscard]] ExitCode complainOfNothing() const
    {
        complain(console_, filledText(TextId::nothingTogether));
        return ExitCode::incomplete;
    }

    const RawShow& raw_;
    OutputFormat format_;
    Platform& platform_;
    const Console& console_;
    std::vector<bool> isNew_;
    bool nothingNew_ = false;
};

}  // namespace

ExitCode showVerb(const Arguments& arguments, Platform& platform, const Console& console)
{
    CLI::App app(filledText(TextId::showAbout), "show");
    app.footer(footerText({TextId::showNotes, showExamples, {}}));
    RawShow raw;
    addShowOptions(app, raw);
    if (const auto over = parseArguments(app, "FILE", arguments, console))
        return *over;
    if (const auto message = notOneFile("show", raw.files))
        return refuse(console, *message);
    const auto format = chooseFormat(raw.format, raw.json);
    if (!format)
        return refuse(console, format.error().detail);
    if (const auto message = notInNullFormat(raw, *format))
        return refuse(console, *message);
    return Show(raw, *format, platform, console).run();
}

}  // namespace kelvane
