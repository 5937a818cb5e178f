// Port: whether a person is watching.
#pragma once

#include <optional>

namespace kelvane {

enum class StandardStream { output, errors };

class Terminal {
public:
    virtual ~Terminal() = default;
    // The width of the terminal that the stream is shown on, in characters (80 where it does not tell); nothing for a
    // file or a pipe. Asked anew each time, since a person may change the window.
    [[nodiscard]] virtual std::optional<unsigned> columns(StandardStream stream) const = 0;
};

}  // namespace kelvane
