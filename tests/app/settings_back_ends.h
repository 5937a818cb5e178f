// The places where settings can be kept on the system that the tests run on.
#pragma once

#include "platform/ini_store.h"
#include "platform/platform.h"
#include "platform/settings_store_contract.h"
#include "support/temp_tree.h"

namespace kelvane::testing {

// The system's registry, or what stands in for it; each system has its own.
[[nodiscard]] SettingsBackEnd registryBackEnd();

class MemoryPlace final : public SettingsWorld {
public:
    std::unique_ptr<SettingsStore> open() override { return std::make_unique<MemorySettingsStore>(); }
};

class IniPlace final : public SettingsWorld {
public:
    explicit IniPlace(IniOptions options) : options_(options) {}
    std::unique_ptr<SettingsStore> open() override
    {
        return makeIniStore(platform_->files(), platform_->output(), platform_->folding(), tree_.path("kelvane.ini"),
                            options_);
    }

private:
    TempTree tree_;
    std::unique_ptr<Platform> platform_ = makePlatform();
    IniOptions options_;
};

inline SettingsBackEnd iniBackEnd(std::string name, IniOptions options)
{
    return {.name = std::move(name),
            .make = [options] { return std::make_unique<IniPlace>(options); },
            .knowsTypes = false,
            .keepsMissingNumber = false};
}

inline std::vector<SettingsBackEnd> settingsBackEnds()
{
    return {{.name = "Memory", .make = std::make_unique<MemoryPlace>, .reopens = false},
            registryBackEnd(),
            iniBackEnd("Ini", {}),
            iniBackEnd("LimitedIni", {.limited = true})};
}

}  // namespace kelvane::testing
