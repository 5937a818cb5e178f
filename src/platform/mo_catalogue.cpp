#include "platform/mo_catalogue.h"

#include <cstdint>
#include <optional>

#include "base/utf.h"

namespace kelvane {
namespace {

constexpr std::uint32_t catalogueMagic = 0x950412DE;
constexpr std::uint32_t magicSwapped = 0xDE120495;
constexpr std::size_t revisionAt = 4;
constexpr std::size_t countAt = 8;
constexpr std::size_t originalsAt = 12;
constexpr std::size_t translationsAt = 16;
constexpr std::size_t headerSize = 28;
constexpr std::size_t rowSize = 8;  // a length and an offset
constexpr char contextEnd = '\4';

Error damaged(const char* what)
{
    return {ErrorKind::invalid, 0, what};
}

class MoFile {
public:
    explicit MoFile(std::span<const std::byte> bytes) : bytes_(bytes) {}

    [[nodiscard]] bool readHeader()
    {
        if (bytes_.size() < headerSize || bytes_.size() > largestMoFile)
            return false;
        swapped_ = number(0) == magicSwapped;
        return number(0) == catalogueMagic && number(revisionAt) >> 16 <= 1;
    }

    [[nodiscard]] std::uint32_t number(std::size_t at) const
    {
        std::uint32_t value = 0;
        for (std::size_t byte = 0; byte < 4; ++byte)
            value |= std::to_integer<std::uint32_t>(bytes_[at + byte]) << (swapped_ ? 24 - 8 * byte : 8 * byte);
        return value;
    }

    [[nodiscard]] bool holdsTable(std::size_t at, std::size_t rows) const
    {
        return at <= bytes_.size() && rows <= (bytes_.size() - at) / rowSize;
    }

    // The text that a row of a table points to, without the NUL that ends it.
    [[nodiscard]] std::optional<std::string_view> text(std::size_t row) const
    {
        const std::size_t length = number(row);
        const std::size_t at = number(row + 4);
        if (at >= bytes_.size() || length >= bytes_.size() - at || bytes_[at + length] != std::byte{0})
            return std::nullopt;
        return std::string_view(reinterpret_cast<const char*>(bytes_.data()) + at, length);
    }

private:
    std::span<const std::byte> bytes_;
    bool swapped_ = false;  // big-endian; the other order is read first
};

// Plural forms are parted by NUL, which no other text holds.
std::string_view firstForm(std::string_view text)
{
    return text.substr(0, text.find('\0'));
}

MoEntry makeEntry(std::string_view key, std::string_view translation)
{
    const std::size_t end = key.find(contextEnd);
    if (end == std::string_view::npos)
        return {{}, firstForm(key), firstForm(translation)};
    return {firstForm(key.substr(0, end)), firstForm(key.substr(end + 1)), firstForm(translation)};
}

}  // namespace

Status readMoCatalogue(std::span<const std::byte> bytes, const std::function<void(const MoEntry&)>& sink)
{
    MoFile file(bytes);
    if (!file.readHeader())
        return damaged("no catalogue of translations");
    const std::size_t count = file.number(countAt);
    const std::size_t originals = file.number(originalsAt);
    const std::size_t translations = file.number(translationsAt);
    if (!file.holdsTable(originals, count) || !file.holdsTable(translations, count))
        return damaged("the catalogue ends too early");
    for (std::size_t row = 0; row < count; ++row) {
        const auto key = file.text(originals + row * rowSize);
        const auto translation = file.text(translations + row * rowSize);
        if (!key || !translation)
            return damaged("a text of the catalogue lies outside of it");
        if (!isValidUtf8(*key) || !isValidUtf8(*translation))
            return damaged("a text of the catalogue is not UTF-8");
        sink(makeEntry(*key, *translation));
    }
    return {};
}

}  // namespace kelvane
