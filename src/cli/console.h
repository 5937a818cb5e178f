// What a verb talks to: the streams, the person's cancel flag, the terminal.
#pragma once

#include <functional>
#include <iosfwd>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include "base/cancel.h"
#include "cli/exit_code.h"
#include "platform/platform.h"

namespace kelvane {

struct Console {
    std::ostream& out;  // results, and nothing else
    std::ostream& err;  // progress and messages
    const CancelFlag& cancel;
    std::optional<unsigned> errorColumns;            // the width of the terminal behind `err`; nothing for a file
    std::function<std::error_code()> outputFailure;  // why `out` failed, where the stream knows; may be empty
    // Shows a question on `err` and waits for a line; nothing when none comes, or the person presses Ctrl-C. Empty
    // where nobody can be asked.
    std::function<std::optional<std::string>(std::string_view question)> ask = nullptr;
};

using Arguments = std::vector<std::string>;  // paths in the form of PathRules

// Runs the program: the first argument names the verb. Decides the exit code alone; a failure of `out` included.
[[nodiscard]] ExitCode runConsole(const Arguments& arguments, Platform& platform, const Console& console);

// "kelvane-cli: <message>" on a line of its own.
void complain(const Console& console, std::string_view message);

// A line for each; none is nothing to say.
void complainOf(const std::vector<std::string>& messages, const Console& console);

// The same for an end by bad usage or input: gives ExitCode::usage.
[[nodiscard]] ExitCode refuse(const Console& console, std::string_view message);

// The same for an end by the person's wish: gives ExitCode::cancelled.
[[nodiscard]] ExitCode stopCancelled(const Console& console);

// What a complaint about a verb's usage ends with: where its help is.
[[nodiscard]] std::string helpHint(std::string_view verb);

}  // namespace kelvane
