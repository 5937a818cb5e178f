#include "text/property_rules.h"

#include <algorithm>

#include "base/utf.h"
#include "text/document_values.h"
#include "text/property_values.h"

namespace kelvane {
namespace {

// What is longer is no title, and no list of authors either.
constexpr std::size_t longestValue = 32 * 1024;
constexpr std::size_t mostValues = 256;

RawValue listValue(const std::vector<std::string>& values, std::u16string_view separators)
{
    std::vector<std::u16string> all;
    for (const std::string& value : values)
        for (std::u16string& one : listOf(toUtf16(value), separators))
            if (all.size() < mostValues)
                all.push_back(std::move(one));
    return all.empty() ? RawValue{} : RawValue::texts(std::move(all));
}

RawValue momentValue(std::optional<FileTime> time)
{
    return time ? dateValue(*time) : RawValue{};
}

template <class Number>
RawValue numberValue(VarType type, std::optional<Number> number)
{
    return number ? RawValue::number(type, *number) : RawValue{};
}

RawValue minutesValue(std::string_view text)
{
    const auto minutes = wholeNumber(text);
    return minutes ? RawValue::number(VarType::uint64, *minutes * std::uint64_t{60} * ticksPerSecond) : RawValue{};
}

RawValue valueOf(ValueShape shape, const std::vector<std::string>& values)
{
    switch (shape) {
    case ValueShape::texts:
        return listValue(values, u";");
    case ValueShape::keywords:
        return listValue(values, u";,");
    case ValueShape::date:
        return momentValue(parseIsoDate(values[0]));
    case ValueShape::count:
        return numberValue(VarType::int32, wholeNumber(values[0]));
    case ValueShape::minutes:
        return minutesValue(values[0]);
    case ValueShape::duration:
        return numberValue(VarType::uint64, isoDuration(values[0]));
    case ValueShape::text:
        break;
    }
    return RawValue::text(toUtf16(values[0]));
}

}  // namespace

void PropertyCollector::add(std::string_view source, std::string_view utf8)
{
    const std::string_view value = trimmed(utf8);
    for (std::size_t i = 0; i < rules_.size() && !value.empty(); ++i)
        if (rules_[i].source == source && values_[i].size() < mostValues)
            values_[i].emplace_back(value);
}

void PropertyCollector::give(DocumentSink& sink) const
{
    for (std::size_t i = 0; i < rules_.size(); ++i) {
        if (values_[i].empty())
            continue;
        if (RawValue value = valueOf(rules_[i].shape, values_[i]); !value.empty())
            sink.property(rules_[i].property, std::move(value));
    }
}

void PropertyHandler::begins(std::string_view, XmlAttributes)
{
    value_.clear();
}

void PropertyHandler::ends(std::string_view name)
{
    collector_.add(name, value_);
    value_.clear();
}

void PropertyHandler::text(std::string_view characters)
{
    value_.append(characters.substr(0, longestValue - std::min(longestValue, value_.size())));
}

}  // namespace kelvane
