// The one line on a terminal that says how far long work has come.
#pragma once

#include <cstdint>
#include <iosfwd>
#include <optional>
#include <string>

#include "app/progress_text.h"
#include "cli/console.h"
#include "cli/options.h"
#include "platform/clock.h"

namespace kelvane {

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
