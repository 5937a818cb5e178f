#include "cli/undo_options.h"

#include <CLI/CLI.hpp>
#include <array>
#include <charconv>

#include "base/filled_text.h"
#include "cli/arguments.h"
#include "cli/choices.h"
#include "cli/console.h"
#include "cli/settings_in_force.h"
#include "platform/native_text.h"

namespace kelvane {
namespace {

using Path = std::filesystem::path;

std::optional<RunNumber> parseRun(const std::string& typed)
{
    std::uint32_t number = 0;
    const auto [end, error] = std::from_chars(typed.data(), typed.data() + typed.size(), number);
    if (error != std::errc() || end != typed.data() + typed.size() || number == 0)
        return std::nullopt;
    return RunNumber{number};
}

Status readRun(const RawUndo& raw, UndoRequest& request)
{
    if (raw.runs.empty())
        return {};
    request.run = parseRun(raw.runs.front());
    if (!request.run || raw.runs.size() > 1)
        return invalid(filledText(TextId::undoNeedsNumber, {request.run ? raw.runs[1] : raw.runs[0]}) +
                       helpHint("undo"));
    return {};
}

Status readFormat(const RawUndo& raw, UndoRequest& request)
{
    const auto chosen = chooseReportFormat(raw.format, raw.json);
    if (!chosen)
        return chosen.error();
    request.format = *chosen;
    return {};
}

Status readProgress(const RawUndo& raw, UndoRequest& request)
{
    const auto chosen = chooseProgress(raw.progress);
    if (!chosen)
        return chosen.error();
    request.progress = *chosen;
    return {};
}

// A list says nothing of single items, and tells of every run.
Status readList(const RawUndo& raw, UndoRequest& request)
{
    request.list = raw.list;
    request.dryRun = raw.dryRun;
    request.items = raw.items;
    if (raw.list && raw.dryRun)
        return invalid(filledText(TextId::optionsExclude, {"--list", "--dry-run"}));
    if (raw.list && !raw.items.empty())
        return invalid(filledText(TextId::optionsExclude, {"--list", "--item"}));
    return {};
}

}  // namespace

void addUndoOptions(CLI::App& app, RawUndo& raw)
{
    app.add_option("RUN", raw.runs, filledText(TextId::helpUndoRun))->type_name("");
    app.add_flag("--list", raw.list, filledText(TextId::helpUndoList));
    app.add_option("--item", raw.items, filledText(TextId::helpUndoItem))
        ->check(notEmpty)
        ->type_name("PATH")
        ->allow_extra_args(false);
    app.add_flag("--dry-run", raw.dryRun, filledText(TextId::helpUndoDryRun));
    app.add_option("--progress", raw.progress, filledText(TextId::helpProgress))
        ->check(notEmpty)
        ->type_name("WORD")
        ->take_last();
    app.add_option("--format", raw.format, filledText(TextId::describeFormatHelp))
        ->check(notEmpty)
        ->type_name("WORD")
        ->take_last();
    app.add_flag("--json", raw.json, filledText(TextId::helpJson));
}

Result<UndoRequest> makeUndoRequest(const RawUndo& raw)
{
    UndoRequest request;
    for (const Status& read :
         {readRun(raw, request), readFormat(raw, request), readList(raw, request), readProgress(raw, request)}) {
        if (!read)
            return read.error();
    }
    return request;
}

ItemChoice::ItemChoice(const std::vector<std::string>& typed, const PathRules& paths)
    : paths_(paths), typed_(typed), met_(typed.size(), false)
{
    for (std::size_t at = 0; at < typed_.size(); ++at) {
        const Path normal = namedFile(typed_[at]).lexically_normal();
        const Path path = normal.has_filename() ? normal : normal.parent_path();
        const std::string asTyped = keyOf(path);
        const std::string asReal = keyOf(realFolder(path.parent_path()) / path.filename());
        byKey_.emplace(asTyped, at);
        if (asReal != asTyped)
            byKey_.emplace(asReal, at);
    }
}

bool ItemChoice::holds(const Path& item)
{
    if (typed_.empty())
        return true;
    return find(item) || find(realFolder(item.parent_path()) / item.filename());
}

std::vector<std::string> ItemChoice::missed() const
{
    std::vector<std::string> words;
    for (std::size_t at = 0; at < typed_.size(); ++at) {
        if (!met_[at])
            words.push_back(typed_[at]);
    }
    return words;
}

std::string ItemChoice::keyOf(const Path& path) const
{
    return paths_.comparable(bytesFromNative(path.native()));
}

// The folder itself where that cannot be told.
const Path& ItemChoice::realFolder(const Path& folder)
{
    const auto [known, isNew] = realFolders_.try_emplace(folder);
    if (isNew) {
        std::error_code error;
        known->second = std::filesystem::canonical(folder, error);
        if (error)
            known->second = folder;
    }
    return known->second;
}

bool ItemChoice::find(const Path& path)
{
    const auto [first, last] = byKey_.equal_range(keyOf(path));
    for (auto at = first; at != last; ++at)
        met_[at->second] = true;
    return first != last;
}

}  // namespace kelvane
