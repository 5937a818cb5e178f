// Port: bytes in any charset as UTF-16.
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "base/result.h"

namespace kelvane {

// Thread-safe.
class TextDecoding {
public:
    virtual ~TextDecoding() = default;
    // What is malformed becomes U+FFFD; a character cut off at the end is left out. The name is one of the IANA
    // registry, or an alias ("windows-1252", "latin1", "cp437"), in any case; notFound for an unknown one. A
    // byte-order mark is no part of the text.
    [[nodiscard]] virtual Result<std::u16string> decode(std::span<const std::byte> bytes,
                                                        std::string_view charset) const = 0;
    // The likeliest charset of bytes that carry no mark and are no UTF-8; nothing where none is likely.
    [[nodiscard]] virtual std::optional<std::string> guess(std::span<const std::byte> bytes) const = 0;
};

// Defined by the adapter that the program is linked with.
[[nodiscard]] std::unique_ptr<TextDecoding> makeTextDecoding();

}  // namespace kelvane
