// What every reader of documents owes to any bytes.
#pragma once

#include "../support/document_world.h"
#include "require.h"

namespace kelvane::testing {

// Stands in for the system's tables: the readers are what is tried, not the library behind the port.
class NarrowDecoding final : public TextDecoding {
public:
    Result<std::u16string> decode(std::span<const std::byte> bytes, std::string_view charset) const override
    {
        if (charset.starts_with("x"))
            return Error{ErrorKind::notFound, 0, {}};
        std::u16string text;
        for (const std::byte byte : bytes)
            text += static_cast<char16_t>(byte);
        return text;
    }
    std::optional<std::string> guess(std::span<const std::byte> bytes) const override
    {
        return bytes.size() % 2 == 0 ? std::optional<std::string>("windows-1251") : std::nullopt;
    }
};

// Extracts the same bytes with a small sample and with a large one: the small one is the beginning of the large one.
inline void tryDocument(std::string_view fileName, const std::uint8_t* data, std::size_t size)
{
    DocumentWorld world;
    world.decoding = std::make_unique<NarrowDecoding>();
    const std::string content(reinterpret_cast<const char*>(data), size);
    const ExtractedDocument whole = world.extract(fileName, content);
    require(whole.text.size() <= world.options.textSample);
    require(whole.cut || whole.plain || whole.weight >= whole.text.size());
    world.options.textSample = 100;
    const ExtractedDocument sample = world.extract(fileName, content);
    require(sample.text.size() <= 100 && sample.outcome == whole.outcome);
    require(sample.text.size() >= std::min<std::size_t>(99, whole.text.size()));
    require(whole.text.starts_with(sample.text));
    require(sample.weight <= whole.weight);
}

}  // namespace kelvane::testing
