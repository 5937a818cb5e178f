#include "ui/list/list_files.h"

#include <algorithm>

#include "app/error_text.h"
#include "app/listed_results.h"
#include "base/desktop_texts/list.h"
#include "base/filled_text.h"
#include "base/utf.h"
#include "cleanup/results_export.h"
#include "platform/native_text.h"
#include "results/result_columns.h"
#include "results/result_sort.h"
#include "ui/core/message_box.h"
#include "ui/core/text.h"
#include "ui/core/window_link.h"
#include "ui/list/list_columns.h"
#include "ui/list/list_progress.h"

namespace kelvane {
namespace {

std::string shownName(const std::filesystem::path& file)
{
    return toUtf8(displayFromNative(file.native()));
}

void tell(Workbench& bench, TextId id, std::initializer_list<std::string_view> parts)
{
    bench.tell(toUtf16(filledText(id, parts)));
}

void tellFailure(Workbench& bench, TextId id, const std::filesystem::path& file, const Error& error)
{
    bench.tell({});
    showProblem(bench, toUtf16(filledText(id, {shownName(file), errorText(error)})));
}

void remember(const Desktop& desktop, const std::filesystem::path& file)
{
    desktop.change([name = displayFromNative(file.native())](Settings& settings) {
        auto& [capacity, paths] = settings.recentDocuments;
        std::erase(paths, name);
        paths.insert(paths.begin(), name);
        paths.resize(std::min(paths.size(), capacity));
    });
}

// By name: the file was read by another catalogue, since the session of the list on screen stays until it was.
std::vector<PropRef> columnsOf(const StoredResults& stored, const PropertyCatalogue& catalogue)
{
    return stored.columns.empty() ? std::vector<PropRef>() : catalogue.parseList(joinColumns(stored.columns));
}

void takeDefinition(ListSession& session, StoredResults& stored)
{
    session.columns = columnsOf(stored, session.access.catalogue);
    if (!stored.definition)
        return;
    session.definition = std::move(stored.definition);
    const bool archives = stored.figures && stored.figures->archives;
    if (auto criteria =
            makeCriteria(*session.definition, optionsWithArchives(session.options, archives), session.access.catalogue))
        session.criteria = *std::move(criteria);
}

void show(Workbench& bench, LoadedResults& loaded, const Settings& settings, const std::filesystem::path& file)
{
    ListSession& session = bench.beginList(settings, bench.desktop().engineOptions(settings));
    session.file = bytesFromNative(file.native());
    session.figures = std::move(loaded.results.figures);
    takeDefinition(session, loaded.results);
    bench.toMain([](WindowLink& link) { Q_EMIT link.listBegan(); });  // with its own columns
    addRows(bench.results(), std::move(loaded.results.rows));
    // One that was saved while it was sorted across groups.
    if (!bench.results().isGrouped())
        static_cast<void>(sortResults(bench.results(), {}, GroupedOrder::yes, session.access.source, CancelFlag()));
}

void tellLoaded(Workbench& bench, const LoadedResults& loaded, const std::filesystem::path& file)
{
    const std::uint32_t items = bench.results().itemCount();
    tell(bench, desktop_text::listOpened,
         {shownName(file), std::to_string(items), std::to_string(bench.results().groupCount())});
    if (loaded.missing > 0)
        showProblem(bench, toUtf16(filledText(desktop_text::listMissing,
                                              {std::to_string(loaded.missing),
                                               std::to_string(std::uint64_t{loaded.missing} + items)})));
}

void tellExported(Workbench& bench, const ExportOutcome& outcome)
{
    if (outcome.stopped)
        return tell(bench, desktop_text::listExportStopped, {});
    if (!outcome.failure)
        return outcome.file.empty() ? bench.tell({})
                                    : tell(bench, desktop_text::listExported, {shownName(outcome.file)});
    bench.tell(outcome.message);
    const bool written = !outcome.file.empty();
    showProblem(bench,
                toUtf16(filledText(written ? desktop_text::listNotShown : desktop_text::listExportFailed,
                                   {shownName(written ? outcome.file : outcome.tried), errorText(*outcome.failure)})));
}

StoredResults storedResults(Workbench& bench, const ListSession& session)
{
    StoredResults stored;
    stored.columns = session.columns;
    stored.definition = session.definition;
    stored.figures = session.figures;
    stored.rows = storedRows(bench.results());
    return stored;
}

}  // namespace

void showProblem(Workbench& bench, const std::u16string& problem)
{
    bench.toMain([problem = toQt(problem)](WindowLink& link) {
        link.boxes().open(makePlainBox(link.frame(), "listProblem", QMessageBox::Warning, problem));
    });
}

void openResults(Workbench& bench, const std::filesystem::path& file)
{
    const auto running = bench.begin(Job::loading);
    if (!running)
        return showProblem(bench, std::u16string(text(desktop_text::listBusy)));
    const Settings settings = bench.desktop().settings();
    const PropertyAccess reading(bench.platform(), bench.desktop().engineOptions(settings));
    WorkCount count;
    ListProgress progress(bench, shown(desktop_text::listOpening, {shownName(file)}));
    auto loaded = progress.aside(count, [&] {
        return loadResults(file, bench.platform().shell(), reading.catalogue, bench.cancel(), AllMissing::fails,
                           &count);
    });
    if (!loaded && loaded.error().kind == ErrorKind::cancelled)
        return tell(bench, desktop_text::listOpenStopped, {shownName(file)});
    if (!loaded)
        return tellFailure(bench, desktop_text::listOpenFailed, file, loaded.error());
    show(bench, *loaded, settings, file);
    remember(bench.desktop(), file);
    tellLoaded(bench, *loaded, file);
}

void saveListedResults(Workbench& bench, const std::filesystem::path& file)
{
    ListSession* const session = bench.session();
    const auto running = session != nullptr ? bench.begin(Job::saving) : nullptr;
    if (!running)
        return showProblem(bench, std::u16string(text(desktop_text::listBusy)));
    const std::uint32_t groups = bench.results().groupCount();
    ListProgress progress(bench, shown(desktop_text::listSaving, {shownName(file)}));
    const auto written = progress.aside(WorkCount(), [&bench, &file, results = storedResults(bench, *session)] {
        return saveResults(file, results, bench.platform().output(), &bench.cancel());
    });
    if (!written && written.error().kind == ErrorKind::cancelled)
        return tell(bench, desktop_text::listSaveStopped, {shownName(file)});
    if (!written)
        return tellFailure(bench, desktop_text::listSaveFailed, file, written.error());
    session->file = bytesFromNative(file.native());
    remember(bench.desktop(), file);
    tell(bench, groups == 1 ? TextId::oneGroupSaved : TextId::manyGroupsSaved,
         {shownName(file), std::to_string(groups)});
}

void exportTable(Workbench& bench, const std::u16string& windowTitle)
{
    const auto running = bench.session() != nullptr ? bench.begin(Job::saving) : nullptr;
    if (!running)
        return showProblem(bench, std::u16string(text(desktop_text::listBusy)));
    Platform& platform = bench.platform();
    ListProgress progress(bench, shown(desktop_text::listExporting));
    const auto goOn = [&](std::size_t done, std::size_t total) {
        progress.step(done, total);
        return !bench.cancel().cancelled();
    };
    tellExported(bench,
                 exportCsv(bench.results(), viewOfColumns(columnsInView(bench), bench.session()->access.source),
                           windowTitle, {platform.output(), platform.processes(), platform.places(), platform.clock()},
                           goOn));
}

}  // namespace kelvane
