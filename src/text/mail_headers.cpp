#include "text/mail_headers.h"

#include <algorithm>

#include "base/words.h"
#include "text/mail_encodings.h"
#include "text/property_values.h"

namespace kelvane {
namespace {

// No real header comes near; what is beyond is no field.
constexpr std::size_t mostFields = 2000;
constexpr std::size_t longestField = 100'000;

std::string_view firstLine(std::string_view text)
{
    return text.substr(0, std::min(text.find('\n'), text.size()));
}

void dropLine(std::string_view& text, std::string_view line)
{
    text.remove_prefix(std::min(line.size() + 1, text.size()));
}

// Where the colon of a field is; 0 for a line that is none.
std::size_t colonOf(std::string_view line)
{
    const std::size_t colon = line.find(':');
    if (colon == std::string_view::npos)
        return 0;
    const bool name = std::all_of(line.begin(), line.begin() + static_cast<std::ptrdiff_t>(colon),
                                  [](char byte) { return byte > ' ' && byte < 0x7F; });
    return name ? colon : 0;
}

// Cuts a structured value at semicolons that no quotation marks enclose.
std::vector<std::string_view> splitQuoted(std::string_view text)
{
    std::vector<std::string_view> parts;
    bool quoted = false;
    std::size_t from = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\\' && quoted)
            ++i;
        else if (text[i] == '"')
            quoted = !quoted;
        else if (text[i] == ';' && !quoted) {
            parts.push_back(text.substr(from, i - from));
            from = i + 1;
        }
    }
    parts.push_back(text.substr(from));
    return parts;
}

std::string unquoted(std::string_view text)
{
    std::string plain;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\\' && i + 1 < text.size())
            plain += text[++i];
        else if (text[i] != '"')
            plain += text[i];
    }
    return plain;
}

std::string percentDecoded(std::string_view text)
{
    std::string bytes;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const int high = text[i] == '%' && i + 2 < text.size() ? hexDigitOf(text[i + 1]) : -1;
        const int low = high >= 0 ? hexDigitOf(text[i + 2]) : -1;
        bytes += low >= 0 ? static_cast<char>(high * 16 + low) : text[i];
        i += low >= 0 ? 2 : 0;
    }
    return bytes;
}

// "name*0*=utf-8'en'a%20b": the pieces of one name are joined, their charset becomes an encoded word.
void addParameter(std::string_view written, std::vector<MailField>& parameters)
{
    const std::size_t equals = written.find('=');
    if (equals == std::string_view::npos)
        return;
    std::string name = asciiLower(trimmed(written.substr(0, equals)));
    std::string value = unquoted(trimmed(written.substr(equals + 1)));
    const std::size_t star = name.find('*');
    const bool continued =
        star != std::string::npos && !name.ends_with("*0") && !name.ends_with("*0*") && star + 1 < name.size();
    if (star != std::string::npos && name.ends_with('*')) {
        const std::size_t language = continued ? std::string::npos : value.find('\'');
        const std::size_t first = language != std::string::npos ? value.find('\'', language + 1) : std::string::npos;
        value = percentDecoded(std::string_view(value).substr(first != std::string::npos ? first + 1 : 0));
    }
    name.resize(std::min(star, name.size()));
    if (continued && !parameters.empty() && parameters.back().name == name)
        parameters.back().value += value;
    else
        parameters.push_back({std::move(name), std::move(value)});
}

}  // namespace

MailHeader MailHeader::take(std::string_view& text)
{
    MailHeader header;
    while (!text.empty()) {
        const std::string_view line = firstLine(text);
        const bool last = trimmed(line).empty();
        if (!last && !header.add(line))
            break;
        dropLine(text, line);
        if (last)
            break;
    }
    return header;
}

bool MailHeader::add(std::string_view line)
{
    const std::string_view content = trimmed(line.substr(0, longestField));
    if (line.front() == ' ' || line.front() == '\t') {
        if (fields_.empty())
            return false;
        if (std::string& value = fields_.back().value; value.size() < longestField)
            value.append(" ").append(content);
        return true;
    }
    const std::size_t colon = colonOf(content);
    if (colon == 0 || fields_.size() >= mostFields)
        return false;
    fields_.push_back({asciiLower(content.substr(0, colon)), std::string(trimmed(content.substr(colon + 1)))});
    return true;
}

std::string_view MailHeader::value(std::string_view name) const
{
    const auto field =
        std::find_if(fields_.begin(), fields_.end(), [name](const MailField& each) { return each.name == name; });
    return field != fields_.end() ? std::string_view(field->value) : std::string_view();
}

std::string_view MailValue::parameter(std::string_view name) const
{
    const auto found =
        std::find_if(parameters.begin(), parameters.end(), [name](const MailField& each) { return each.name == name; });
    return found != parameters.end() ? std::string_view(found->value) : std::string_view();
}

MailValue parseMailValue(std::string_view written)
{
    const auto parts = splitQuoted(written);
    MailValue value;
    value.value = asciiLower(trimmed(parts.front()));
    for (std::size_t i = 1; i < parts.size(); ++i)
        addParameter(parts[i], value.parameters);
    return value;
}

}  // namespace kelvane
