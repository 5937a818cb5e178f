#include "text/plugin_values.h"

#include <algorithm>
#include <chrono>
#include <cstdio>

#include "base/file_time.h"
#include "base/utf.h"
#include "platform/native_text.h"

namespace kelvane {
namespace {

namespace api = content_plugin;

constexpr std::uint32_t versionHigh = 2, versionLow = 10;

RawValue dateValue(const api::PluginDate& date)
{
    const std::chrono::year_month_day given(std::chrono::year(date.year), std::chrono::month(date.month),
                                            std::chrono::day(date.day));
    if (!given.ok())
        return {};
    const auto seconds = std::chrono::seconds(std::chrono::sys_days(given).time_since_epoch()).count();
    return RawValue::number(VarType::fileTime, static_cast<std::uint64_t>(fileTimeFromUnix(seconds, 0).ticks));
}

RawValue timeValue(const api::PluginTime& time)
{
    if (time.hour > 23 || time.minute > 59 || time.second > 60)
        return {};
    char text[24];
    std::snprintf(text, sizeof text, "%02u:%02u:%02u", unsigned{time.hour}, unsigned{time.minute},
                  unsigned{time.second});
    return RawValue::text(toUtf16(text));
}

RawValue textValue(std::u16string text)
{
    return text.empty() ? RawValue{} : RawValue::text(std::move(text));
}

}  // namespace

bool isAscii(std::string_view text)
{
    return std::all_of(text.begin(), text.end(), [](char unit) { return static_cast<unsigned char>(unit) < 0x80; });
}

std::optional<VarType> pluginFieldType(int type)
{
    switch (type) {
    case api::ft_numeric_32:
        return VarType::int32;
    case api::ft_numeric_64:
        return VarType::int64;
    case api::ft_numeric_floating:
        return VarType::float64;
    case api::ft_date:
    case api::ft_datetime:
        return VarType::fileTime;
    case api::ft_boolean:
        return VarType::boolean;
    case api::ft_time:
    case api::ft_multiplechoice:
    case api::ft_string:
    case api::ft_stringw:
        return VarType::wideText;
    case api::ft_fulltext:
        return VarType::empty;
    default:
        return std::nullopt;
    }
}

RawValue pluginValue(int type, const GuardedRoom& room)
{
    switch (type) {
    case api::ft_numeric_32:
        return RawValue::number(VarType::int32, static_cast<std::uint64_t>(room.number<std::int32_t>()));
    case api::ft_numeric_64:
        return RawValue::number(VarType::int64, room.number<std::uint64_t>());
    case api::ft_numeric_floating:
        return RawValue::float64(room.number<double>());
    case api::ft_date:
        return dateValue(room.number<api::PluginDate>());
    case api::ft_time:
        return timeValue(room.number<api::PluginTime>());
    case api::ft_datetime:
        return RawValue::number(VarType::fileTime, room.number<std::uint64_t>());
    case api::ft_boolean:
        return RawValue::number(VarType::boolean, room.number<std::int32_t>() != 0 ? 0xFFFF : 0);
    case api::ft_stringw:
        return textValue(room.wideText());
    default:
        return {};
    }
}

content_plugin::DefaultParameters defaultPluginParameters(const std::filesystem::path& library)
{
    api::DefaultParameters parameters{};
    parameters.size = sizeof parameters;
    parameters.interfaceVersionHigh = versionHigh;
    parameters.interfaceVersionLow = versionLow;
    const std::string name = bytesFromNative((library.parent_path() / "contentplugins.ini").native());
    const bool everywhere = sizeof(NativeString::value_type) == 1 || isAscii(name);
    if (everywhere && name.size() < sizeof parameters.iniName)
        name.copy(parameters.iniName, name.size());
    return parameters;
}

}  // namespace kelvane
