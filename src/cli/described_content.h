// What a file is compared by, the way it is printed.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "app/property_access.h"
#include "base/cancel.h"
#include "cli/value_json.h"
#include "engine/similar_content.h"

namespace kelvane {

enum class DescriptorKind { text, audio, image };

// The word by which it is asked for, and under which it stands in JSON.
[[nodiscard]] std::string_view descriptorWord(DescriptorKind kind);

struct DescribedContent {
    Json json;                                               // null where there is none
    std::vector<std::pair<std::string, std::string>> lines;  // titles and values, for people
    NoDescriptorCause cause;                                 // why there is none
};

// Reads the file for it. A preview is that of a film where the name says that the file is one, else that of a picture.
[[nodiscard]] DescribedContent describeContent(DescriptorKind kind, const ShellItem& item,
                                               const PropertyAccess& properties, Platform& platform,
                                               const CancelFlag& cancel);

// The descriptor that a file of such a name has; nothing where a look at it says that it has none.
[[nodiscard]] std::optional<DescriptorKind> usualDescriptor(const ShellItem& item, const PropertyAccess& properties);

}  // namespace kelvane
