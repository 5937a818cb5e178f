#include <windows.h>

#include "platform/windows/adapters.h"
#include "settings_back_ends.h"

namespace kelvane::testing {
namespace {

constexpr const wchar_t* testKey = L"Software\\Kelvane settings tests";

class RegistryPlace final : public SettingsWorld {
public:
    RegistryPlace() { ::RegDeleteTreeW(HKEY_CURRENT_USER, testKey); }
    ~RegistryPlace() override { ::RegDeleteTreeW(HKEY_CURRENT_USER, testKey); }
    std::unique_ptr<SettingsStore> open() override { return makeRegistryStore(std::wstring(testKey) + L"\\"); }
};

}  // namespace

SettingsBackEnd registryBackEnd()
{
    return {.name = "Registry", .make = std::make_unique<RegistryPlace>, .keepsSectionOrder = false};
}

}  // namespace kelvane::testing
