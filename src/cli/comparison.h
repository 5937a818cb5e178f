// Two files held against each other, and how the outcome is printed.
#pragma once

#include <iosfwd>
#include <string>

#include "app/pair_comparison.h"
#include "cli/options.h"

namespace kelvane {

struct Comparison : PairComparison {
    std::string a, b;  // the paths as they were typed
};

// Text, JSON or CSV; a comparison has no NUL form.
void writeComparison(OutputFormat format, const Comparison& comparison, std::ostream& out);

}  // namespace kelvane
