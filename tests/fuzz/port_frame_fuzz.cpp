// What comes over an instance port: the first byte is the size of the pieces, the rest is what they make up.
#include "platform/port_frame.h"
#include "require.h"

namespace {

using kelvane::PortFrameParser;
using kelvane::require;
using State = PortFrameParser::State;

State takeInPieces(PortFrameParser& parser, std::span<const std::byte> bytes, std::size_t size)
{
    State state = State::incomplete;
    while (!bytes.empty()) {
        const auto piece = bytes.first(std::min(size, bytes.size()));
        state = parser.take(piece);
        bytes = bytes.subspan(piece.size());
    }
    return state;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size == 0)
        return 0;
    const auto bytes = std::as_bytes(std::span(data, size)).subspan(1);
    PortFrameParser parser, whole;
    const State state = takeInPieces(parser, bytes, data[0] + std::size_t{1});
    require(state == takeInPieces(whole, bytes, size));
    if (state == State::complete) {
        const auto again = kelvane::frameMessage(parser.takeMessage());
        require(again && std::equal(again->begin(), again->end(), bytes.begin(), bytes.end()));
    }
    if (bytes.size() >= kelvane::portAnswerSize) {
        const auto answer = bytes.first<kelvane::portAnswerSize>();
        const auto value = kelvane::parseAnswer(answer);
        require(!value || std::equal(answer.begin(), answer.end(), kelvane::frameAnswer(*value).begin()));
    }
    return 0;
}
