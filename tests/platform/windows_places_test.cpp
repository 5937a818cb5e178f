// Where things are on a Windows computer, what it is, and how work steps back there.
#include <stdexcept>
#include <windows.h>

#include "platform/platform.h"
#include "platform/windows/adapters.h"
#include "platform/windows/registry_value.h"

namespace kelvane {
namespace {

TEST(WindowsPlaces, AreAbsoluteAndThere)
{
    const auto places = makeWindowsPlaces();
    EXPECT_TRUE(std::filesystem::is_directory(places->temporaryFolder()));
    EXPECT_TRUE(places->settingsFolder().is_absolute());
    EXPECT_TRUE(places->cacheFolder().is_absolute());
    EXPECT_EQ(places->programFile().filename(), "platform_test.exe");
    EXPECT_TRUE(std::filesystem::exists(places->programFile()));
}

// A value of the registry that is there while this object lives.
class WithValue {
public:
    WithValue(HKEY root, std::wstring key, const wchar_t* name, DWORD type, const void* data, DWORD size)
        : root_(root), key_(std::move(key)), name_(name)
    {
        EXPECT_EQ(::RegSetKeyValueW(root_, key_.c_str(), name_, type, data, size), ERROR_SUCCESS);
    }
    ~WithValue() { ::RegDeleteKeyValueW(root_, key_.c_str(), name_); }
    WithValue(const WithValue&) = delete;
    WithValue& operator=(const WithValue&) = delete;

private:
    HKEY root_;
    std::wstring key_;
    const wchar_t* name_;
};

TEST(WindowsSystemFacts, ComeFromTheSystemAndItsRegistry)
{
    const auto facts = makeWindowsSystemFacts();
    const SystemVersion version = facts->version();
    EXPECT_GE(version.major, 6u);
    EXPECT_TRUE(version.isNt);
    EXPECT_FALSE(version.productName.empty());
    EXPECT_GE(facts->screenDpi(), 96u);

    const DWORD size = 123;
    const wchar_t program[] = LR"(C:\Tools\kelvane-viewer.exe)";
    const WithValue thumbnails(HKEY_CURRENT_USER, LR"(Software\Microsoft\Windows\CurrentVersion\Explorer)",
                               L"ThumbnailSize", REG_DWORD, &size, sizeof size);
    EXPECT_EQ(facts->thumbnailSize(), 123u);
    {
        const WithValue installed(HKEY_LOCAL_MACHINE,
                                  LR"(SOFTWARE\Microsoft\Windows\CurrentVersion\App Paths\kelvane-viewer.exe)", nullptr,
                                  REG_SZ, program, sizeof program);
        EXPECT_EQ(facts->installedProgram("kelvane-viewer.exe"), program);
    }
    EXPECT_EQ(facts->installedProgram("kelvane-viewer.exe"), std::nullopt);
    EXPECT_EQ(facts->installedProgram(R"(..\kelvane-viewer.exe)"), std::nullopt);
}

TEST(RegistryValue, IsNothingWhenItIsOfAnotherKindAndMayBeLong)
{
    const std::wstring text(1000, L'x');
    const WithValue value(HKEY_CURRENT_USER, LR"(Software\kelvane-test)", L"long", REG_SZ, text.c_str(), 2002);
    using windows_os::registryNumber;
    using windows_os::registryText;
    EXPECT_EQ(registryText(HKEY_CURRENT_USER, LR"(Software\kelvane-test)", L"long"), text);
    EXPECT_EQ(registryNumber(HKEY_CURRENT_USER, LR"(Software\kelvane-test)", L"long"), std::nullopt);
    EXPECT_EQ(registryText(HKEY_CURRENT_USER, LR"(Software\kelvane-test)", L"none"), std::nullopt);
}

TEST(WindowsPriority, GoesDownForTheWorkAndBackAfterwards)
{
    const auto priority = makeWindowsPriority();
    const auto own = [] { return ::GetPriorityClass(::GetCurrentProcess()); };
    const DWORD before = own();
    DWORD inside = 0, nested = 0;
    const auto work = [&] {
        inside = own();
        priority->runLowered([&] { nested = own(); });
        EXPECT_EQ(own(), inside);
        throw std::runtime_error("work failed");
    };
    EXPECT_THROW(priority->runLowered(work), std::runtime_error);
    EXPECT_EQ(inside, static_cast<DWORD>(BELOW_NORMAL_PRIORITY_CLASS));
    EXPECT_EQ(nested, inside);
    EXPECT_EQ(own(), before);
}

}  // namespace
}  // namespace kelvane
