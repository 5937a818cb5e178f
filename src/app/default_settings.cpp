#include "app/default_settings.h"

#include "app/settings_loader.h"

namespace kelvane {
namespace {

class NothingStored final : public SettingsStore {
public:
    std::unique_ptr<SettingsSection> open(std::u16string_view, SettingsAccess) override { return nullptr; }
    SettingsCode deleteSection(std::u16string_view) override { return SettingsCode::accessDenied; }
    SettingsCode begin() override { return SettingsCode::accessDenied; }
    SettingsCode commit() override { return SettingsCode::accessDenied; }
    void discard() override {}
    std::string complaint() const override { return {}; }
    bool isWritable() override { return false; }
};

}  // namespace

Settings defaultSettings(const SettingsContext& context)
{
    NothingStored nothing;
    return loadSettings({&nothing, registryLocation()}, context);
}

}  // namespace kelvane
