// What the program and its elevated link helper say to one another, one datagram a message.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace kelvane::linux_os {

// Made anew for every helper, so that nobody who comes by the socket later can speak in the caller's name.
using LinkSecret = std::array<std::byte, 32>;

enum class LinkRequestKind : std::uint32_t {
    greet = 1,  // the first message: tells the secret
    make = 2,
    leave = 3,
};

struct LinkRequest {
    LinkRequestKind kind = LinkRequestKind::greet;
    LinkSecret secret{};
    std::string link;    // relative to the folder that the helper was started for
    std::string target;  // absolute; kept in the link as it is
};

enum class LinkOutcome : std::uint32_t {
    done = 1,
    badRequest = 2,  // not one of ours, or not allowed
    notSeen = 3,     // the caller could not see the place or the target by themselves
    failed = 4,      // the system refused; its error number goes along
};

struct LinkAnswer {
    LinkOutcome outcome = LinkOutcome::badRequest;
    std::int32_t systemCode = 0;  // errno
};

inline constexpr std::size_t largestLinkMessage = 16'384;

[[nodiscard]] std::vector<std::byte> encode(const LinkRequest& request);
[[nodiscard]] std::vector<std::byte> encode(const LinkAnswer& answer);

// Nothing for what is not exactly one message.
[[nodiscard]] std::optional<LinkRequest> decodeRequest(std::span<const std::byte> bytes);
[[nodiscard]] std::optional<LinkAnswer> decodeAnswer(std::span<const std::byte> bytes);

// In a time that does not depend on where they differ.
[[nodiscard]] bool sameSecret(const LinkSecret& a, const LinkSecret& b) noexcept;

}  // namespace kelvane::linux_os
