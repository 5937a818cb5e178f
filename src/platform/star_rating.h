// What people think of a file, in the published scale of System.Rating: 1 to 99, where 1, 25, 50, 75 and 99 stand for
// one to five stars.
#pragma once

#include <cstdint>

#include "platform/fact_list.h"

namespace kelvane {

// 1 to 5. No stars say that nobody has judged, and fewer that it was turned down: neither adds anything.
void addStars(std::int64_t stars, FactList& facts);

// 1 to 99, as the scale has it; other numbers add nothing.
void addRating(std::int64_t rating, FactList& facts);

}  // namespace kelvane
