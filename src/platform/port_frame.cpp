#include "platform/port_frame.h"

#include <algorithm>
#include <utility>

namespace kelvane {
namespace {

constexpr std::uint32_t messageMagic = 0x4D50'564B;  // "KVPM"
constexpr std::uint32_t answerMagic = 0x4150'564B;   // "KVPA"
constexpr std::uint32_t portVersion = 1;

constexpr std::size_t numberSize = 4;

// The places of the numbers in a message's header.
enum Field : std::size_t { magicField, versionField, tagField, lengthField };

void putNumber(std::byte* to, std::uint32_t number)
{
    for (std::size_t i = 0; i < numberSize; ++i)
        to[i] = static_cast<std::byte>(number >> (8 * i));
}

std::uint32_t number(const std::byte* from)
{
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < numberSize; ++i)
        value |= std::to_integer<std::uint32_t>(from[i]) << (8 * i);
    return value;
}

// What every message begins with.
constexpr auto opening = [] {
    std::array<std::byte, 2 * numberSize> bytes{};
    for (std::size_t i = 0; i < numberSize; ++i) {
        bytes[i] = static_cast<std::byte>(messageMagic >> (8 * i));
        bytes[numberSize + i] = static_cast<std::byte>(portVersion >> (8 * i));
    }
    return bytes;
}();

}  // namespace

std::optional<std::vector<std::byte>> frameMessage(const PortMessage& message)
{
    if (message.bytes.size() > largestPortMessage)
        return std::nullopt;
    std::vector<std::byte> frame(portHeaderSize);
    std::copy(opening.begin(), opening.end(), frame.begin());
    putNumber(&frame[tagField * numberSize], message.tag);
    putNumber(&frame[lengthField * numberSize], static_cast<std::uint32_t>(message.bytes.size()));
    frame.insert(frame.end(), message.bytes.begin(), message.bytes.end());
    return frame;
}

std::array<std::byte, portAnswerSize> frameAnswer(std::uint32_t value)
{
    std::array<std::byte, portAnswerSize> frame{};
    putNumber(&frame[0], answerMagic);
    putNumber(&frame[numberSize], portVersion);
    putNumber(&frame[2 * numberSize], value);
    return frame;
}

std::optional<std::uint32_t> parseAnswer(std::span<const std::byte, portAnswerSize> bytes)
{
    if (number(&bytes[0]) != answerMagic || number(&bytes[numberSize]) != portVersion)
        return std::nullopt;
    return number(&bytes[2 * numberSize]);
}

PortFrameParser::State PortFrameParser::take(std::span<const std::byte> bytes)
{
    if (state_ == State::refused || bytes.empty())
        return state_;
    takeHeader(bytes);
    state_ = stateOfHeader();
    if (state_ == State::refused || headerFilled_ < portHeaderSize)
        return state_;
    const std::size_t missing = headerNumber(lengthField) - bytes_.size();
    if (bytes.size() > missing)
        return state_ = State::refused;
    bytes_.insert(bytes_.end(), bytes.begin(), bytes.end());
    return state_ = bytes.size() == missing ? State::complete : State::incomplete;
}

PortMessage PortFrameParser::takeMessage()
{
    return {headerNumber(tagField), std::move(bytes_)};
}

void PortFrameParser::takeHeader(std::span<const std::byte>& bytes)
{
    const std::size_t count = std::min(bytes.size(), portHeaderSize - headerFilled_);
    std::copy_n(bytes.begin(), count, header_.begin() + static_cast<std::ptrdiff_t>(headerFilled_));
    headerFilled_ += count;
    bytes = bytes.subspan(count);
}

PortFrameParser::State PortFrameParser::stateOfHeader() const
{
    const std::size_t known = std::min(headerFilled_, opening.size());
    if (!std::equal(opening.begin(), opening.begin() + static_cast<std::ptrdiff_t>(known), header_.begin()))
        return State::refused;
    const bool tooLong = headerFilled_ == portHeaderSize && headerNumber(lengthField) > largestPortMessage;
    return tooLong ? State::refused : State::incomplete;
}

std::uint32_t PortFrameParser::headerNumber(std::size_t index) const
{
    return number(&header_[index * numberSize]);
}

}  // namespace kelvane
