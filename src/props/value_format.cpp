#include <charconv>

#include "base/text_table.h"
#include "base/utf.h"
#include "props/value_convert.h"

namespace kelvane {
namespace {

template <class Number>
std::u16string decimal(Number number)
{
    char digits[32];
    const auto end = std::to_chars(digits, digits + sizeof digits, number).ptr;
    return toUtf16({digits, static_cast<std::size_t>(end - digits)});
}

// A currency counts ten-thousandths.
std::u16string currencyText(std::int64_t amount)
{
    const std::uint64_t size = amount < 0 ? 0 - static_cast<std::uint64_t>(amount) : static_cast<std::uint64_t>(amount);
    std::u16string text = (amount < 0 ? u"-" : u"") + decimal(size / 10'000);
    if (const std::uint64_t fraction = size % 10'000; fraction != 0) {
        text += u"." + decimal(10'000 + fraction).substr(1);
        text.erase(text.find_last_not_of(u'0') + 1);
    }
    return text;
}

std::u16string dateText(const RawValue& raw)
{
    const std::uint64_t ticks = scalarBits(PropKind::date, raw);
    return ticks != 0 ? toUtf16(toIso8601({static_cast<std::int64_t>(ticks)})) : std::u16string();
}

std::u16string wholeText(VarType type, std::uint64_t bits)
{
    switch (type) {
    case VarType::boolean:
        return std::u16string(text((bits & 0xFFFF) != 0 ? TextId::wordTrue : TextId::wordFalse));
    case VarType::uint8:
        return decimal(static_cast<std::uint8_t>(bits));
    case VarType::uint16:
        return decimal(static_cast<std::uint16_t>(bits));
    case VarType::uint32:
    case VarType::machineUint:
        return decimal(static_cast<std::uint32_t>(bits));
    case VarType::uint64:
        return decimal(bits);
    case VarType::currency:
        return currencyText(static_cast<std::int64_t>(bits));
    default:
        return decimal(static_cast<std::int64_t>(wholeBits(type, bits)));
    }
}

template <class Items, class Format>
std::u16string joined(const Items& items, Format format)
{
    std::u16string text;
    for (const auto& item : items) {
        if (!text.empty())
            text += u"; ";
        text += format(item);
    }
    return text;
}

struct Formatter {
    const RawValue& raw;

    std::u16string operator()(std::monostate) const { return {}; }
    std::u16string operator()(std::uint64_t bits) const
    {
        return raw.type == VarType::fileTime ? dateText(raw) : wholeText(raw.type, bits);
    }
    std::u16string operator()(float number) const { return decimal(number); }
    std::u16string operator()(double number) const
    {
        return raw.type == VarType::oleDate ? dateText(raw) : decimal(number);
    }
    std::u16string operator()(const std::u16string& whole) const { return whole; }
    std::u16string operator()(const std::vector<float>& numbers) const { return joined(numbers, decimal<float>); }
    std::u16string operator()(const std::vector<double>& numbers) const { return joined(numbers, decimal<double>); }
    std::u16string operator()(const std::vector<std::u16string>& texts) const
    {
        return joined(texts, [](const std::u16string& one) -> const std::u16string& { return one; });
    }
    std::u16string operator()(const Ref<RawObject>&) const { return {}; }
};

}  // namespace

std::u16string formatRaw(const RawValue& raw)
{
    return raw.empty() ? std::u16string() : std::visit(Formatter{raw}, raw.data);
}

}  // namespace kelvane
