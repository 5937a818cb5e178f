// Everything from one place of settings to another, whatever holds them.
#pragma once

#include <string>
#include <vector>

#include "app/settings_context.h"
#include "app/settings_node.h"

namespace kelvane {

struct SkippedSetting {
    std::u16string name;  // "general\nThumbSize", or the section of a list
    std::string reason;
};

struct TransferReport {
    std::size_t values = 0;  // that were written
    std::vector<SkippedSetting> skipped;
};

// Writes what the source holds: values of the table by their kinds, lists entry by entry in place of the target's,
// and what the table does not know as it is. What is damaged or of the wrong type is skipped and named; the first
// failure to write ends it. The persistence mode is left out: it says where settings are. Not a batch by itself.
[[nodiscard]] SettingsCode transferSettings(const SettingsRoot& from, const SettingsRoot& to,
                                            const SettingsContext& context, TransferReport& report);

}  // namespace kelvane
