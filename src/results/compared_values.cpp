#include "results/compared_values.h"

#include <algorithm>

#include "base/words.h"

namespace kelvane {

bool listsProperty(const CScanNode& definition, std::string_view canonicalName)
{
    const std::vector<std::string> names = splitWords(definition.properties, ',');
    return std::find(names.begin(), names.end(), canonicalName) != names.end();
}

bool groupsHaveOneSize(const CScanNode& definition)
{
    return listsProperty(definition, "System.Size") ||
           (definition.has(scan_flag::contents) && !definition.has(scan_flag::fuzzy));
}

}  // namespace kelvane
