#include "text/property_set.h"

#include <algorithm>
#include <array>
#include <limits>
#include <optional>

#include "text/document_values.h"
#include "text/little_endian.h"

namespace kelvane {
namespace {

using Bytes = std::span<const std::byte>;

constexpr std::size_t longestText = 32 * 1024;
constexpr std::uint32_t mostProperties = 256;

enum class NumberedShape { text, texts, keywords, count, moment, duration };

// What a number means in its set.
struct NumberedRule {
    std::uint32_t number;
    std::string_view property;
    NumberedShape shape = NumberedShape::text;
};

constexpr std::array summaryRules = {
    NumberedRule{2, "System.Title"},
    NumberedRule{3, "System.Subject"},
    NumberedRule{4, "System.Author", NumberedShape::texts},
    NumberedRule{5, "System.Keywords", NumberedShape::keywords},
    NumberedRule{6, "System.Comment"},
    NumberedRule{7, "System.Document.Template"},
    NumberedRule{8, "System.Document.LastAuthor"},
    NumberedRule{9, "System.Document.RevisionNumber"},
    NumberedRule{10, "System.Document.TotalEditingTime", NumberedShape::duration},
    NumberedRule{11, "System.Document.DatePrinted", NumberedShape::moment},
    NumberedRule{12, "System.Document.DateCreated", NumberedShape::moment},
    NumberedRule{13, "System.Document.DateSaved", NumberedShape::moment},
    NumberedRule{14, "System.Document.PageCount", NumberedShape::count},
    NumberedRule{15, "System.Document.WordCount", NumberedShape::count},
    NumberedRule{16, "System.Document.CharacterCount", NumberedShape::count},
    NumberedRule{18, "System.ApplicationName"},
};

constexpr std::array documentRules = {
    NumberedRule{2, "System.Category", NumberedShape::texts},
    NumberedRule{3, "System.Document.PresentationFormat"},
    NumberedRule{5, "System.Document.LineCount", NumberedShape::count},
    NumberedRule{6, "System.Document.ParagraphCount", NumberedShape::count},
    NumberedRule{7, "System.Document.SlideCount", NumberedShape::count},
    NumberedRule{8, "System.Document.NoteCount", NumberedShape::count},
    NumberedRule{9, "System.Document.HiddenSlideCount", NumberedShape::count},
    NumberedRule{10, "System.Document.MultimediaClipCount", NumberedShape::count},
    NumberedRule{14, "System.Document.Manager"},
    NumberedRule{15, "System.Company"},
};

// Types of values, with their published numbers (VARENUM).
constexpr std::uint16_t typeShort = 2, typeLong = 3, typeNarrow = 30, typeWide = 31, typeMoment = 64;
constexpr std::uint32_t codePageNumber = 1;

std::string charsetOf(std::uint16_t codePage)
{
    switch (codePage) {
    case 1200:
        return "utf-16le";
    case 65001:
        return "utf-8";
    case 10000:
        return "macintosh";
    default:
        return "windows-" + std::to_string(codePage == 0 ? 1252 : codePage);
    }
}

// One set of a stream: a table of numbers and places, and the values.
class PropertySet {
public:
    explicit PropertySet(Bytes set) : set_(set)
    {
        const auto page = value(codePageNumber);
        codePage_ = page && type(*page) == typeShort ? littleEndian<std::uint16_t>(*page, 4) : std::uint16_t{1252};
    }

    std::u16string text(std::uint32_t number, const TextDecoding& decoding) const
    {
        const auto found = value(number);
        if (!found || found->size() < 8)
            return {};
        const Bytes content = found->subspan(8);
        const std::size_t unit = type(*found) == typeWide ? 2 : type(*found) == typeNarrow ? 1 : 0;
        const std::uint64_t size = std::uint64_t{littleEndian<std::uint32_t>(*found, 4)} * unit;
        const Bytes bytes =
            content.first(static_cast<std::size_t>(std::min<std::uint64_t>({size, content.size(), longestText})));
        const auto decoded = decoding.decode(bytes, unit == 2 ? "utf-16le" : charsetOf(codePage_));
        return decoded ? decoded->substr(0, decoded->find(u'\0')) : std::u16string();
    }

    std::optional<std::uint32_t> count(std::uint32_t number) const
    {
        const auto found = value(number);
        const auto bits = found && type(*found) == typeLong ? littleEndian<std::uint32_t>(*found, 4) : 0;
        return bits > 0 && bits <= std::numeric_limits<std::int32_t>::max() ? std::optional(bits) : std::nullopt;
    }

    // 0 stands for never.
    std::uint64_t ticks(std::uint32_t number) const
    {
        const auto found = value(number);
        return found && type(*found) == typeMoment ? littleEndian<std::uint64_t>(*found, 4) : 0;
    }

private:
    // From the type of the value to the end of the set.
    std::optional<Bytes> value(std::uint32_t number) const
    {
        const std::uint32_t entries = std::min(littleEndian<std::uint32_t>(set_, 4), mostProperties);
        for (std::uint32_t i = 0; i < entries; ++i) {
            const std::size_t at = 8 + std::size_t{i} * 8;
            const auto place = littleEndian<std::uint32_t>(set_, at + 4);
            if (littleEndian<std::uint32_t>(set_, at) == number && place > 0 && place < set_.size())
                return set_.subspan(place);
        }
        return std::nullopt;
    }

    static std::uint16_t type(Bytes value) { return littleEndian<std::uint16_t>(value, 0); }

    Bytes set_;
    std::uint16_t codePage_ = 1252;
};

RawValue listValue(std::u16string_view text, std::u16string_view separators)
{
    auto values = listOf(text, separators);
    return values.empty() ? RawValue{} : RawValue::texts(std::move(values));
}

RawValue valueOf(const PropertySet& set, const NumberedRule& rule, const TextDecoding& decoding)
{
    switch (rule.shape) {
    case NumberedShape::text:
        return RawValue::text(set.text(rule.number, decoding));
    case NumberedShape::texts:
        return listValue(set.text(rule.number, decoding), u";");
    case NumberedShape::keywords:
        return listValue(set.text(rule.number, decoding), u";,");
    case NumberedShape::count:
        if (const auto count = set.count(rule.number))
            return RawValue::number(VarType::int32, *count);
        return {};
    case NumberedShape::moment:
    case NumberedShape::duration:
        break;
    }
    const std::uint64_t ticks = set.ticks(rule.number);
    const VarType type = rule.shape == NumberedShape::moment ? VarType::fileTime : VarType::uint64;
    return ticks > 0 && ticks < std::uint64_t{1} << 62 ? RawValue::number(type, ticks) : RawValue{};
}

void put(Bytes stream, std::span<const NumberedRule> rules, const TextDecoding& decoding, DocumentSink& sink)
{
    const std::size_t place = littleEndian<std::uint32_t>(stream, 44);  // of the first set
    if (littleEndian<std::uint16_t>(stream, 0) != 0xFFFE || place < 48 || place >= stream.size())
        return;
    const PropertySet set(stream.subspan(place));
    for (const NumberedRule& rule : rules)
        if (RawValue value = valueOf(set, rule, decoding); !value.empty())
            sink.property(rule.property, std::move(value));
}

}  // namespace

void putSummary(Bytes stream, const TextDecoding& decoding, DocumentSink& sink)
{
    put(stream, summaryRules, decoding, sink);
}

void putDocumentSummary(Bytes stream, const TextDecoding& decoding, DocumentSink& sink)
{
    put(stream, documentRules, decoding, sink);
}

}  // namespace kelvane
