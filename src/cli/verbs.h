// The verbs of the console program.
#pragma once

#include <span>
#include <string_view>

#include "base/text_table.h"
#include "cli/console.h"

namespace kelvane {

struct Verb {
    std::string_view name;
    TextId summary;
    ExitCode (*run)(const Arguments& arguments, Platform& platform, const Console& console);
};

// In the order in which the help lists them.
[[nodiscard]] std::span<const Verb> verbs() noexcept;

[[nodiscard]] ExitCode scanVerb(const Arguments& arguments, Platform& platform, const Console& console);
[[nodiscard]] ExitCode showVerb(const Arguments& arguments, Platform& platform, const Console& console);
[[nodiscard]] ExitCode exportVerb(const Arguments& arguments, Platform& platform, const Console& console);
[[nodiscard]] ExitCode cleanVerb(const Arguments& arguments, Platform& platform, const Console& console);
[[nodiscard]] ExitCode undoVerb(const Arguments& arguments, Platform& platform, const Console& console);
[[nodiscard]] ExitCode compareVerb(const Arguments& arguments, Platform& platform, const Console& console);
[[nodiscard]] ExitCode describeVerb(const Arguments& arguments, Platform& platform, const Console& console);
[[nodiscard]] ExitCode ignoreVerb(const Arguments& arguments, Platform& platform, const Console& console);
[[nodiscard]] ExitCode settingsVerb(const Arguments& arguments, Platform& platform, const Console& console);

}  // namespace kelvane
