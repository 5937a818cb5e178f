// The settings as they are where nothing is stored.
#pragma once

#include "app/settings.h"
#include "app/settings_context.h"

namespace kelvane {

// Reads nothing from any place.
[[nodiscard]] Settings defaultSettings(const SettingsContext& context);

}  // namespace kelvane
