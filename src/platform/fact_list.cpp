#include "platform/fact_list.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>
#include <utility>

namespace kelvane {
namespace {

// What a property holds is shown and compared; a longer text is no fact but an attack, or somebody's whole book.
constexpr std::size_t longestText = 64 * 1024;
constexpr std::size_t mostTexts = 1000;

constexpr std::uint64_t variantTrue = 0xFFFF;

constexpr bool meansNothing(char16_t unit)
{
    return unit <= u' ' || unit == 0x7F || unit == 0xA0 || unit == 0xFEFF;
}

// Half of a character is none.
std::u16string_view shortened(std::u16string_view text)
{
    if (text.size() <= longestText)
        return text;
    const bool halved = (text[longestText - 1] & 0xFC00) == 0xD800;
    return text.substr(0, longestText - (halved ? 1 : 0));
}

template <class Number>
std::optional<std::uint64_t> within(std::int64_t value)
{
    if (!std::in_range<Number>(value))
        return std::nullopt;
    return static_cast<std::uint64_t>(value) & std::numeric_limits<std::make_unsigned_t<Number>>::max();
}

std::optional<std::uint64_t> bitsOf(VarType type, std::int64_t value)
{
    switch (type) {
    case VarType::boolean:
        return value != 0 ? variantTrue : 0;
    case VarType::int16:
        return within<std::int16_t>(value);
    case VarType::int32:
        return within<std::int32_t>(value);
    case VarType::int64:
        return within<std::int64_t>(value);
    case VarType::uint8:
        return within<std::uint8_t>(value);
    case VarType::uint16:
        return within<std::uint16_t>(value);
    case VarType::uint32:
        return within<std::uint32_t>(value);
    case VarType::uint64:
        return within<std::uint64_t>(value);
    default:
        return std::nullopt;
    }
}

std::vector<std::u16string> distinctTexts(std::span<const std::u16string> values)
{
    std::vector<std::u16string> kept;
    for (const std::u16string& value : values.first(std::min(values.size(), mostTexts)))
        if (std::u16string text(shortened(trimmedFact(value)));
            !text.empty() && std::find(kept.begin(), kept.end(), text) == kept.end())
            kept.push_back(std::move(text));
    return kept;
}

std::u16string joined(const std::vector<std::u16string>& texts)
{
    std::u16string all;
    for (const std::u16string& text : texts) {
        if (!all.empty())
            all += u"; ";
        all += text;
    }
    return std::u16string(shortened(all));
}

}  // namespace

std::u16string_view trimmedFact(std::u16string_view text)
{
    while (!text.empty() && meansNothing(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && meansNothing(text.back()))
        text.remove_suffix(1);
    return text;
}

std::vector<std::u16string> separatedFacts(std::u16string_view text)
{
    std::vector<std::u16string> parts;
    while (!text.empty() && parts.size() < mostTexts) {
        const std::size_t end = std::min(text.find(u';'), text.size());
        parts.emplace_back(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return parts;
}

bool FactList::has(std::string_view name) const
{
    return std::any_of(values_.begin(), values_.end(), [name](const NamedValue& value) { return value.name == name; });
}

const PropertyInfo* FactList::wanted(std::string_view name) const
{
    return has(name) ? nullptr : properties_.byName(name);
}

void FactList::add(const PropertyInfo& property, RawValue value)
{
    values_.push_back({std::string(property.name), std::move(value)});
}

void FactList::text(std::string_view name, std::u16string_view value)
{
    const std::u16string one(value);
    texts(name, {&one, 1});
}

void FactList::texts(std::string_view name, std::span<const std::u16string> values)
{
    const PropertyInfo* property = wanted(name);
    if (property == nullptr || property->type != VarType::wideText)
        return;
    auto kept = distinctTexts(values);
    if (!kept.empty())
        add(*property, property->multiple ? RawValue::texts(std::move(kept)) : RawValue::text(joined(kept)));
}

void FactList::number(std::string_view name, std::int64_t value)
{
    const PropertyInfo* property = wanted(name);
    if (property == nullptr || property->multiple)
        return;
    if (const auto bits = bitsOf(property->type, value))
        add(*property, RawValue::number(property->type, *bits));
}

void FactList::real(std::string_view name, double value)
{
    const PropertyInfo* property = wanted(name);
    if (property != nullptr && property->type == VarType::float64 && !property->multiple && std::isfinite(value))
        add(*property, RawValue::float64(value));
}

void FactList::reals(std::string_view name, std::vector<double> values)
{
    const PropertyInfo* property = wanted(name);
    const bool finite = std::all_of(values.begin(), values.end(), [](double value) { return std::isfinite(value); });
    if (property != nullptr && property->type == VarType::float64 && property->multiple && finite && !values.empty())
        add(*property, {VarType::float64, true, std::move(values)});
}

void FactList::date(std::string_view name, FileTime time)
{
    const PropertyInfo* property = wanted(name);
    if (property != nullptr && property->type == VarType::fileTime && time.ticks > 0)
        add(*property, RawValue::number(VarType::fileTime, static_cast<std::uint64_t>(time.ticks)));
}

}  // namespace kelvane
