// The parsing of a verb's arguments: help, unknown words, leftovers.
#pragma once

#include <optional>

#include "base/text_table.h"
#include "cli/console.h"

namespace CLI {
class App;
}

namespace kelvane {

// Parses into the variables that the app's options are bound to. An exit code means that the verb is over: help was
// printed, or the usage error that was found. `positionals` is how the usage line names what is no option.
[[nodiscard]] std::optional<ExitCode> parseArguments(CLI::App& app, std::string_view positionals,
                                                     const Arguments& arguments, const Console& console);

// A check of options: why a value is refused, "" for one that is not.
[[nodiscard]] std::string notEmpty(const std::string& value);

// Why the words of a verb that works on one saved scan are not the name of one file; nothing when they are.
[[nodiscard]] std::optional<std::string> notOneFile(std::string_view verb, const std::vector<std::string>& words);

// What stands behind the options in a verb's help: notes, examples (lines of the command line, each ended), what is
// said last, and the exit codes.
struct HelpFooter {
    std::optional<TextId> notes;
    std::string_view examples;
    std::optional<TextId> last;
};
[[nodiscard]] std::string footerText(const HelpFooter& footer);

}  // namespace kelvane
