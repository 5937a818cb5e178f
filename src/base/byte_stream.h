// Little-endian bytes, written and read one after the other.
#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <utility>
#include <vector>

namespace kelvane {

class ByteWriter {
public:
    template <std::unsigned_integral Number>
    void number(Number value)
    {
        for (std::size_t i = 0; i < sizeof value; ++i)
            bytes_.push_back(static_cast<std::byte>(value >> (8 * i) & 0xFF));
    }
    void bytes(std::span<const std::byte> block) { bytes_.insert(bytes_.end(), block.begin(), block.end()); }
    void text(std::string_view characters) { bytes(std::as_bytes(std::span(characters))); }

    [[nodiscard]] std::size_t size() const { return bytes_.size(); }
    [[nodiscard]] const std::vector<std::byte>& written() const { return bytes_; }
    [[nodiscard]] std::vector<std::byte> take() { return std::move(bytes_); }

private:
    std::vector<std::byte> bytes_;
};

// Reads from bytes that it does not own. Each answers with nothing, and stays where it is, when too few are left.
class ByteReader {
public:
    explicit ByteReader(std::span<const std::byte> bytes) : rest_(bytes) {}

    template <std::unsigned_integral Number>
    [[nodiscard]] std::optional<Number> number()
    {
        const auto block = bytes(sizeof(Number));
        if (!block)
            return std::nullopt;
        std::uint64_t value = 0;
        for (std::size_t i = 0; i < sizeof(Number); ++i)
            value |= std::to_integer<std::uint64_t>((*block)[i]) << (8 * i);
        return static_cast<Number>(value);
    }
    [[nodiscard]] std::optional<std::span<const std::byte>> bytes(std::size_t count)
    {
        if (count > rest_.size())
            return std::nullopt;
        const auto block = rest_.first(count);
        rest_ = rest_.subspan(count);
        return block;
    }
    [[nodiscard]] bool atEnd() const { return rest_.empty(); }

private:
    std::span<const std::byte> rest_;
};

}  // namespace kelvane
