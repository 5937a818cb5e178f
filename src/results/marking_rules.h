// Rules that mark every item of a group but those to keep.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "base/result.h"
#include "platform/path_rules.h"
#include "props/property_source.h"
#include "results/results_model.h"

namespace kelvane {

// Which items of a group are kept. Each rule narrows the items that the rules before it left as equals; a rule that
// would leave none leaves all of them.
enum class KeepRule : std::uint8_t {
    biggest,
    smallest,
    newest,
    oldest,
    first,  // in the order of the list
    last,
    under,        // every item under a folder: the one rule that may mark a whole group
    nameMatches,  // every item whose file name matches masks
    deepest,      // by the number of folders in the path
    shallowest,
    longestPath,  // by UTF-16 units, as limits on paths are counted
    shortestPath,
};

struct MarkingRule {
    KeepRule rule = KeepRule::biggest;
    std::string folder;  // for `under`, as PathRules have paths
    std::string masks;   // for `nameMatches`, see FileMasks
};

// What to keep, without any rule or preferred folder: nothing, and such a plan is refused. Exactly one item is kept
// of what rules leave as equals, the first one in the list; rules that only say where items lie or how they are called
// keep all they leave. An item without the value that a rule asks for never wins over one that has it.
struct MarkingPlan {
    std::vector<MarkingRule> chain;             // "newest, then biggest, then first"
    std::vector<std::string> preferredFolders;  // before the chain: the first of these that has items of the group wins
    std::vector<std::string> protectedFolders;  // items under these are never marked, but kept in addition

    // The plan is the location rule and nothing else, which marks a group whole when none of it lies in the folder.
    [[nodiscard]] bool mayMarkWholeGroups() const;
};

// What a plan would do, told before anything is marked.
struct MarkingPreview {
    MarkSum marked;
    std::uint32_t groups = 0;          // that get a mark
    std::uint32_t groupsLost = 0;      // of these, without an unmarked row: by the location rule only
    std::uint32_t protectedItems = 0;  // would be marked, but lie in protected folders
    friend bool operator==(const MarkingPreview&, const MarkingPreview&) = default;
};

// All of it must outlive the call.
struct MarkingPorts {
    const PropertySource& properties;
    const PathRules& paths;
};

// Looks at the rows in view, group by group; a group that has one row only is left as it is. Nothing is marked.
// `invalid` with a text for people for a list that is not grouped and a plan that says nothing.
[[nodiscard]] Result<MarkingPreview> previewMarks(ResultsModel& model, const MarkingPlan& plan,
                                                  const MarkingPorts& ports);

// Does what previewMarks() tells: with tick boxes kept rows lose their tick and the others get one, in one step of
// history; without them the selection is cleared, and becomes the rows that are not kept. Fails likewise, and then
// nothing changes.
[[nodiscard]] Result<MarkingPreview> applyMarks(ResultsModel& model, const MarkingPlan& plan,
                                                const MarkingPorts& ports);

}  // namespace kelvane
