// Scan results files, "*.ikvs": a scan's groups, kept to go on with them later. docs/formats/results-file.md describes
// every byte.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "base/cancel.h"
#include "base/result.h"
#include "base/work_count.h"
#include "engine/item_block.h"
#include "engine/scan_figures.h"
#include "engine/scan_node.h"
#include "platform/file_output.h"
#include "platform/shell_namespace.h"
#include "props/property_catalogue.h"

namespace kelvane {

// Paths, facts and group numbers of the rows are kept; marks are not.
struct StoredResults {
    std::vector<PropRef> columns;
    bool detailsView = true;
    bool viewOption = false;
    std::vector<StoredRow> rows;          // in list order
    std::optional<CScanNode> definition;  // nothing when the file's own was left out or is not readable
    std::optional<ScanFigures> figures;   // what the scan counted
};

// Paths of files are absolute here. The bytes written: 0 for no rows, and then no file is made and none replaced. What
// fails leaves the file that was there. The caller tells of a failure as TextId::contentsFileNotWritten; the detail
// says why. Figures that make the definition too long are left out, and so is a definition that is too long by itself;
// it is kept under the name "binLastScan", whatever its own. The flag, where there is one, is looked at before the
// file is touched: `cancelled` leaves it alone.
[[nodiscard]] Result<std::uint64_t> saveResults(const std::filesystem::path& path, const StoredResults& results,
                                                FileOutput& output, const CancelFlag* cancel = nullptr);

// What becomes of a file none of whose rows is there any more: as a mere record of a scan it is still of use.
enum class AllMissing : std::uint8_t { fails, isLoaded };

struct LoadedResults {
    StoredResults results;
    std::uint32_t missing = 0;              // rows whose files are not there any more: TextId::itemsNotLocated
    std::vector<std::string> missingFiles;  // their paths, in the form of path rules
};

// The rows as the scan saw them: sizes, times and identities are those of the file and not what the disk says now. Only
// that every file is still there, as the kind of thing that it was, is looked up; a file is never opened. An entry of
// an archive gets its present ordinal, since that is where it is read from. Nothing is handed over before the whole
// file was checked. TextId::contentsCorrupt, and why, for whatever fails apart from `cancelled`; that goes also for a
// file none of whose rows is there any more, unless that is wanted. Rows are counted where somebody watches.
[[nodiscard]] Result<LoadedResults> loadResults(const std::filesystem::path& path, ShellNamespace& shell,
                                                const PropertyCatalogue& catalogue, const CancelFlag& cancel,
                                                AllMissing allMissing = AllMissing::fails, WorkCount* count = nullptr);

}  // namespace kelvane
