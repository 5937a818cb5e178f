#include "app/list_section.h"

#include <algorithm>

#include "app/text_lists.h"
#include "base/utf.h"

namespace kelvane {
namespace {

constexpr std::size_t mostDigits = 6;

// Nothing for a name that is no number, or one with a leading zero: it would name an entry a second time.
bool isNumber(std::u16string_view text)
{
    const bool digits =
        std::all_of(text.begin(), text.end(), [](char16_t unit) { return unit >= u'0' && unit <= u'9'; });
    return digits && !text.empty() && text.size() <= mostDigits && (text.front() != u'0' || text.size() == 1);
}

std::size_t numberOf(std::u16string_view digits)
{
    std::size_t number = 0;
    for (const char16_t digit : digits)
        number = number * 10 + (digit - u'0');
    return number;
}

}  // namespace

std::u16string entryName(std::u16string_view part, std::size_t number)
{
    return std::u16string(part) + toUtf16(std::to_string(number));
}

std::vector<std::size_t> entryNumbers(const SettingsNode& section, std::u16string_view part)
{
    const std::u16string head = lowerKey(part);
    std::vector<std::size_t> numbers;
    for (const std::u16string& name : section.valueNames()) {
        const std::u16string key = lowerKey(name);
        if (key.starts_with(head) && isNumber(key.substr(head.size())))
            numbers.push_back(numberOf(key.substr(head.size())));
    }
    std::sort(numbers.begin(), numbers.end());
    return numbers;
}

ListWriter::ListWriter(const SettingsRoot& root, std::u16string_view section)
    : node_(root, section, SettingsAccess::writing)
{
}

void ListWriter::note(std::u16string_view name, SettingsCode code)
{
    if (code == SettingsCode::tooLong)
        return;
    written_.insert(lowerKey(name));
    if (code_ == SettingsCode::done)
        code_ = code;
}

void ListWriter::writeNumber(std::u16string_view name, std::uint32_t value)
{
    note(name, node_.writeNumber(value, name));
}

void ListWriter::writeText(std::u16string_view name, std::u16string_view text)
{
    note(name, node_.writeString(text, name));
}

void ListWriter::writeBlock(std::u16string_view name, std::span<const std::byte> block)
{
    note(name, node_.writeBinary(block.data(), name, block.size()));
}

SettingsCode ListWriter::finish()
{
    if (!node_.isOpen())
        return SettingsCode::noKey;
    for (const std::u16string& name : node_.valueNames()) {
        if (code_ != SettingsCode::done)
            break;
        if (!written_.contains(lowerKey(name)))
            code_ = node_.deleteValue(name);
    }
    return code_;
}

}  // namespace kelvane
