#include <array>

#include "platform/exif_facts.h"
#include "platform/lenient_text.h"
#include "platform/star_rating.h"

namespace kelvane {
namespace {

// Tags of Windows: UTF-16, low bytes first whatever the order of the block.
std::u16string windowsText(const TiffField* field)
{
    std::u16string text;
    if (field == nullptr)
        return text;
    const std::string_view bytes = field->bytes();
    for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
        const auto unit =
            static_cast<char16_t>(static_cast<unsigned char>(bytes[i]) | static_cast<unsigned char>(bytes[i + 1]) << 8);
        if (unit == 0)
            break;
        text += unit;
    }
    return text;
}

std::u16string utf16Of(std::string_view bytes, bool bigEndian)
{
    if (bytes.starts_with("\xFF\xFE") || bytes.starts_with("\xFE\xFF")) {
        bigEndian = bytes.front() == '\xFE';
        bytes.remove_prefix(2);
    }
    std::u16string text;
    for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
        const auto first = static_cast<unsigned char>(bytes[i]);
        const auto second = static_cast<unsigned char>(bytes[i + 1]);
        const auto unit = static_cast<char16_t>(bigEndian ? first << 8 | second : second << 8 | first);
        if (unit == 0)
            break;
        text += unit;
    }
    return text;
}

// Hundredths, and stars: Windows writes both.
void addRatings(const TiffDirectory& picture, FactList& facts)
{
    if (const TiffField* hundredths = TiffTags::find(picture, 0x4749))
        addRating(hundredths->whole().value_or(0), facts);
    if (const TiffField* stars = TiffTags::find(picture, 0x4746))
        addStars(stars->whole().value_or(0), facts);
}

// A photographer's, and behind a zero that of an editor.
std::u16string copyright(const TiffField* field)
{
    if (field == nullptr)
        return {};
    const std::string_view bytes = field->bytes();
    const std::u16string photographer(trimmedFact(lenientText(bytes)));
    const std::string_view rest = bytes.substr(std::min(bytes.size(), bytes.find('\0')));
    const std::u16string editor(rest.size() > 1 ? trimmedFact(lenientText(rest.substr(1))) : std::u16string_view());
    return photographer.empty() || editor.empty() ? photographer + editor : photographer + u"; " + editor;
}

}  // namespace

// The first eight bytes name the charset (section 4.6.6.4): JIS is not read.
std::u16string markedExifText(const TiffField* field)
{
    const std::string_view bytes = field != nullptr ? field->bytes() : std::string_view();
    if (bytes.size() <= 8)
        return {};
    const std::string_view text = bytes.substr(8);
    if (bytes.starts_with("UNICODE"))
        return utf16Of(text, field->bigEndian());
    const bool known = bytes.starts_with("ASCII") || bytes.starts_with(std::string_view("\0\0\0\0\0\0\0\0", 8));
    return known ? lenientText(text) : std::u16string();
}

void addExifWords(const TiffTags& tags, FactList& facts)
{
    if (tags.pictures.empty())
        return;
    const TiffDirectory& picture = tags.pictures.front();
    const auto find = [&picture](std::uint16_t tag) { return TiffTags::find(picture, tag); };
    facts.text("System.Title", windowsText(find(0x9C9B)));
    facts.text("System.Comment", windowsText(find(0x9C9C)));
    facts.texts("System.Author", separatedFacts(windowsText(find(0x9C9D))));
    facts.texts("System.Keywords", separatedFacts(windowsText(find(0x9C9E))));
    facts.text("System.Subject", windowsText(find(0x9C9F)));
    facts.text("System.Title", exifText(find(0x010E)));
    facts.text("System.Comment", markedExifText(TiffTags::find(tags.exif, 0x9286)));
    facts.texts("System.Author", separatedFacts(exifText(find(0x013B))));
    facts.text("System.Copyright", copyright(find(0x8298)));
    addRatings(picture, facts);
}

}  // namespace kelvane
