// Which files of a saved scan a verb works on, and in which order.
#pragma once

#include <string>
#include <vector>

#include "cli/saved_scan.h"
#include "results/result_sort.h"

namespace CLI {
class App;
}

namespace kelvane {

// The words as they were typed.
struct RawView {
    std::string filter, sort, columns;
    bool allColumns = false;
};

struct View {
    std::u16string filter;
    bool allColumns = false;
    std::vector<SortKey> sort;
    std::vector<PropRef> columns;  // empty when none were named
};

// Declares --filter, --all-columns, --sort and --columns; `raw` must outlive the parsing.
void addViewOptions(CLI::App& app, RawView& raw, TextId columnsHelp);

// `invalid` with a message for the person.
[[nodiscard]] Result<View> makeView(const RawView& raw, const PropertyCatalogue& catalogue);

// "size,-name" or canonical names; a "-" in front sorts in descending order.
[[nodiscard]] Result<std::vector<SortKey>> parseSortKeys(std::string_view typed, const PropertyCatalogue& catalogue);

// Name and folder, then these (those of the scan when there are none) but for what they repeat.
[[nodiscard]] std::vector<PropRef> tableColumns(const SavedScan& scan, const std::vector<PropRef>& named);

// Hides what the filter leaves out and sorts the rest. An exit code means that the verb is over: cancelled.
[[nodiscard]] std::optional<ExitCode> applyView(const View& view, GroupedOrder grouped, SavedScan& scan,
                                                const Console& console);

// Complains when the filter leaves nothing; false then.
[[nodiscard]] bool filterFound(const View& view, const SavedScan& scan, const Console& console);

}  // namespace kelvane
