// The stages of a comparison in words, as a table shows them.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "app/pair_comparison.h"

namespace kelvane {

// In UTF-8; as many as titles of stageTitles().
[[nodiscard]] std::vector<std::string> stageCells(const StageReport& stage, bool approximate);
// Number, name, value of the first file, of the second one, difference, allowed, score, outcome.
[[nodiscard]] std::vector<std::string> stageTitles();

// "12.5 %"; empty for none.
[[nodiscard]] std::string percentText(const std::optional<double>& percent);

// What the second look at two pictures found, a line each; empty where there was none.
[[nodiscard]] std::vector<std::string> lookLines(const StageReport& stage);

// Whether the files match, in a sentence.
[[nodiscard]] std::string conclusionText(const PairComparison& comparison);

}  // namespace kelvane
