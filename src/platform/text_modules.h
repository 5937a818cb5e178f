// Port: translation modules, which replace the program's English texts.
#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <string>

#include "base/result.h"

namespace kelvane {

// The texts of a module by their numbers; a number that is missing stays English.
using TextsByNumber = std::map<std::uint16_t, std::u16string>;

// Thread-safe.
class TextModules {
public:
    virtual ~TextModules() = default;

    // Whether the folder holds a module ("kvtr_*") at all.
    [[nodiscard]] virtual bool anyIn(const std::filesystem::path& folder) = 0;

    // The first module in the folder, by name, whatever texts it holds. `notFound` when there is none, `invalid` when
    // the first one is damaged.
    [[nodiscard]] virtual Result<TextsByNumber> load(const std::filesystem::path& folder) = 0;
};

}  // namespace kelvane
