// A buffer that foreign code fills.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace kelvane {

// As many zero bytes as the foreign code is told of, and behind them a stretch that it has no business with: writing
// there is noticed, as long as it goes no further than that. Aligned for any number.
class GuardedRoom {
public:
    explicit GuardedRoom(std::size_t length)
        : length_(length), words_((length + guardLength) / sizeof(std::uint64_t) + 1)
    {
        clear();
    }

    void clear()
    {
        std::memset(words_.data(), 0, length_);
        std::memset(characters() + length_, guardByte, guardLength);
    }

    [[nodiscard]] void* data() { return words_.data(); }
    [[nodiscard]] char* characters() { return reinterpret_cast<char*>(words_.data()); }
    [[nodiscard]] int length() const { return static_cast<int>(length_); }

    [[nodiscard]] bool intact() const
    {
        const std::string_view guard(reinterpret_cast<const char*>(words_.data()) + length_, guardLength);
        return guard.find_first_not_of(guardByte) == std::string_view::npos;
    }

    // Up to the first zero, or all of the room where there is none.
    [[nodiscard]] std::string_view text() const { return whole().substr(0, whole().find('\0')); }
    [[nodiscard]] std::u16string wideText() const
    {
        std::u16string text(length_ / sizeof(char16_t), u'\0');
        std::memcpy(text.data(), words_.data(), text.size() * sizeof(char16_t));
        text.resize(std::min(text.find(u'\0'), text.size()));
        return text;
    }
    template <class Number>
    [[nodiscard]] Number number() const
    {
        Number value{};
        std::memcpy(&value, words_.data(), sizeof value);
        return value;
    }

private:
    static constexpr std::size_t guardLength = 1024;
    static constexpr char guardByte = '\x5A';

    [[nodiscard]] std::string_view whole() const { return {reinterpret_cast<const char*>(words_.data()), length_}; }

    std::size_t length_;
    std::vector<std::uint64_t> words_;
};

}  // namespace kelvane
