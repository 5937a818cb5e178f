// Reads as much of a minidump as tests look at; throws std::out_of_range where it is cut off or a stream is missing.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace kelvane::testing {

class MinidumpReader {
public:
    struct Module {
        std::uint64_t address = 0;
        std::uint64_t size = 0;
        std::string name;
        std::string codeView;
    };
    struct Thread {
        std::uint64_t id = 0;
        std::uint64_t stackStart = 0;
        std::uint64_t stackSize = 0;
        std::uint64_t stackPointer = 0;
        std::uint64_t instruction = 0;
    };

    explicit MinidumpReader(std::string bytes) : bytes_(std::move(bytes))
    {
        for (std::uint64_t i = 0, at = number(12, 4); i < number(8, 4); ++i, at += 12)
            streams_[number(at, 4)] = {number(at + 4, 4), number(at + 8, 4)};
    }

    [[nodiscard]] std::uint64_t number(std::uint64_t at, int size) const
    {
        std::uint64_t value = 0;
        for (int i = size; i-- > 0;)
            value = value << 8 | static_cast<unsigned char>(bytes_.at(at + static_cast<std::uint64_t>(i)));
        return value;
    }
    [[nodiscard]] bool has(std::uint64_t type) const { return streams_.contains(type); }
    [[nodiscard]] std::string stream(std::uint64_t type) const { return part(streams_.at(type)); }
    [[nodiscard]] std::uint64_t field(std::uint64_t type, std::uint64_t offset, int size) const
    {
        return number(streams_.at(type).at + offset, size);
    }

    // One after the other in a list stream: a count, then rows of one size.
    [[nodiscard]] std::vector<std::uint64_t> rows(std::uint64_t type, std::uint64_t size) const
    {
        std::vector<std::uint64_t> positions;
        for (std::uint64_t i = 0; i < field(type, 0, 4); ++i)
            positions.push_back(streams_.at(type).at + 4 + i * size);
        return positions;
    }

    [[nodiscard]] std::vector<Module> modules() const
    {
        std::vector<Module> modules;
        for (const std::uint64_t at : rows(4, 108))
            modules.push_back({number(at, 8), number(at + 8, 4), text(number(at + 20, 4)), part(location(at + 76))});
        return modules;
    }
    [[nodiscard]] std::vector<Thread> threads() const
    {
        std::vector<Thread> threads;
        for (const std::uint64_t at : rows(3, 48)) {
            const Location context = location(at + 40);
            threads.push_back({number(at, 4), number(at + 24, 8), number(at + 32, 4), number(context.at + 0x98, 8),
                               number(context.at + 0xF8, 8)});
        }
        return threads;
    }

private:
    struct Location {
        std::uint64_t size = 0;
        std::uint64_t at = 0;
    };
    [[nodiscard]] Location location(std::uint64_t at) const { return {number(at, 4), number(at + 4, 4)}; }
    [[nodiscard]] std::string part(Location where) const
    {
        return where.at + where.size <= bytes_.size() ? bytes_.substr(where.at, where.size)
                                                      : throw std::out_of_range("minidump");
    }
    [[nodiscard]] std::string text(std::uint64_t at) const  // ASCII only
    {
        std::string characters;
        for (std::uint64_t i = 0; i < number(at, 4); i += 2)
            characters += static_cast<char>(number(at + 4 + i, 2));
        return characters;
    }

    std::string bytes_;
    std::map<std::uint64_t, Location> streams_;
};

}  // namespace kelvane::testing
