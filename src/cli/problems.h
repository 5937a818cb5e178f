// What went wrong, in words: errors of files and roots.
#pragma once

#include <string>

#include "base/result.h"
#include "engine/root_list.h"

namespace kelvane {

// The system's own text where there is one, else the kind in words.
[[nodiscard]] std::string errorText(const Error& error);

// Why a root is not walked, and for protection which option admits it.
[[nodiscard]] std::string rootProblemText(const DroppedRoot& root);

}  // namespace kelvane
