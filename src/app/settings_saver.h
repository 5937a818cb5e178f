// From the settings that the program works with to the place where they are kept.
#pragma once

#include "app/settings.h"
#include "app/settings_context.h"
#include "app/settings_node.h"

namespace kelvane {

// Every row of the table that the persistence mode allows, in its order; ends with the first failure. Not a batch by
// itself: the caller begins and commits.
[[nodiscard]] SettingsCode writeSettings(const SettingsRoot& root, const Settings& settings,
                                         const SettingsContext& context);

// The same as one batch: all of it is kept, or nothing.
[[nodiscard]] SettingsCode saveSettings(const SettingsRoot& root, const Settings& settings,
                                        const SettingsContext& context);

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
