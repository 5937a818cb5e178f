// What a scan left out, in words.
#pragma once

#include <string>
#include <vector>

#include "engine/scan_driver.h"

namespace kelvane {

// What took no part although nothing is wrong with it. Without a word of it, a search by a property that no file has
// would look like one that found nothing.
[[nodiscard]] std::vector<std::string> leftOutNotes(const ScanReport& report, const ScanCriteria& criteria);

}  // namespace kelvane
