// Texts that look like somebody's writing: words of one language, drawn unevenly, in sentences and lines.
#pragma once

#include <random>
#include <string>
#include <vector>

namespace kelvane::testing {

class MadeUpTexts {
public:
    explicit MadeUpTexts(std::uint32_t seed) : random_(seed)
    {
        for (int i = 0; i < 400; ++i)
            words_.push_back(word());
    }

    [[nodiscard]] std::u16string text(std::size_t length)
    {
        std::u16string text;
        while (text.size() < length) {
            // The square makes the first words of the list the frequent ones.
            const double place = std::uniform_real_distribution<>(0, 1)(random_);
            text += words_[static_cast<std::size_t>(place * place * static_cast<double>(words_.size()))];
            text += random_() % 9 == 0 ? u'\n' : u' ';
        }
        text.resize(length);
        return text;
    }

    // With about so many parts of a hundred written anew, a stretch at a time.
    [[nodiscard]] std::u16string edited(std::u16string text, unsigned percent)
    {
        constexpr std::size_t stretch = 60;
        for (std::size_t at = 0; at < text.size(); at += stretch)
            if (random_() % 100 < percent)
                text.replace(at, stretch, this->text(40 + random_() % 40));
        return text;
    }

    [[nodiscard]] std::uint32_t below(std::uint32_t limit) { return static_cast<std::uint32_t>(random_() % limit); }

private:
    std::u16string word()
    {
        static constexpr std::u16string_view letters = u"eeeeeetttttaaaaaooooiiiinnnnsssshhhrrrddllcumwfgypbvk";
        std::u16string word(1 + random_() % 9, u' ');
        for (char16_t& unit : word)
            unit = letters[random_() % letters.size()];
        return word;
    }

    std::mt19937 random_;
    std::vector<std::u16string> words_;
};

}  // namespace kelvane::testing
