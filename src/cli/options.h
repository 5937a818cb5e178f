// From what was typed to what is wanted: the options that scan and compare share.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "app/typed_size.h"
#include "base/result.h"
#include "engine/engine_options.h"
#include "engine/scan_node.h"
#include "platform/path_rules.h"

namespace CLI {
class App;
}

namespace kelvane {

enum class OutputFormat { text, json, csv, null };
enum class ProgressMode { automatic, always, never };

// The words as they were typed; nothing is checked yet.
struct RawOptions {
    std::string category = "all", masks, match, similar, minSize, settings, seed, threads;
    std::string progress = "auto", format;
    bool content = false, noContent = false, sameType = false, ignoreSmall = false, noSubfolders = false;
    bool noProtect = false, followLinks = false, archives = false, lowPriority = false, json = false, verbose = false;
    bool exhaustive = false, fileSizes = false, scoreOnly = false, noCache = false;
};

// Checked, and put into the engine's terms.
struct ScanRequest {
    CScanNode definition;
    EngineOptions options;
    std::optional<std::uint64_t> seed;
    ProgressMode progress = ProgressMode::automatic;
    OutputFormat format = OutputFormat::text;
    bool verbose = false;
    bool useCache = true;  // what earlier runs found out about contents
};

// Declares the options with their help; `raw` must outlive the parsing.
void addOptions(CLI::App& app, RawOptions& raw);

// `settings` are the options that hold where nothing was typed. `invalid` with a message for the person. Property names
// are left to the criteria, which know the catalogue.
[[nodiscard]] Result<ScanRequest> makeRequest(const RawOptions& raw, const std::vector<std::string>& roots,
                                              const PathRules& paths, const EngineOptions& settings = {});

// The choices of --format, for verbs that print data without scanning: `json` is the --json shorthand.
[[nodiscard]] Result<OutputFormat> chooseFormat(std::string_view format, bool json);
// The same for reports, which are texts or JSON.
[[nodiscard]] Result<OutputFormat> chooseReportFormat(std::string_view format, bool json);

[[nodiscard]] Result<ProgressMode> chooseProgress(std::string_view word);

// The word by which --category names a category; empty for one that has none.
[[nodiscard]] std::string_view categoryWord(Category category);

}  // namespace kelvane
