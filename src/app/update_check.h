// The command that asks the makers' page for a newer version.
#pragma once

#include <string>
#include <string_view>

#include "app/questions.h"
#include "app/settings.h"
#include "platform/clock.h"
#include "platform/processes.h"

namespace kelvane {

// The makers' page with the version of this program as its parameter.
[[nodiscard]] std::string updateLink(std::string_view page, std::u16string_view version);

// Opens the page in the browser, which tells the rest. Notes the time of the check when the computer is online, and
// says so when it is not.
void checkForUpdates(Settings& settings, Processes& processes, const Clock& clock, Questions& questions);

}  // namespace kelvane
