// Port: folding of case and accents, by the Unicode Character Database.
#pragma once

#include <memory>
#include <string>
#include <string_view>

namespace kelvane {

// Thread-safe; never fails (malformed text is passed through).
class TextFolding {
public:
    virtual ~TextFolding() = default;

    // Lower case, language-independent, simple mappings only (one character stays one character).
    [[nodiscard]] virtual std::u16string lower(std::u16string_view text) const = 0;

    // Decomposes canonically and drops the marks that are accents (nonspacing marks).
    [[nodiscard]] virtual std::u16string withoutAccents(std::u16string_view text) const = 0;
};

// Defined by the adapter that the program is linked with.
[[nodiscard]] std::unique_ptr<TextFolding> makeTextFolding();

}  // namespace kelvane
