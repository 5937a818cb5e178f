// How messages between instances look on a stream of bytes, where the system has no messages of its own.
//
// A message is a header of four 32-bit numbers, lowest byte first (magic, version, tag, length), and as many bytes as
// the length says. An answer is three such numbers: magic, version, value. A connection carries one message and one
// answer.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "platform/instance_port.h"

namespace kelvane {

inline constexpr std::size_t portHeaderSize = 16;
inline constexpr std::size_t portAnswerSize = 12;

// Nothing when the message is longer than a port takes.
[[nodiscard]] std::optional<std::vector<std::byte>> frameMessage(const PortMessage& message);

[[nodiscard]] std::array<std::byte, portAnswerSize> frameAnswer(std::uint32_t value);

// Nothing when the bytes are not an answer of this program's.
[[nodiscard]] std::optional<std::uint32_t> parseAnswer(std::span<const std::byte, portAnswerSize> bytes);

// Puts a message together from pieces of any size. What cannot become a message is refused with the first byte that
// shows it, and memory is only taken for bytes that have come. For one thread.
class PortFrameParser {
public:
    enum class State { incomplete, complete, refused };

    // After `complete` every further byte is one too many; `refused` is final.
    State take(std::span<const std::byte> bytes);

    // Once, when the state is `complete`.
    [[nodiscard]] PortMessage takeMessage();

private:
    void takeHeader(std::span<const std::byte>& bytes);
    [[nodiscard]] State stateOfHeader() const;
    [[nodiscard]] std::uint32_t headerNumber(std::size_t index) const;

    std::array<std::byte, portHeaderSize> header_{};
    std::size_t headerFilled_ = 0;
    std::vector<std::byte> bytes_;
    State state_ = State::incomplete;
};

}  // namespace kelvane
