#include "support/fakes.h"

namespace kelvane::testing {
namespace {

std::u16string mapEach(std::u16string_view text, char16_t (*map)(char16_t))
{
    std::u16string mapped(text);
    for (char16_t& unit : mapped)
        unit = map(unit);
    return mapped;
}

char16_t lowerUnit(char16_t unit)
{
    const bool upper = (unit >= u'A' && unit <= u'Z') || (unit >= 0xC0 && unit <= 0xDE && unit != 0xD7);
    return upper ? static_cast<char16_t>(unit + 0x20) : unit;
}

char16_t withoutAccent(char16_t unit)
{
    // The base letters of U+00C0 to U+00FF; '.' where there is none.
    constexpr std::u16string_view bases = u"AAAAAA.CEEEEIIII.NOOOOO..UUUUY..aaaaaa.ceeeeiiii.nooooo..uuuuy.y";
    if (unit < 0xC0 || unit > 0xFF || bases[unit - 0xC0u] == u'.')
        return unit;
    return bases[unit - 0xC0u];
}

}  // namespace

std::u16string SimpleFolding::lower(std::u16string_view text) const
{
    return mapEach(text, lowerUnit);
}
std::u16string SimpleFolding::withoutAccents(std::u16string_view text) const
{
    return mapEach(text, withoutAccent);
}

RawValue FakeReaders::read(const PropertyInfo& property, const ShellItem& item)
{
    ++reads;
    const auto found = values_.find({item.path().string(), std::string(property.name)});
    return found != values_.end() ? found->second : RawValue{};
}

void FakeReaders::set(const std::string& path, const std::string& property, RawValue value)
{
    values_[{path, property}] = std::move(value);
}

}  // namespace kelvane::testing
