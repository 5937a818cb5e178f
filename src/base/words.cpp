#include "base/words.h"

#include <algorithm>
#include <numeric>
#include <utility>

namespace kelvane {
namespace {

std::string_view trim(std::string_view text)
{
    const auto first = text.find_first_not_of(" \t");
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

}  // namespace

std::vector<std::string> splitWords(std::string_view text, char separator)
{
    std::vector<std::string> words;
    while (!text.empty()) {
        const auto end = std::min(text.find(separator), text.size());
        if (const auto word = trim(text.substr(0, end)); !word.empty())
            words.emplace_back(word);
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return words;
}

std::string asciiLower(std::string_view text)
{
    std::string lower(text);
    std::transform(lower.begin(), lower.end(), lower.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c; });
    return lower;
}

bool wildcardMatch(std::string_view pattern, std::string_view text) noexcept
{
    constexpr auto none = std::string_view::npos;
    std::size_t p = 0;
    std::size_t t = 0;
    std::size_t star = none;
    std::size_t starText = 0;
    while (t < text.size()) {
        if (p < pattern.size() && pattern[p] == '*') {
            star = p++;
            starText = t;
        } else if (p < pattern.size() && (pattern[p] == '?' || pattern[p] == text[t])) {
            ++p;
            ++t;
        } else if (star != none) {
            p = star + 1;
            t = ++starText;
        } else {
            return false;
        }
    }
    while (p < pattern.size() && pattern[p] == '*')
        ++p;
    return p == pattern.size();
}

std::size_t editDistance(std::string_view a, std::string_view b)
{
    std::vector<std::size_t> row(b.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (std::size_t i = 1; i <= a.size(); ++i) {
        std::size_t diagonal = std::exchange(row[0], i);
        for (std::size_t j = 1; j <= b.size(); ++j) {
            const std::size_t substituted = diagonal + (a[i - 1] == b[j - 1] ? 0 : 1);
            diagonal = std::exchange(row[j], std::min({substituted, row[j] + 1, row[j - 1] + 1}));
        }
    }
    return row.back();
}

std::vector<std::string> nearestWords(std::string_view typed, const std::vector<std::string>& known, std::size_t most)
{
    const std::string wanted = asciiLower(typed);
    std::vector<std::pair<std::size_t, std::string>> ranked;
    for (const auto& word : known) {
        const std::size_t distance = editDistance(wanted, asciiLower(word));
        if (distance * 2 <= std::max(typed.size(), std::size_t{2}))
            ranked.emplace_back(distance, word);
    }
    std::stable_sort(ranked.begin(), ranked.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
    std::vector<std::string> nearest;
    for (std::size_t i = 0; i < ranked.size() && i < most && ranked[i].first <= ranked[0].first + 1; ++i)
        nearest.push_back(ranked[i].second);
    return nearest;
}

}  // namespace kelvane
