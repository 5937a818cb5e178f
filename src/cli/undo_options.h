// What is to be taken back: which run, and all of it or single items.
#pragma once

#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "base/result.h"
#include "cleanup/journal.h"
#include "cli/options.h"
#include "platform/path_rules.h"

namespace CLI {
class App;
}

namespace kelvane {

// The words as they were typed.
struct RawUndo {
    std::vector<std::string> runs, items;
    std::string format, progress = "auto";
    bool list = false, dryRun = false, json = false;
};

struct UndoRequest {
    std::optional<RunNumber> run;  // nothing: the latest of which anything is left
    std::vector<std::string> items;
    bool list = false;
    bool dryRun = false;
    OutputFormat format = OutputFormat::text;
    ProgressMode progress = ProgressMode::automatic;
};

// Declares the options; `raw` must outlive the parsing.
void addUndoOptions(CLI::App& app, RawUndo& raw);

// `invalid` with a message for the person.
[[nodiscard]] Result<UndoRequest> makeUndoRequest(const RawUndo& raw);

// Items as people type them, found among the paths of a journal: by the typed name made absolute, or by the real one,
// links in the folders above looked through. The item itself is never followed. Rules outlive it; one thread.
class ItemChoice {
public:
    ItemChoice(const std::vector<std::string>& typed, const PathRules& paths);

    // Every item when none was typed. Remembers which of the typed ones were asked about.
    [[nodiscard]] bool holds(const std::filesystem::path& item);
    // The typed ones that holds() never said yes to.
    [[nodiscard]] std::vector<std::string> missed() const;

private:
    [[nodiscard]] std::string keyOf(const std::filesystem::path& path) const;
    [[nodiscard]] const std::filesystem::path& realFolder(const std::filesystem::path& folder);
    [[nodiscard]] bool find(const std::filesystem::path& path);

    const PathRules& paths_;
    std::vector<std::string> typed_;
    std::vector<bool> met_;
    std::unordered_multimap<std::string, std::size_t> byKey_;
    std::map<std::filesystem::path, std::filesystem::path> realFolders_;
};

}  // namespace kelvane
