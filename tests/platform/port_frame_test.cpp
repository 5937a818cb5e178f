#include "platform/port_frame.h"

#include <gtest/gtest.h>

namespace kelvane {
namespace {

using State = PortFrameParser::State;

std::vector<std::byte> bytesOf(std::string_view text)
{
    std::vector<std::byte> bytes;
    for (const char c : text)
        bytes.push_back(static_cast<std::byte>(c));
    return bytes;
}

const PortMessage message{0xDEADBEEF, bytesOf("a|b")};
const auto frame = *frameMessage(message);

TEST(PortFrame, ArrivesInPiecesOfAnySize)
{
    for (std::size_t size = 1; size <= frame.size(); ++size) {
        PortFrameParser parser;
        State state = State::incomplete;
        for (std::size_t at = 0; at < frame.size(); at += size) {
            EXPECT_EQ(state, State::incomplete);
            state = parser.take(std::span(frame).subspan(at, std::min(size, frame.size() - at)));
        }
        ASSERT_EQ(state, State::complete);
        const PortMessage got = parser.takeMessage();
        EXPECT_EQ(got.tag, message.tag);
        EXPECT_EQ(got.bytes, message.bytes);
    }
}

// Each with the place of the byte that shows it.
TEST(PortFrame, WhatCannotBecomeAMessageIsRefusedWithItsFirstWrongByte)
{
    const auto changed = [](std::size_t at, int value) {
        auto bytes = frame;
        bytes[at] = static_cast<std::byte>(value);
        return bytes;
    };
    auto onePastTheLimit = frame;
    onePastTheLimit[12] = std::byte{0x01};
    onePastTheLimit[14] = std::byte{0x10};
    auto oneTooMany = frame;
    oneTooMany.push_back(std::byte{0});
    const std::pair<std::vector<std::byte>, std::size_t> cases[] = {
        {changed(0, 'x'), 0},    {changed(3, 0), 3},    {changed(4, 2), 4},         {changed(7, 1), 7},
        {changed(15, 0xFF), 15}, {onePastTheLimit, 15}, {oneTooMany, frame.size()},
    };
    for (const auto& [bytes, wrong] : cases) {
        PortFrameParser parser;
        for (std::size_t i = 0; i < bytes.size(); ++i)
            EXPECT_EQ(parser.take(std::span(bytes).subspan(i, 1)) == State::refused, i >= wrong) << wrong << ' ' << i;
        EXPECT_EQ(PortFrameParser().take(bytes), State::refused);
        EXPECT_EQ(parser.take(frame), State::refused) << "for good";
    }
}

TEST(PortFrame, TheLargestMessageFitsAndNoLargerOne)
{
    PortMessage large{1, std::vector<std::byte>(largestPortMessage)};
    EXPECT_EQ(PortFrameParser().take(*frameMessage(large)), State::complete);
    large.bytes.push_back({});
    EXPECT_FALSE(frameMessage(large));
}

}  // namespace
}  // namespace kelvane
