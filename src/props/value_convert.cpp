#include "props/value_convert.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <vector>

#include "base/file_time.h"

namespace kelvane {
namespace {

template <class Signed>
std::uint64_t signExtended(std::uint64_t bits)
{
    return static_cast<std::uint64_t>(static_cast<std::int64_t>(static_cast<Signed>(bits)));
}

std::uint64_t heldBits(const RawValue& raw)
{
    const auto* bits = std::get_if<std::uint64_t>(&raw.data);
    return bits != nullptr ? *bits : 0;
}

std::uint64_t objectBits(const RawValue& raw)
{
    const auto* object = std::get_if<Ref<RawObject>>(&raw.data);
    return object != nullptr ? reinterpret_cast<std::uintptr_t>(object->get()) : 0;
}

// Days since 1899-12-30, the fraction being the time of day for negative dates as well (-1.25 is 06:00 of the day
// before), in whole milliseconds as a system time has them. Outside of 1601 to 9999 there is no file time: 0.
std::uint64_t oleDateTicks(double date)
{
    constexpr double firstDay = -109205;      // 1601-01-01
    constexpr double afterLastDay = 2958466;  // 10000-01-01
    constexpr double dayMilliseconds = 86'400'000;
    if (!(date >= firstDay && date < afterLastDay))
        return 0;
    const double day = std::trunc(date);
    const auto days = static_cast<std::int64_t>(day - firstDay);
    const auto milliseconds = std::llround(std::fabs(date - day) * dayMilliseconds);
    return static_cast<std::uint64_t>((days * 86'400'000 + milliseconds) * ticksPerMillisecond);
}

std::uint64_t dateBits(const RawValue& raw)
{
    if (raw.type == VarType::fileTime)
        return heldBits(raw);
    const auto* date = std::get_if<double>(&raw.data);
    return raw.type == VarType::oleDate && date != nullptr ? oleDateTicks(*date) : 0;
}

double realNumber(const RawValue& raw)
{
    if (const auto* narrow = std::get_if<float>(&raw.data); narrow != nullptr && raw.type == VarType::float32)
        return *narrow;
    const auto* wide = std::get_if<double>(&raw.data);
    return wide != nullptr && raw.type == VarType::float64 ? *wide : 0;
}

template <class Number>
double sumOfSixtieths(const std::vector<Number>& parts)
{
    double sum = 0;
    double unit = 1;
    for (const Number part : parts) {
        sum += static_cast<double>(part) / unit;
        unit *= 60;
    }
    return sum;
}

constexpr bool isDirectionMark(char16_t unit)
{
    return unit == 0x200E || unit == 0x200F || (unit >= 0x202A && unit <= 0x202E);
}

// The property system puts direction marks in front of the values that it formats. A text that begins otherwise is
// somebody's own and keeps its marks.
void dropFormattingMarks(std::u16string& text)
{
    if (!text.empty() && (text[0] == 0x200E || text[0] == 0x200F || text[0] == 0x202A))
        std::erase_if(text, isDirectionMark);
}

bool isEmptyVector(const RawValue& raw)
{
    const auto hasNone = [](const auto& data) {
        if constexpr (requires { data.begin(); })
            return data.empty();
        else
            return false;
    };
    return raw.isVector && std::visit(hasNone, raw.data);
}

void convertReal(PROPCACHE& node, const PropRef& property, const RawValue& raw)
{
    double number = 0;
    if (property.has(property_flag::sexagesimal)) {
        number = sexagesimal(raw).value_or(0);
        node.flags |= PROPCACHE::flagSexagesimal;
    } else if (!raw.isVector) {
        number = realNumber(raw);
    }
    node.value = std::bit_cast<std::uint64_t>(number);
}

void convertPresent(PROPCACHE& node, const PropRef& property, const RawValue& raw)
{
    switch (node.kind) {
    case PropKind::number:
    case PropKind::date:
        node.value = scalarBits(node.kind, raw);
        if (node.kind == PropKind::number && property.has(property_flag::numeric))
            node.flags |= PROPCACHE::flagNumeric;
        break;
    case PropKind::real:
        convertReal(node, property, raw);
        break;
    case PropKind::text:
        node.text = formatRaw(raw);
        dropFormattingMarks(node.text);
        break;
    case PropKind::none:
        break;
    }
}

}  // namespace

// Unsigned types are extended like signed ones: the values are compared, not calculated with, and the property system
// itself hands the same bits out under either sign.
std::uint64_t wholeBits(VarType type, std::uint64_t bits) noexcept
{
    switch (type) {
    case VarType::int8:
    case VarType::uint8:
        return signExtended<std::int8_t>(bits);
    case VarType::int16:
    case VarType::uint16:
    case VarType::boolean:
        return signExtended<std::int16_t>(bits);
    case VarType::int32:
    case VarType::uint32:
    case VarType::error:
    case VarType::machineInt:
    case VarType::machineUint:
    case VarType::result:
        return signExtended<std::int32_t>(bits);
    case VarType::int64:
    case VarType::uint64:
    case VarType::currency:
    case VarType::fileTime:
        return bits;
    default:
        return 0;
    }
}

std::uint64_t scalarBits(PropKind kind, const RawValue& raw) noexcept
{
    if (raw.isVector)
        return 0;
    if (kind == PropKind::date)
        return dateBits(raw);
    if (raw.type == VarType::object)
        return objectBits(raw);
    return raw.type != VarType::fileTime ? wholeBits(raw.type, heldBits(raw)) : 0;
}

void convertValue(PROPCACHE& node, const PropRef& property, RawValue raw)
{
    node.kind = property.kind();
    node.identifier = property.identifier;
    node.flags = 0;
    node.value = PROPCACHE::missingMark;
    node.text.clear();
    node.folded.reset();
    node.raw = isEmptyVector(raw) ? RawValue{} : std::move(raw);
    if (node.raw.empty())
        node.raw.data = std::monostate{};
    else
        convertPresent(node, property, node.raw);
}

std::optional<double> sexagesimal(const RawValue& raw)
{
    if (!raw.isVector)
        return raw.type == VarType::float32 || raw.type == VarType::float64 ? std::optional(realNumber(raw))
                                                                            : std::nullopt;
    if (const auto* narrow = std::get_if<std::vector<float>>(&raw.data))
        return sumOfSixtieths(*narrow);
    if (const auto* wide = std::get_if<std::vector<double>>(&raw.data))
        return sumOfSixtieths(*wide);
    return std::nullopt;
}

}  // namespace kelvane
