// How far long work has come, in words.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "base/size_text.h"
#include "engine/scan_observer.h"

namespace kelvane {

// How far a part of the work has come. Totals are 0 while they are not known; time left goes by bytes where their total
// is known, else by items.
struct ProgressFigures {
    std::string title;  // of the part: another one begins when it changes
    std::uint64_t items = 0;
    std::uint64_t totalItems = 0;
    std::uint64_t bytes = 0;
    std::uint64_t totalBytes = 0;
    bool bytesAreRead = true;  // else they are sizes of what was handled, and their pace says nothing
};

[[nodiscard]] ProgressFigures figuresOf(const ScanProgress& progress);

// The words for them; empty where there is nothing to say, or not yet.
struct ProgressTexts {
    std::string items;
    std::string read;
    std::string pace;
    std::string left;
};

// elapsed: milliseconds since the part began.
[[nodiscard]] ProgressTexts progressTexts(const ProgressFigures& figures, std::uint64_t elapsed,
                                          const SizeWords& size = sizeText);

}  // namespace kelvane
