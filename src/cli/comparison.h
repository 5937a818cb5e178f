// Two files held against each other, and how the outcome is printed.
#pragma once

#include <iosfwd>
#include <string>
#include <vector>

#include "cli/options.h"
#include "engine/matcher.h"

namespace kelvane {

struct Comparison {
    std::string a, b;  // the paths as they were typed
    MatchResult result;
    std::vector<StageReport> stages;  // up to the one that parted the files
    bool sameFile = false;            // two names of one file: a scan would list it once
};

// Text, JSON or CSV; a comparison has no NUL form.
void writeComparison(OutputFormat format, const Comparison& comparison, std::ostream& out);

}  // namespace kelvane
