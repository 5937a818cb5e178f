// The one line on a terminal that says how far long work has come.
#pragma once

#include <cstdint>
#include <iosfwd>
#include <optional>
#include <string>

#include "cli/console.h"
#include "cli/options.h"
#include "engine/scan_observer.h"
#include "platform/clock.h"

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

// Draws over itself with carriage returns and spaces only, so that any terminal can show it. Used by one thread.
class ProgressLine {
public:
    // columns: the width of the terminal; the line stays below it. Clock and stream outlive the line.
    ProgressLine(std::ostream& err, const Clock& clock, unsigned columns);

    void show(const ProgressFigures& figures);
    void erase();

private:
    [[nodiscard]] std::string compose(const ProgressFigures& figures) const;
    void draw(std::string text);

    std::ostream& err_;
    const Clock& clock_;
    std::size_t width_;
    std::size_t drawn_ = 0;  // characters on the screen
    std::string part_;
    std::uint64_t partBegan_;
};

// The line where one is wanted: always, or on a terminal.
[[nodiscard]] std::optional<ProgressLine> wantedProgressLine(ProgressMode mode, const Console& console,
                                                             const Clock& clock);

}  // namespace kelvane
