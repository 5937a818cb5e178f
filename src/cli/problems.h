// What went wrong with roots, in words; of files, see errorText().
#pragma once

#include <string>

#include "app/error_text.h"
#include "engine/root_list.h"

namespace kelvane {

// Why a root is not walked, and for protection which option admits it.
[[nodiscard]] std::string rootProblemText(const DroppedRoot& root);

}  // namespace kelvane
