#include "ui/list/list_files.h"

#include <QMessageBox>
#include <algorithm>

#include "app/engine_settings.h"
#include "app/error_text.h"
#include "app/listed_results.h"
#include "base/desktop_texts/list.h"
#include "base/filled_text.h"
#include "base/utf.h"
#include "cleanup/results_export.h"
#include "platform/native_text.h"
#include "results/result_columns.h"
#include "results/result_sort.h"
#include "ui/core/text.h"
#include "ui/core/window_link.h"
#include "ui/list/list_columns.h"

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
    ListSession& session = bench.beginList(settings, engineOptionsFrom(settings));
    session.file = bytesFromNative(file.native());
    takeDefinition(session, loaded.results);
    addRows(bench.results(), std::move(loaded.results.rows));
    // One that was saved while it was sorted across groups.
    if (!bench.results().isGrouped())
        static_cast<void>(sortResults(bench.results(), {}, GroupedOrder::yes, session.access.source, bench.cancel()));
    bench.toMain([](WindowLink& link) { Q_EMIT link.listBegan(); });
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

StoredResults storedResults(Workbench& bench, const ListSession& session)
{
    StoredResults stored;
    stored.columns = session.columns;
    stored.definition = session.definition;
    stored.rows = storedRows(bench.results());
    return stored;
}

}  // namespace

void showProblem(Workbench& bench, const std::u16string& problem)
{
    bench.toMain([problem = toQt(problem)](WindowLink& link) {
        auto* const box =
            new QMessageBox(QMessageBox::Warning, QStringLiteral("Kelvane"), problem, QMessageBox::Ok, link.frame());
        box->setObjectName(QStringLiteral("listProblem"));
        box->setAttribute(Qt::WA_DeleteOnClose);
        box->open();
    });
}

void openResults(Workbench& bench, const std::filesystem::path& file)
{
    const auto running = bench.begin(Job::loading);
    if (!running)
        return showProblem(bench, std::u16string(text(desktop_text::listBusy)));
    tell(bench, desktop_text::listOpening, {shownName(file)});
    const Settings settings = bench.desktop().settings();
    const PropertyAccess reading(bench.platform(), engineOptionsFrom(settings));
    auto loaded = loadResults(file, bench.platform().shell(), reading.catalogue, bench.cancel());
    if (!loaded)
        return tellFailure(bench, desktop_text::listOpenFailed, file, loaded.error());
    show(bench, *loaded, settings, file);
    remember(bench.desktop(), file);
    tellLoaded(bench, *loaded, file);
}

void saveListedResults(Workbench& bench, const std::filesystem::path& file)
{
    ListSession* const session = bench.session();
    if (session == nullptr || bench.job() != Job::none)
        return showProblem(bench, std::u16string(text(desktop_text::listBusy)));
    tell(bench, desktop_text::listSaving, {shownName(file)});
    const auto written = saveResults(file, storedResults(bench, *session), bench.platform().output());
    if (!written)
        return tellFailure(bench, desktop_text::listSaveFailed, file, written.error());
    session->file = bytesFromNative(file.native());
    remember(bench.desktop(), file);
    const std::uint32_t groups = bench.results().groupCount();
    tell(bench, groups == 1 ? TextId::oneGroupSaved : TextId::manyGroupsSaved,
         {shownName(file), std::to_string(groups)});
}

void exportTable(Workbench& bench, const std::u16string& windowTitle)
{
    if (bench.session() == nullptr)
        return;
    tell(bench, desktop_text::listExporting, {});
    Platform& platform = bench.platform();
    const ExportOutcome outcome =
        exportCsv(bench.results(), viewOfColumns(columnsInView(bench), bench.session()->access.source), windowTitle,
                  {platform.output(), platform.processes(), platform.places(), platform.clock()});
    if (outcome.message.empty())
        tell(bench, desktop_text::listExported, {shownName(outcome.file)});
    else
        bench.tell(outcome.message);
}

}  // namespace kelvane
