#include "app/setting_bits.h"

#include "app/cleanup_bookkeeping.h"
#include "app/notices.h"
#include "app/settings_loader.h"
#include "base/desktop_texts/options.h"

namespace kelvane {
namespace {

namespace say = desktop_text;

constexpr std::u16string_view mainKey = u"binFlags";
constexpr std::u16string_view moreKey = u"binMoreOptions";
constexpr std::u16string_view noticesKey = u"bin1OffNotify";

// clang-format off
constexpr SettingBit bits[] = {
    {mainKey, &Settings::flags, settings_flag::darkTheme, false, say::bitDarkTheme, OptionsPage::general},
    {mainKey, &Settings::flags, option_flag::lowPriority, false, say::bitLowPriority, OptionsPage::scanning},
    {mainKey, &Settings::flags, option_flag::enterVirtualFolders, false, say::bitEnterVirtual, OptionsPage::scanning},
    {mainKey, &Settings::flags, option_flag::skipSmallVirtual, false, say::bitSkipSmallVirtual, OptionsPage::scanning},
    {mainKey, &Settings::flags, option_flag::enumerateHidden, false, say::bitEnumerateHidden, OptionsPage::scanning},
    {mainKey, &Settings::flags, option_flag::followJunctions, false, say::bitFollowJunctions, OptionsPage::scanning},
    {mainKey, &Settings::flags, option_flag::directEnumeration, false, say::bitDirectEnumeration, OptionsPage::scanning},
    {mainKey, &Settings::flags, option_flag::keepSameSeries, false, say::bitKeepSameSeries, OptionsPage::comparing},
    {moreKey, &Settings::moreOptions, more_option_flag::imagesSkipPrimary, false, say::bitImagesSkipPrimary, OptionsPage::comparing},
    {moreKey, &Settings::moreOptions, more_setting::keepLone, false, say::bitKeepLone, OptionsPage::view},
    {mainKey, &Settings::flags, settings_flag::cleanupLog, false, say::bitCleanupLog, OptionsPage::cleanUp},
    {mainKey, &Settings::flags, settings_flag::expert, false, say::bitExpert, OptionsPage::cleanUp},
    {moreKey, &Settings::moreOptions, more_setting::noHardLinks, false, say::bitNoHardLinks, OptionsPage::cleanUp},
    {moreKey, &Settings::moreOptions, more_setting::noSymbolicLinks, false, say::bitNoSymbolicLinks, OptionsPage::cleanUp},
    {noticesKey, &Settings::noticesOff, notice_flag::firstScanShown, true, say::bitNoticeFirstScan, OptionsPage::notices},
    {noticesKey, &Settings::noticesOff, cleanup_notice::summary, true, say::bitNoticeSummary, OptionsPage::notices},
    {noticesKey, &Settings::noticesOff, cleanup_notice::elevation, true, say::bitNoticeElevation, OptionsPage::notices},
    {noticesKey, &Settings::noticesOff, notice_off::updateReminder, true, say::bitNoticeUpdates, OptionsPage::notices},
    {noticesKey, &Settings::noticesOff, notice_off::crashMail, true, say::bitNoticeCrashMail, OptionsPage::notices},
};
// clang-format on

}  // namespace

std::span<const SettingBit> settingBits()
{
    return bits;
}

void SettingBit::tick(Settings& settings, bool on) const
{
    settings.*word = on != isOff ? settings.*word | bit : settings.*word & ~bit;
}

InterfaceMode interfaceModeOf(const Settings& settings)
{
    if ((settings.flags & settings_flag::advanced) != 0)
        return InterfaceMode::advanced;
    return (settings.flags & settings_flag::beginner) != 0 ? InterfaceMode::beginner : InterfaceMode::standard;
}

void setInterfaceMode(Settings& settings, InterfaceMode mode)
{
    constexpr std::uint32_t all =
        settings_flag::advanced | settings_flag::beginner | settings_flag::safeOptions | settings_flag::expert;
    settings.flags = (settings.flags & ~all) | interfaceBits(mode);
}

}  // namespace kelvane
