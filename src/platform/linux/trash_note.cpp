#include "platform/linux/trash_note.h"

#include <array>
#include <cctype>
#include <cstdint>
#include <string_view>
#include <sys/random.h>

namespace kelvane::linux_os {
namespace {

constexpr std::string_view hexDigits = "0123456789ABCDEF";
constexpr unsigned numberedAttempts = 4;

// RFC 3986: letters, digits and these stand for themselves, everything else is a byte in hexadecimal.
std::string percentEncoded(std::string_view path)
{
    std::string text;
    for (const char letter : path) {
        const auto byte = static_cast<unsigned char>(letter);
        const bool plain = byte < 0x80 && (std::isalnum(byte) != 0 ||
                                           std::string_view("-._~/").find(letter) != std::string_view::npos);
        if (plain) {
            text += letter;
        } else {
            text += '%';
            text += hexDigits[byte >> 4];
            text += hexDigits[byte & 15];
        }
    }
    return text;
}

std::string localTime(std::time_t now)
{
    std::tm parts{};
    std::array<char, 32> text{};
    if (::localtime_r(&now, &parts) == nullptr)
        return "1970-01-01T00:00:00";
    return {text.data(), std::strftime(text.data(), text.size(), "%Y-%m-%dT%H:%M:%S", &parts)};
}

std::string randomTag()
{
    std::array<unsigned char, 8> bytes{};
    static_cast<void>(::getrandom(bytes.data(), bytes.size(), 0));
    std::string tag;
    for (const unsigned char byte : bytes) {
        tag += hexDigits[byte >> 4];
        tag += hexDigits[byte & 15];
    }
    return tag;
}

// What a person takes for the type of a file stays at the end of its name.
std::size_t endingOf(std::string_view name)
{
    constexpr std::size_t longestEnding = 16;
    const std::size_t dot = name.rfind('.');
    const bool isEnding = dot != std::string_view::npos && dot > 0 && name.size() - dot <= longestEnding;
    return isEnding ? dot : name.size();
}

// Not within a UTF-8 sequence.
std::string_view cutTo(std::string_view text, std::size_t length)
{
    if (text.size() <= length)
        return text;
    while (length > 0 && (static_cast<unsigned char>(text[length]) & 0xC0) == 0x80)
        --length;
    return text.substr(0, length);
}

}  // namespace

std::string trashNote(const std::filesystem::path& place, std::time_t now)
{
    return "[Trash Info]\nPath=" + percentEncoded(place.native()) + "\nDeletionDate=" + localTime(now) + "\n";
}

std::string trashName(const std::string& name, unsigned attempt, std::size_t longest)
{
    const std::size_t ending = endingOf(name);
    std::string tail = name.substr(ending);
    if (attempt > 0)
        tail = "." + (attempt <= numberedAttempts ? std::to_string(attempt + 1) : randomTag()) + tail;
    const std::size_t room = longest - std::string_view(noteEnding).size() - tail.size();
    return std::string(cutTo(std::string_view(name).substr(0, ending), room)) + tail;
}

}  // namespace kelvane::linux_os
