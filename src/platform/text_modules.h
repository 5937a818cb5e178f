// Port: translation modules, which replace the program's English texts.
#pragma once

#include <filesystem>

#include "base/result.h"
#include "base/text_table.h"

namespace kelvane {

// Thread-safe.
class TextModules {
public:
    virtual ~TextModules() = default;

    // Whether the folder holds a module ("kvtr_*") at all.
    [[nodiscard]] virtual bool anyIn(const std::filesystem::path& folder) = 0;

    // The first module in the folder, by name, whatever texts it holds. `notFound` when there is none, `invalid` when
    // the first one is damaged.
    [[nodiscard]] virtual Result<TextsByNumber> load(const std::filesystem::path& folder) = 0;

    // The module in the folder for the language that the person has set for the system: for a folder in which every
    // language may lie. `notFound` when there is none or the language is English, `invalid` when it is damaged.
    [[nodiscard]] virtual Result<TextsByNumber> loadForPerson(const std::filesystem::path& folder) = 0;
};

}  // namespace kelvane
