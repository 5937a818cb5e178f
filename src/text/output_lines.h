// Lines out of what a program writes, piece by piece.
#pragma once

#include <algorithm>
#include <cstddef>
#include <functional>
#include <span>
#include <string>
#include <string_view>

namespace kelvane {

// Hands over each line without its end ('\n', or '\f' with a page, which ends a line as well). A line of any length
// reaches the sink in pieces of a bounded size, cut between characters of UTF-8.
class OutputLines {
public:
    using LineSink = std::function<void(std::string_view line)>;
    explicit OutputLines(LineSink sink) : sink_(std::move(sink)) {}

    void put(std::span<const std::byte> output)
    {
        std::string_view rest(reinterpret_cast<const char*>(output.data()), output.size());
        while (!rest.empty()) {
            const std::size_t end = std::min(rest.find_first_of("\n\f"), rest.size());
            line_ += rest.substr(0, end);
            if (end < rest.size())
                give(line_.size());
            else if (line_.size() > longestPiece)
                give(wholeCharacters());
            rest.remove_prefix(std::min(end + 1, rest.size()));
        }
    }
    // What comes behind the last line end.
    void finish()
    {
        if (!line_.empty())
            give(line_.size());
    }

private:
    void give(std::size_t size)
    {
        sink_(std::string_view(line_).substr(0, size));
        line_.erase(0, size);
    }

    // Without a character at the end that may go on in the next piece.
    [[nodiscard]] std::size_t wholeCharacters() const
    {
        std::size_t size = line_.size();
        while (size > line_.size() - 4 && (static_cast<unsigned char>(line_[size - 1]) & 0xC0) == 0x80)
            --size;
        return static_cast<unsigned char>(line_[size - 1]) >= 0xC0 ? size - 1 : line_.size();
    }

    static constexpr std::size_t longestPiece = 64 * 1024;
    LineSink sink_;
    std::string line_;
};

}  // namespace kelvane
