// From the settings that the program works with to the place where they are kept.
#pragma once

#include <span>

#include "app/settings.h"
#include "app/settings_context.h"
#include "app/settings_node.h"

namespace kelvane {

struct SettingRow;

// Every row of the table that the persistence mode allows, in its order; ends with the first failure. Not a batch by
// itself: the caller begins and commits.
[[nodiscard]] SettingsCode writeSettings(const SettingsRoot& root, const Settings& settings,
                                         const SettingsContext& context);

// The same as one batch: all of it is kept, or nothing. With it go the rows `byHand`, which the program never writes of
// its own accord, unless only counters are kept.
[[nodiscard]] SettingsCode saveSettings(const SettingsRoot& root, const Settings& settings,
                                        const SettingsContext& context, std::span<const SettingRow* const> byHand = {});

// What `write` writes as one batch.
template <class Write>
[[nodiscard]] SettingsCode writeAsBatch(SettingsStore& store, Write&& write)
{
    if (const SettingsCode code = store.begin(); code != SettingsCode::done)
        return code;
    if (const SettingsCode code = write(); code != SettingsCode::done) {
        store.discard();
        return code;
    }
    return store.commit();
}

}  // namespace kelvane
