#include <windows.h>

#include "platform/settings_store_contract.h"
#include "platform/windows/adapters.h"

namespace kelvane::testing {
namespace {

constexpr const wchar_t* testKey = L"Software\\Kelvane tests";

class RegistryWorld final : public SettingsWorld {
public:
    RegistryWorld() { ::RegDeleteTreeW(HKEY_CURRENT_USER, testKey); }
    ~RegistryWorld() override { ::RegDeleteTreeW(HKEY_CURRENT_USER, testKey); }
    std::unique_ptr<SettingsStore> open() override { return makeRegistryStore(std::wstring(testKey) + L"\\"); }
};

INSTANTIATE_TEST_SUITE_P(Registry, SettingsStoreContract, ::testing::Values([] {
                             SettingsBackEnd registry{.name = "Registry", .make = std::make_unique<RegistryWorld>};
                             registry.keepsSectionOrder = false;
                             registry.keepsTransactions = false;
                             return registry;
                         }()));

TEST(RegistryStoreTest, TextsOfOtherProgramsNeedNoTerminatorAndTheWholeHiveIsNeverDeleted)
{
    RegistryWorld world;
    const auto store = world.open();
    ASSERT_NE(store->open(u"general", SettingsAccess::writing), nullptr);
    HKEY key = nullptr;
    ASSERT_EQ(::RegOpenKeyExW(HKEY_CURRENT_USER, (std::wstring(testKey) + L"\\general").c_str(), 0, KEY_WRITE, &key),
              0);
    const std::pair<const wchar_t*, std::wstring> written[] = {
        {L"none", L"ab"}, {L"two", std::wstring(L"ab\0\0", 4)}, {L"inside", std::wstring(L"ab\0cd", 5)}};
    for (const auto& [name, text] : written)
        ::RegSetValueExW(key, name, 0, REG_SZ, reinterpret_cast<const BYTE*>(text.data()),
                         static_cast<DWORD>(text.size() * sizeof(wchar_t)));
    const BYTE shortNumber[] = {1, 2};
    ::RegSetValueExW(key, L"short", 0, REG_DWORD, shortNumber, sizeof shortNumber);
    ::RegCloseKey(key);

    const auto section = store->open(u"general", SettingsAccess::reading);
    for (const char16_t* name : {u"none", u"two", u"inside"}) {
        std::u16string text;
        EXPECT_EQ(section->readText(name, text), SettingsCode::done);
        EXPECT_EQ(text, u"ab");
    }
    std::uint32_t number = 0;
    EXPECT_EQ(section->readNumber(u"short", number), SettingsCode::invalidData);
    EXPECT_EQ(makeRegistryStore()->deleteSection(u""), SettingsCode::accessDenied);
}

}  // namespace
}  // namespace kelvane::testing
