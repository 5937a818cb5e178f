#include "platform/string_bundle.h"

namespace kelvane {
namespace {

char16_t unitAt(std::span<const std::byte> bytes, std::size_t at)
{
    return static_cast<char16_t>(std::to_integer<unsigned>(bytes[at]) | std::to_integer<unsigned>(bytes[at + 1]) << 8);
}

}  // namespace

Status readStringBundle(std::span<const std::byte> bytes, std::uint16_t bundle, TextsByNumber& texts)
{
    const auto first = static_cast<std::uint16_t>((bundle - 1) * textsOfBundle);
    for (std::uint16_t index = 0; index < textsOfBundle; ++index) {
        const std::size_t units = bytes.size() < 2 ? 0 : unitAt(bytes, 0);
        if (bytes.size() < 2 + 2 * units)
            return Error{ErrorKind::invalid, 0, "a bundle of texts ends too early"};
        std::u16string text;
        for (std::size_t unit = 1; unit <= units; ++unit)
            text += unitAt(bytes, 2 * unit);
        bytes = bytes.subspan(2 + 2 * units);
        if (!text.empty())
            texts[static_cast<std::uint16_t>(first + index)] = std::move(text);
    }
    return {};
}

}  // namespace kelvane
