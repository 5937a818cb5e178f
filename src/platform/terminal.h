// Port: whether a person is watching, and what the person answers.
#pragma once

#include <optional>
#include <string>

#include "base/cancel.h"

namespace kelvane {

enum class StandardStream { output, errors };

class Terminal {
public:
    virtual ~Terminal() = default;
    // The width of the terminal that the stream is shown on, in characters (80 where it does not tell); nothing for a
    // file or a pipe. Asked anew each time, since a person may change the window.
    [[nodiscard]] virtual std::optional<unsigned> columns(StandardStream stream) const = 0;

    // Whether a person can be asked: standard input comes from a keyboard.
    [[nodiscard]] virtual bool isInteractive() const = 0;
    // The next line that is typed, in UTF-8 and without its end; nothing at the end of the input, and within a quarter
    // of a second after `cancel` was set. Text typed before the call counts.
    [[nodiscard]] virtual std::optional<std::string> readLine(const CancelFlag& cancel) = 0;
};

}  // namespace kelvane
