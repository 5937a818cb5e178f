#include "platform/linux/link_helper/link_message.h"

#include <algorithm>
#include <string_view>

namespace kelvane::linux_os {
namespace {

constexpr std::uint32_t magic = 0x484C'564B;  // "KVLH"

void put(std::vector<std::byte>& bytes, std::uint32_t number)
{
    for (unsigned shift = 0; shift < 32; shift += 8)
        bytes.push_back(static_cast<std::byte>(number >> shift));
}

void put(std::vector<std::byte>& bytes, std::string_view text)
{
    put(bytes, static_cast<std::uint32_t>(text.size()));
    for (const char c : text)
        bytes.push_back(static_cast<std::byte>(c));
}

// Takes one field after the other; from the first one that is not there on, everything fails.
class Fields {
public:
    explicit Fields(std::span<const std::byte> bytes) : rest_(bytes) {}

    std::uint32_t number()
    {
        const auto bytes = take(4);
        std::uint32_t value = 0;
        for (std::size_t i = 0; i < bytes.size(); ++i)
            value |= static_cast<std::uint32_t>(bytes[i]) << (8 * i);
        return value;
    }

    std::string text()
    {
        const auto bytes = take(number());
        std::string value(bytes.size(), '\0');
        std::transform(bytes.begin(), bytes.end(), value.begin(), [](std::byte b) { return static_cast<char>(b); });
        return value;
    }

    LinkSecret secret()
    {
        LinkSecret value{};
        const auto bytes = take(value.size());
        std::copy(bytes.begin(), bytes.end(), value.begin());
        return value;
    }

    [[nodiscard]] bool allRead() const { return good_ && rest_.empty(); }

private:
    std::span<const std::byte> take(std::size_t count)
    {
        good_ = good_ && count <= rest_.size();
        if (!good_)
            return {};
        const auto taken = rest_.first(count);
        rest_ = rest_.subspan(count);
        return taken;
    }

    std::span<const std::byte> rest_;
    bool good_ = true;
};

}  // namespace

std::vector<std::byte> encode(const LinkRequest& request)
{
    std::vector<std::byte> bytes;
    put(bytes, magic);
    put(bytes, static_cast<std::uint32_t>(request.kind));
    bytes.insert(bytes.end(), request.secret.begin(), request.secret.end());
    put(bytes, request.link);
    put(bytes, request.target);
    return bytes;
}

std::vector<std::byte> encode(const LinkAnswer& answer)
{
    std::vector<std::byte> bytes;
    put(bytes, magic);
    put(bytes, static_cast<std::uint32_t>(answer.outcome));
    put(bytes, static_cast<std::uint32_t>(answer.systemCode));
    return bytes;
}

std::optional<LinkRequest> decodeRequest(std::span<const std::byte> bytes)
{
    Fields fields(bytes);
    const bool ours = fields.number() == magic;
    LinkRequest request;
    request.kind = static_cast<LinkRequestKind>(fields.number());
    request.secret = fields.secret();
    request.link = fields.text();
    request.target = fields.text();
    const bool known = request.kind >= LinkRequestKind::greet && request.kind <= LinkRequestKind::leave;
    return ours && known && fields.allRead() ? std::optional(std::move(request)) : std::nullopt;
}

std::optional<LinkAnswer> decodeAnswer(std::span<const std::byte> bytes)
{
    Fields fields(bytes);
    const bool ours = fields.number() == magic;
    const LinkAnswer answer{static_cast<LinkOutcome>(fields.number()), static_cast<std::int32_t>(fields.number())};
    return ours && fields.allRead() ? std::optional(answer) : std::nullopt;
}

bool sameSecret(const LinkSecret& a, const LinkSecret& b) noexcept
{
    auto difference = std::byte{0};
    for (std::size_t i = 0; i < a.size(); ++i)
        difference |= a[i] ^ b[i];
    return difference == std::byte{0};
}

}  // namespace kelvane::linux_os
