#include "platform/instance_port_contract.h"

#include <gtest/gtest.h>

#include <atomic>
#include <future>
#include <thread>

namespace kelvane {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;
using testing::PortWorld;
using testing::PortWorldMaker;

const std::string name = "kelvane_CommPort";
constexpr seconds patience{20};

std::vector<std::byte> bytes(std::size_t count)
{
    std::vector<std::byte> made(count);
    for (std::size_t i = 0; i < count; ++i)
        made[i] = static_cast<std::byte>(i * 7 + i / 256);
    return made;
}

// Something that a test lets happen.
class Gate {
public:
    void open() { opening_.set_value(); }
    [[nodiscard]] bool wait() { return opened_.wait_for(patience) == std::future_status::ready; }

private:
    std::promise<void> opening_;
    std::shared_future<void> opened_ = opening_.get_future().share();
};

class InstancePortContract : public ::testing::TestWithParam<PortWorldMaker> {
protected:
    InstancePorts& ports() { return world_->ports(); }

    std::unique_ptr<InstancePort> claim(InstancePorts::Handler handler, const std::string& which = name)
    {
        auto claimed = ports().claim(which, std::move(handler));
        EXPECT_TRUE(claimed.ok()) << claimed.error().detail;
        return claimed ? std::move(*claimed) : nullptr;
    }

    Result<std::uint32_t> send(std::uint32_t tag, std::size_t size = 0, milliseconds timeout = patience)
    {
        return ports().send(name, {tag, bytes(size)}, timeout);
    }

    std::unique_ptr<PortWorld> world_ = GetParam().make();
};

std::uint32_t tagOf(const PortMessage& message, const PortPeer&)
{
    return message.tag;
}

TEST_P(InstancePortContract, AMessageReachesTheHolderAndItsAnswerTheSender)
{
    PortMessage seen;
    PortPeer from;
    std::uint32_t answer = 0;
    const auto port = claim([&](PortMessage message, const PortPeer& peer) {
        seen = std::move(message);
        from = peer;
        return answer;
    });

    for (const std::uint32_t tag : {0u, 5u, 0xDEADBEEFu, 0xFFFFFFFFu}) {
        for (const std::size_t size : {std::size_t{0}, std::size_t{1}, std::size_t{70'000}, largestPortMessage}) {
            answer = ~tag;
            const auto answered = send(tag, size);
            ASSERT_TRUE(answered.ok()) << size << ": " << answered.error().detail;
            EXPECT_EQ(*answered, ~tag);
            EXPECT_EQ(seen.tag, tag);
            EXPECT_EQ(seen.bytes, bytes(size));
            EXPECT_EQ(from.process, world_->ownProcess());
        }
    }
}

TEST_P(InstancePortContract, ANameIsHeldOnceUntilItIsGivenBack)
{
    EXPECT_FALSE(ports().isHeld(name));
    EXPECT_EQ(send(1).error().kind, ErrorKind::notFound);
    for (int round = 0; round < 3; ++round) {
        auto port = claim(tagOf);
        const auto elevated = claim([](PortMessage, const PortPeer&) { return 77u; }, name + "G");
        EXPECT_TRUE(ports().isHeld(name));
        EXPECT_EQ(ports().claim(name, tagOf).error().kind, ErrorKind::changed);
        EXPECT_EQ(*send(5), 5u);

        port.reset();

        EXPECT_FALSE(ports().isHeld(name));
        EXPECT_EQ(send(1).error().kind, ErrorKind::notFound);
        EXPECT_EQ(*ports().send(name + "G", {}, patience), 77u);
    }
}

TEST_P(InstancePortContract, AnotherProcessFindsTheNameTakenAndIsHeard)
{
    std::atomic<std::uint64_t> from = 0;
    auto port = claim([&](const PortMessage& message, const PortPeer& peer) {
        from = peer.process;
        return message.tag + static_cast<std::uint32_t>(message.bytes.size());
    });
    const auto claimed = world_->claimElsewhere(name);
    if (!claimed)
        GTEST_SKIP() << "a world of one process";

    EXPECT_EQ(claimed->error().kind, ErrorKind::changed);
    const auto answer = world_->sendElsewhere(name, {40, bytes(2)});
    ASSERT_TRUE(answer->ok());
    EXPECT_EQ(**answer, 42u);
    EXPECT_NE(from, 0u);
    EXPECT_NE(from, world_->ownProcess());

    port.reset();
    EXPECT_EQ(world_->sendElsewhere(name, {})->error().kind, ErrorKind::notFound);
    EXPECT_TRUE(world_->claimElsewhere(name)->ok());
    EXPECT_TRUE(claim(tagOf)) << "what the ended process held is free again";
}

TEST_P(InstancePortContract, AHolderThatHangsCostsTheSenderItsTimeoutOnly)
{
    Gate release;
    const auto port = claim([&](const PortMessage& message, const PortPeer&) {
        return message.tag == 1 ? static_cast<std::uint32_t>(release.wait()) : 9;
    });

    const auto from = std::chrono::steady_clock::now();
    EXPECT_FALSE(send(1, 0, milliseconds(50)).ok());
    EXPECT_FALSE(send(2, largestPortMessage, milliseconds(50)).ok()) << "queued behind the first one";
    EXPECT_LT(std::chrono::steady_clock::now() - from, patience / 2);
    EXPECT_TRUE(ports().isHeld(name));

    release.open();
    EXPECT_EQ(*send(3), 9u);
}

TEST_P(InstancePortContract, ManySendersAreHeardOneAtATime)
{
    std::atomic<int> inside = 0, most = 0;
    const auto port = claim([&](const PortMessage& message, const PortPeer&) {
        most = std::max(most.load(), ++inside);
        std::this_thread::sleep_for(milliseconds(1));
        --inside;
        return message.tag;
    });

    std::vector<std::thread> senders;
    std::atomic<int> right = 0;
    for (std::uint32_t i = 0; i < 40; ++i)
        senders.emplace_back([&, i] {
            const auto answer = send(i, i * 1000);
            right += answer.ok() && *answer == i;
        });
    for (std::thread& sender : senders)
        sender.join();

    EXPECT_EQ(right, 40);
    EXPECT_EQ(most, 1);
}

TEST_P(InstancePortContract, GivingTheNameBackWaitsForARunningHandler)
{
    Gate running;
    std::atomic<bool> ended = false;
    auto port = claim([&](PortMessage, const PortPeer&) {
        running.open();
        std::this_thread::sleep_for(milliseconds(100));
        ended = true;
        return 3u;
    });
    std::thread sender([&] { EXPECT_EQ(*send(1), 3u); });
    ASSERT_TRUE(running.wait());

    port.reset();

    EXPECT_TRUE(ended);
    sender.join();
}

TEST_P(InstancePortContract, OfTwoClaimsAtTheSameMomentOneWinsAndTheOtherIsHeard)
{
    for (int round = 0; round < 30; ++round) {
        std::atomic<int> winners = 0, heard = 0, ready = 0;
        const auto start = [&] {
            for (++ready; ready < 2;)
                std::this_thread::yield();
            const auto port = ports().claim(name, tagOf);
            winners += port.ok();
            if (!port)
                heard += send(8).ok();
            for (++ready; ready < 4;)
                std::this_thread::yield();
        };
        std::thread other(start);
        start();
        other.join();
        ASSERT_EQ(winners, 1);
        ASSERT_EQ(heard, 1);
    }
}

INSTANTIATE_TEST_SUITE_P(Worlds, InstancePortContract, ::testing::Values(testing::systemPortWorld()),
                         [](const auto& world) { return world.param.name; });

}  // namespace
}  // namespace kelvane
