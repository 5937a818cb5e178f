// Entries of journals, made up at random.
#pragma once

#include <random>
#include <string>
#include <vector>

#include "cleanup/journal.h"
#include "support/paths.h"

namespace kelvane::testing {

class JournalSamples {
public:
    explicit JournalSamples(unsigned seed) : random_(seed) {}

    [[nodiscard]] unsigned below(unsigned limit)
    {
        return std::uniform_int_distribution<unsigned>(0, limit - 1)(random_);
    }

    [[nodiscard]] JournalIntent intent()
    {
        JournalIntent intent;
        intent.action = static_cast<CleanupAction>(below(3));
        intent.item = native("/" + name(below(20) == 0 ? 4000 : 30));
        intent.itemWas = stamp();
        intent.kept = native("/" + name(40));
        intent.keptWas = stamp();
        intent.temporary = native(name(12));
        intent.metadata = {word(), word(), word(), number(), number(), {}};
        for (unsigned i = below(4); i > 0; --i)
            intent.metadata.attributes.emplace_back(name(9), std::vector<std::byte>(below(300), std::byte(i)));
        return intent;
    }

    // Bytes that are no UTF-8 where names may have them; never a separator.
    [[nodiscard]] std::string name(unsigned longest)
    {
        static constexpr std::string_view plain = "ab \n\"\\%.";
        std::string text;
        for (unsigned left = 1 + below(longest); left > 0; --left)
            text += below(4) == 0 && pathsArePosix ? static_cast<char>(0x80 + below(0x80)) : plain[below(8)];
        return text;
    }

private:
    [[nodiscard]] std::uint32_t word() { return static_cast<std::uint32_t>(random_()); }
    [[nodiscard]] std::int64_t number() { return std::int64_t{word()} - 0x7FFF'FFFF; }
    [[nodiscard]] FileStamp stamp()
    {
        return {{word(), word()}, static_cast<FileKind>(below(4)), {word()}, {number()}};
    }

    std::mt19937 random_;
};

}  // namespace kelvane::testing
