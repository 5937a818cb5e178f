#include "app/system_description.h"

#include <algorithm>
#include <iterator>

#include "base/utf.h"

namespace kelvane {
namespace {

constexpr std::uint32_t firstBuildOf11 = 22'000;
constexpr std::size_t longestName = 199;

std::string number(const SystemVersion& version)
{
    std::string text =
        std::to_string(version.major) + '.' + std::to_string(version.minor) + '-' + std::to_string(version.build);
    if (version.isNt && version.revision != 0)
        text += '.' + std::to_string(version.revision);
    if (version.isNt && version.major >= 10 && version.build >= firstBuildOf11)
        text += ":W11";
    return text;
}

std::u16string_view nameOf4(const SystemVersion& version)
{
    if (version.isNt)
        return u"NT4";
    return version.minor < 10 ? u"win95" : version.minor < 90 ? u"win98" : u"winME";
}

std::u16string_view nameByVersion(const SystemVersion& version)
{
    struct Row {
        std::uint32_t major;
        std::uint32_t minor;
        std::u16string_view name;
    };
    static constexpr Row rows[] = {{5, 0, u"win2000"}, {5, 1, u"winXP"}, {5, 2, u"win2003"},
                                   {6, 0, u"vista"},   {6, 1, u"win7"},  {6, 2, u"win8"}};
    if (version.major == 4)
        return nameOf4(version);
    if (version.major == 10 && version.minor == 0)
        return version.build < firstBuildOf11 ? u"win10" : u"win11";
    const auto* found = std::ranges::find_if(
        rows, [&](const Row& row) { return row.major == version.major && row.minor == version.minor; });
    return found != std::end(rows) ? found->name : std::u16string_view{};
}

std::u16string_view nameOf(const SystemVersion& version)
{
    const std::u16string_view own = version.productName;
    return version.isNt && !own.empty() ? own.substr(0, longestName) : nameByVersion(version);
}

}  // namespace

std::u16string systemDescription(const SystemVersion& version)
{
    std::u16string text = toUtf16(number(version));
    if (const std::u16string_view name = nameOf(version); !name.empty())
        text.append(u" (").append(name).append(u")");
    return text + u" x64";
}

}  // namespace kelvane
