// The words for the tools through which every desktop is asked to open something (xdg-utils).
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "base/result.h"
#include "platform/processes.h"

namespace kelvane::linux_os {

// "https://...", "mailto:...": a scheme, and nothing that a tool could take for an option or a line of its own.
[[nodiscard]] bool isLink(const std::string& text);

// The file as a link, which no tool can take for anything else, whatever its name is.
[[nodiscard]] std::string fileLink(const std::filesystem::path& absolute);

// What xdg-open's exit code means; without one it is still running the program that it found.
[[nodiscard]] Status openingOutcome(std::optional<int> exitCode);

// Nothing for a draft that xdg-email cannot be told.
[[nodiscard]] std::optional<std::vector<std::string>> mailArguments(const MailDraft& draft);

}  // namespace kelvane::linux_os
