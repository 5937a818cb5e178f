#include "text/worker_values.h"

#include <algorithm>
#include <bit>

namespace kelvane {
namespace {

constexpr std::uint32_t mostElements = 4096;  // of a list: each costs more here than in the message
// Far beyond what any file has; a broken worker's claim must not make a long list.
constexpr std::uint32_t mostNamedValues = 4096;

// How the data of a value is written.
enum class WireShape : std::uint8_t { nothing, bits, narrow, wide, text, narrows, wides, texts };

std::optional<WireShape> scalarShape(VarType type)
{
    switch (type) {
    case VarType::empty:
        return WireShape::nothing;
    case VarType::int8:
    case VarType::int16:
    case VarType::int32:
    case VarType::int64:
    case VarType::uint8:
    case VarType::uint16:
    case VarType::uint32:
    case VarType::uint64:
    case VarType::machineInt:
    case VarType::machineUint:
    case VarType::boolean:
    case VarType::currency:
    case VarType::fileTime:
        return WireShape::bits;
    case VarType::float32:
        return WireShape::narrow;
    case VarType::float64:
    case VarType::oleDate:
        return WireShape::wide;
    case VarType::wideText:
    case VarType::bstr:
        return WireShape::text;
    default:
        return std::nullopt;
    }
}

std::optional<WireShape> shapeOf(VarType type, bool isVector)
{
    const auto scalar = scalarShape(type);
    if (!isVector || !scalar)
        return scalar;
    switch (*scalar) {
    case WireShape::narrow:
        return WireShape::narrows;
    case WireShape::wide:
        return WireShape::wides;
    case WireShape::text:
        return WireShape::texts;
    default:
        return std::nullopt;
    }
}

// The place of a shape's data among the alternatives of RawValue::Data.
std::size_t alternativeOf(WireShape shape)
{
    static_assert(std::is_same_v<std::variant_alternative_t<7, RawValue::Data>, std::vector<std::u16string>>);
    return static_cast<std::size_t>(shape);
}

void writeFloat(ByteWriter& out, float value)
{
    out.number(std::bit_cast<std::uint32_t>(value));
}

void writeFloat(ByteWriter& out, double value)
{
    out.number(std::bit_cast<std::uint64_t>(value));
}

std::optional<float> readNarrow(ByteReader& in)
{
    const auto bits = in.number<std::uint32_t>();
    return bits ? std::optional(std::bit_cast<float>(*bits)) : std::nullopt;
}

std::optional<double> readWide(ByteReader& in)
{
    const auto bits = in.number<std::uint64_t>();
    return bits ? std::optional(std::bit_cast<double>(*bits)) : std::nullopt;
}

template <class Element, class Write>
void writeList(ByteWriter& out, const std::vector<Element>& list, Write write)
{
    out.number(static_cast<std::uint32_t>(list.size()));
    for (const Element& element : list)
        write(out, element);
}

// Grows with what is there: each element takes bytes.
template <class Element, class Read>
std::optional<RawValue::Data> readList(ByteReader& in, Read read)
{
    const auto count = in.number<std::uint32_t>();
    if (!count || *count > mostElements)
        return std::nullopt;
    std::vector<Element> list;
    for (std::uint32_t i = 0; i < *count; ++i) {
        auto element = read(in);
        if (!element)
            return std::nullopt;
        list.push_back(std::move(*element));
    }
    return RawValue::Data(std::move(list));
}

template <class Value>
std::optional<RawValue::Data> asData(std::optional<Value> value)
{
    return value ? std::optional(RawValue::Data(std::move(*value))) : std::nullopt;
}

std::optional<RawValue::Data> readData(ByteReader& in, WireShape shape)
{
    switch (shape) {
    case WireShape::nothing:
        return RawValue::Data();
    case WireShape::bits:
        return asData(in.number<std::uint64_t>());
    case WireShape::narrow:
        return asData(readNarrow(in));
    case WireShape::wide:
        return asData(readWide(in));
    case WireShape::text:
        return asData(readUnits(in));
    case WireShape::narrows:
        return readList<float>(in, readNarrow);
    case WireShape::wides:
        return readList<double>(in, readWide);
    case WireShape::texts:
        return readList<std::u16string>(in, readUnits);
    }
    return std::nullopt;
}

struct DataWriter {
    ByteWriter& out;

    void operator()(std::monostate) const {}
    void operator()(std::uint64_t bits) const { out.number(bits); }
    void operator()(float value) const { writeFloat(out, value); }
    void operator()(double value) const { writeFloat(out, value); }
    void operator()(const std::u16string& text) const { writeUnits(out, text); }
    void operator()(const std::vector<float>& list) const { writeList(out, list, writeNumber<float>); }
    void operator()(const std::vector<double>& list) const { writeList(out, list, writeNumber<double>); }
    void operator()(const std::vector<std::u16string>& list) const { writeList(out, list, writeUnits); }
    void operator()(const Ref<RawObject>&) const {}  // never portable

    template <class Number>
    static void writeNumber(ByteWriter& to, Number value)
    {
        writeFloat(to, value);
    }
};

}  // namespace

bool isPortable(const RawValue& value)
{
    const auto shape = shapeOf(value.type, value.isVector);
    return shape && alternativeOf(*shape) == value.data.index();
}

void writeBytes(ByteWriter& out, std::string_view bytes)
{
    out.number(static_cast<std::uint32_t>(bytes.size()));
    out.text(bytes);
}

void writeUnits(ByteWriter& out, std::u16string_view units)
{
    out.number(static_cast<std::uint32_t>(units.size()));
    for (const char16_t unit : units)
        out.number(static_cast<std::uint16_t>(unit));
}

void writeValue(ByteWriter& out, const RawValue& value)
{
    out.number(static_cast<std::uint16_t>(value.type));
    out.number(static_cast<std::uint8_t>(value.isVector));
    std::visit(DataWriter{out}, value.data);
}

void writeNamedValues(ByteWriter& out, const std::vector<NamedValue>& values)
{
    std::vector<const NamedValue*> sent;
    for (const NamedValue& named : values)
        if (isPortable(named.value) && sent.size() < mostNamedValues)
            sent.push_back(&named);
    out.number(static_cast<std::uint32_t>(sent.size()));
    for (const NamedValue* named : sent) {
        writeBytes(out, named->name);
        writeValue(out, named->value);
    }
}

std::optional<std::string> readBytes(ByteReader& in)
{
    const auto size = in.number<std::uint32_t>();
    const auto block = size ? in.bytes(*size) : std::nullopt;
    if (!block)
        return std::nullopt;
    return std::string(reinterpret_cast<const char*>(block->data()), block->size());
}

std::optional<std::u16string> readUnits(ByteReader& in)
{
    const auto count = in.number<std::uint32_t>();
    const auto block = count ? in.bytes(std::size_t{*count} * 2) : std::nullopt;
    if (!block)
        return std::nullopt;
    std::u16string units(*count, u'\0');
    for (std::size_t i = 0; i < units.size(); ++i)
        units[i] = static_cast<char16_t>(std::to_integer<unsigned>((*block)[2 * i]) |
                                         std::to_integer<unsigned>((*block)[2 * i + 1]) << 8);
    return units;
}

std::optional<RawValue> readValue(ByteReader& in)
{
    const auto type = in.number<std::uint16_t>();
    const auto isVector = in.number<std::uint8_t>();
    if (!type || !isVector || *isVector > 1)
        return std::nullopt;
    const auto shape = shapeOf(static_cast<VarType>(*type), *isVector == 1);
    auto data = shape ? readData(in, *shape) : std::nullopt;
    if (!data)
        return std::nullopt;
    return RawValue{static_cast<VarType>(*type), *isVector == 1, std::move(*data)};
}

std::optional<std::vector<NamedValue>> readNamedValues(ByteReader& in)
{
    const auto count = in.number<std::uint32_t>();
    if (!count || *count > mostNamedValues)
        return std::nullopt;
    std::vector<NamedValue> values;
    for (std::uint32_t i = 0; i < *count; ++i) {
        auto name = readBytes(in);
        auto value = name ? readValue(in) : std::nullopt;
        if (!value)
            return std::nullopt;
        values.push_back({std::move(*name), std::move(*value)});
    }
    return values;
}

std::optional<bool> readFlag(ByteReader& in)
{
    const auto byte = in.number<std::uint8_t>();
    return byte && *byte < 2 ? std::optional(*byte == 1) : std::nullopt;
}

}  // namespace kelvane
