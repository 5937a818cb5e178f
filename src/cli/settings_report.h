// Settings as the console program prints them.
#pragma once

#include <iosfwd>
#include <span>
#include <string>

#include "app/registry_access.h"
#include "app/settings_table.h"
#include "platform/run_cache.h"

namespace kelvane {

// Where they are kept, for people: a path, or the key in the registry.
[[nodiscard]] std::string placeText(const SettingsLocation& location);

// A set of bits or a colour, which is written in hexadecimal.
[[nodiscard]] bool isBits(const SettingRow& row);

// "1 to 50", "0, or 10000 and more"; empty where any number will do.
[[nodiscard]] std::string rangeText(const NumberRule& rule);

// One line a setting: key, value, default and range, meaning.
void writeSettingsText(CRegistryAccess& settings, std::ostream& out);

// {"location": ..., "settings": [...], "lists": [...]}; of the given rows alone. What is kept from run to run, where it
// is given, as "cache": {"descriptors": n, "bytes": n}.
void writeSettingsJson(CRegistryAccess& settings, std::span<const SettingRow* const> rows, std::ostream& out,
                       const RunCacheFigures* cache = nullptr);

// The bare value, of a list a line each.
void writeSettingValue(CRegistryAccess& settings, const SettingRow& row, std::ostream& out);

}  // namespace kelvane
