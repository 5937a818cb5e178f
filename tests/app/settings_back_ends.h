// The places where settings can be kept on the system that the tests run on.
#pragma once

#include "platform/linux/adapters.h"
#include "platform/settings_store_contract.h"
#include "support/fakes.h"
#include "support/temp_tree.h"

namespace kelvane::testing {

class MemoryPlace final : public SettingsWorld {
public:
    std::unique_ptr<SettingsStore> open() override { return std::make_unique<MemorySettingsStore>(); }
};

class RegistryPlace final : public SettingsWorld {
public:
    std::unique_ptr<SettingsStore> open() override
    {
        return makeSqliteSettingsStore(tree_.path("config/registry.db"), folding_);
    }

private:
    TempTree tree_;
    SimpleFolding folding_;
};

inline std::vector<SettingsBackEnd> settingsBackEnds()
{
    return {{.name = "Memory", .make = std::make_unique<MemoryPlace>, .reopens = false},
            {.name = "Registry", .make = std::make_unique<RegistryPlace>}};
}

}  // namespace kelvane::testing
