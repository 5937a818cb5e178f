// Between the types of the content plug-in interface and the property system's.
#pragma once

#include <filesystem>
#include <optional>
#include <string_view>

#include "platform/raw_value.h"
#include "text/content_plugin_api.h"
#include "text/guarded_room.h"

namespace kelvane {

// Whether the text looks the same in every encoding of the system.
[[nodiscard]] bool isAscii(std::string_view text);

// The type of a field's values; `empty` for full texts, nothing for a type that is not read.
[[nodiscard]] std::optional<VarType> pluginFieldType(int type);

// What stands in the room, by the type that the plug-in gave with it. Empty for narrow texts, full texts, errors and
// what is no value (the 31st of February). Dates and times of day carry no time zone: a date is its midnight in UTC, a
// time of day a text.
[[nodiscard]] RawValue pluginValue(int type, const GuardedRoom& room);

// What a plug-in is told at its start: it may keep settings of its own beside itself. The name is left out where it
// does not fit, or could not be told in every encoding.
[[nodiscard]] content_plugin::DefaultParameters defaultPluginParameters(const std::filesystem::path& library);

}  // namespace kelvane
