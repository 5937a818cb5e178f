// The one line on a terminal that says how far a scan has come.
#pragma once

#include <cstdint>
#include <iosfwd>
#include <string>

#include "engine/scan_observer.h"
#include "platform/clock.h"

namespace kelvane {

// Draws over itself with carriage returns and spaces only, so that any terminal can show it. Used by one thread.
class ProgressLine {
public:
    // columns: the width of the terminal; the line stays below it. Clock and stream outlive the line.
    ProgressLine(std::ostream& err, const Clock& clock, unsigned columns);

    void show(const ScanProgress& progress);
    void erase();

private:
    [[nodiscard]] std::string compose(const ScanProgress& progress) const;
    void draw(std::string text);

    std::ostream& err_;
    const Clock& clock_;
    std::size_t width_;
    std::size_t drawn_ = 0;  // characters on the screen
    ScanPhase phase_ = ScanPhase::gathering;
    std::uint64_t phaseBegan_;
};

}  // namespace kelvane
