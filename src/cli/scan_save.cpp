#include "cli/scan_save.h"

#include <array>

#include "app/listed_results.h"
#include "base/filled_text.h"
#include "cli/problems.h"
#include "cli/settings_in_force.h"
#include "engine/results_file.h"

namespace kelvane {
namespace {

Error refusal(const std::string& file, std::string_view why)
{
    return {ErrorKind::invalid, 0, file + ": " + std::string(why)};
}

// By its first bytes: one that is damaged further on was a saved scan too.
bool isSavedScan(const std::filesystem::path& path, FileSystem& files)
{
    constexpr std::array magic = {std::byte{'I'}, std::byte{'K'}, std::byte{'V'}, std::byte{'1'}};
    const auto reader = files.openForReading(path, ReadPattern::sequential, Links::followed);
    std::array<std::byte, magic.size()> start{};
    if (!reader)
        return false;
    const auto read = (*reader)->read(start);
    return read && *read == magic.size() && start == magic;
}

StoredResults storedResults(const ScanCriteria& criteria, const ScanReport& report, const ResultsModel& results,
                            const PathRules& paths)
{
    StoredResults stored;
    stored.columns = report.columns;
    stored.definition = criteria.definition;
    stored.definition->roots = paths.joinRoots(report.roots.roots);
    stored.figures = figuresOf(report, criteria.options);
    stored.rows = storedRows(results);
    return stored;
}

}  // namespace

Status checkTarget(const SaveTarget& target, Platform& platform)
{
    if (target.file.empty())
        return {};
    const std::filesystem::path path = namedFile(target.file);
    const auto folder = platform.files().details(path.parent_path(), Links::followed);
    if (!folder)
        return refusal(target.file, errorText(folder.error()));
    const auto there = platform.files().details(path, Links::followed);
    if (!there && there.error().kind == ErrorKind::notFound)
        return {};
    if (!there)
        return refusal(target.file, errorText(there.error()));
    if (there->kind != FileKind::regular)
        return refusal(target.file, filledText(TextId::notRegularFile));
    if (!target.overwrite && !isSavedScan(path, platform.files()))
        return Error{ErrorKind::exists, 0, filledText(TextId::saveNotReplaced, {target.file})};
    return {};
}

ExitCode saveScan(const SaveTarget& target, const ScanCriteria& criteria, const ScanReport& report,
                  const ResultsModel& results, Platform& platform, const Console& console)
{
    if (target.file.empty())
        return ExitCode::done;
    const auto written = saveResults(namedFile(target.file), storedResults(criteria, report, results, platform.paths()),
                                     platform.output());
    if (!written) {
        complain(console,
                 target.file + ": " + filledText(TextId::contentsFileNotWritten) + ": " + errorText(written.error()));
        return ExitCode::incomplete;
    }
    const std::uint32_t groups = results.groupCount();
    const TextId outcome = *written == 0 ? TextId::nothingSaved
                           : groups == 1 ? TextId::oneGroupSaved
                                         : TextId::manyGroupsSaved;
    complain(console, filledText(outcome, {target.file, std::to_string(groups)}));
    return ExitCode::done;
}

}  // namespace kelvane
