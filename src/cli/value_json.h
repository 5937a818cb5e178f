// Values and paths as JSON.
#pragma once

#include <nlohmann/json.hpp>
#include <string_view>

#include "props/property_source.h"

namespace kelvane {

using Json = nlohmann::ordered_json;  // members in the order in which they are documented

enum class Layout { oneLine, indented };

// Without a line feed at the end. Never throws: what is no UTF-8 becomes U+FFFD.
[[nodiscard]] std::string dump(const Json& json, Layout layout);

// Adds "path" and, for a name that is no valid UTF-8, "pathBytes" with its percent-encoded bytes.
void addPath(Json& object, std::string_view bytes);

// Numbers and booleans as themselves, dates in ISO 8601, texts as strings, several values as an array; null for a
// missing value. `raw` may be empty: then the value alone decides.
[[nodiscard]] Json valueJson(const PropValue& value, const RawValue& raw);

// ISO 8601, or null for an unknown time.
[[nodiscard]] Json timeJson(FileTime time);

}  // namespace kelvane
