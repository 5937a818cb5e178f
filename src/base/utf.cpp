#include "base/utf.h"

#include <cstddef>
#include <cstdint>

namespace kelvane {
namespace {

constexpr char16_t replacement = 0xFFFD;

struct Decoded {
    char32_t codePoint = replacement;
    std::size_t length = 1;
    bool valid = false;
};

struct LeadByte {
    int continuations = -1;         // -1: cannot begin a sequence
    unsigned char firstLow = 0x80;  // bounds of the first continuation byte
    unsigned char firstHigh = 0xBF;
};

LeadByte classify(unsigned char lead) noexcept
{
    if (lead >= 0xC2 && lead <= 0xDF)
        return {1};
    if (lead == 0xE0)
        return {2, 0xA0, 0xBF};
    if (lead == 0xED)
        return {2, 0x80, 0x9F};
    if (lead >= 0xE1 && lead <= 0xEF)
        return {2};
    if (lead == 0xF0)
        return {3, 0x90, 0xBF};
    if (lead >= 0xF1 && lead <= 0xF3)
        return {3};
    if (lead == 0xF4)
        return {3, 0x80, 0x8F};
    return {};
}

// Decodes the sequence at the front of a non-empty view.
Decoded decodeOne(std::string_view bytes) noexcept
{
    const auto lead = static_cast<unsigned char>(bytes[0]);
    if (lead < 0x80)
        return {lead, 1, true};
    const LeadByte shape = classify(lead);
    if (shape.continuations < 0)
        return {};
    const auto wanted = static_cast<std::size_t>(shape.continuations);
    char32_t codePoint = lead & (0x3F >> shape.continuations);
    for (std::size_t i = 1; i <= wanted; ++i) {
        const auto next = i < bytes.size() ? static_cast<unsigned char>(bytes[i]) : 0;
        const unsigned char low = i == 1 ? shape.firstLow : 0x80;
        const unsigned char high = i == 1 ? shape.firstHigh : 0xBF;
        if (next < low || next > high)
            return {replacement, i, false};
        codePoint = codePoint << 6 | (next & 0x3F);
    }
    return {codePoint, wanted + 1, true};
}

void appendUtf16(std::u16string& out, char32_t codePoint)
{
    if (codePoint < 0x10000) {
        out.push_back(static_cast<char16_t>(codePoint));
        return;
    }
    out.push_back(static_cast<char16_t>(0xD7C0 + (codePoint >> 10)));
    out.push_back(static_cast<char16_t>(0xDC00 + (codePoint & 0x3FF)));
}

void appendUtf8(std::string& out, char32_t codePoint)
{
    const auto put = [&out](char32_t byte) { out.push_back(static_cast<char>(byte)); };
    if (codePoint < 0x80) {
        put(codePoint);
    } else if (codePoint < 0x800) {
        put(0xC0 | codePoint >> 6);
        put(0x80 | (codePoint & 0x3F));
    } else if (codePoint < 0x10000) {
        put(0xE0 | codePoint >> 12);
        put(0x80 | (codePoint >> 6 & 0x3F));
        put(0x80 | (codePoint & 0x3F));
    } else {
        put(0xF0 | codePoint >> 18);
        put(0x80 | (codePoint >> 12 & 0x3F));
        put(0x80 | (codePoint >> 6 & 0x3F));
        put(0x80 | (codePoint & 0x3F));
    }
}

std::size_t asciiLength(std::string_view bytes) noexcept
{
    std::size_t length = 0;
    while (length < bytes.size() && static_cast<unsigned char>(bytes[length]) < 0x80)
        ++length;
    return length;
}

// The text of the bytes; what is malformed is written by instead(bytes).
template <class Instead>
std::u16string decode(std::string_view bytes, Instead instead)
{
    std::u16string text;
    text.reserve(bytes.size());
    while (!bytes.empty()) {
        // Most names are plain ASCII, and there may be a million of them.
        const std::size_t plain = asciiLength(bytes);
        text.append(bytes.begin(), bytes.begin() + plain);
        bytes.remove_prefix(plain);
        if (bytes.empty())
            break;
        const Decoded decoded = decodeOne(bytes);
        if (decoded.valid)
            appendUtf16(text, decoded.codePoint);
        else
            text += instead(bytes.substr(0, decoded.length));
        bytes.remove_prefix(decoded.length);
    }
    return text;
}

constexpr bool isHighSurrogate(char16_t unit)
{
    return (unit & 0xFC00) == 0xD800;
}
constexpr bool isLowSurrogate(char16_t unit)
{
    return (unit & 0xFC00) == 0xDC00;
}

bool isUnreserved(unsigned char byte)
{
    return (byte >= 'A' && byte <= 'Z') || (byte >= 'a' && byte <= 'z') || (byte >= '0' && byte <= '9') ||
           std::string_view("-._~/").find(static_cast<char>(byte)) != std::string_view::npos;
}

}  // namespace

bool isValidUtf8(std::string_view bytes) noexcept
{
    while (!bytes.empty()) {
        const Decoded decoded = decodeOne(bytes);
        if (!decoded.valid)
            return false;
        bytes.remove_prefix(decoded.length);
    }
    return true;
}

std::u16string toUtf16(std::string_view bytes)
{
    return decode(bytes, [](std::string_view) { return std::u16string(1, replacement); });
}

std::u16string toUtf16KeepingBytes(std::string_view bytes)
{
    return decode(bytes, [](std::string_view malformed) {
        std::u16string kept;
        for (const char byte : malformed)
            kept.push_back(static_cast<char16_t>(0xDC00 + static_cast<unsigned char>(byte)));
        return kept;
    });
}

std::string toUtf8(std::u16string_view text)
{
    std::string bytes;
    bytes.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        char32_t codePoint = text[i];
        if (isHighSurrogate(text[i]) && i + 1 < text.size() && isLowSurrogate(text[i + 1])) {
            codePoint = (static_cast<char32_t>(text[i]) - 0xD7C0) << 10 | (text[i + 1] & 0x3FF);
            ++i;
        } else if (isHighSurrogate(text[i]) || isLowSurrogate(text[i])) {
            codePoint = replacement;
        }
        appendUtf8(bytes, codePoint);
    }
    return bytes;
}

std::string percentEncode(std::string_view bytes)
{
    constexpr char digits[] = "0123456789ABCDEF";
    std::string text;
    text.reserve(bytes.size());
    for (const char character : bytes) {
        const auto byte = static_cast<unsigned char>(character);
        if (isUnreserved(byte)) {
            text.push_back(character);
        } else {
            text.push_back('%');
            text.push_back(digits[byte >> 4]);
            text.push_back(digits[byte & 0xF]);
        }
    }
    return text;
}

std::string displayText(std::string_view bytes)
{
    return isValidUtf8(bytes) ? std::string(bytes) : toUtf8(toUtf16(bytes));
}

}  // namespace kelvane
