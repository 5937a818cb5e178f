#include "app/single_instance_app.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <thread>

#include "support/fake_instance_ports.h"
#include "support/fake_waiting.h"

namespace kelvane {
namespace {

using testing::FakeInstancePorts;
using testing::FakeWaiting;
using Entry = CSingleInstanceApp::Entry;

const CommandText someText = commandTextFromWords({"kelvane", "music"}, "/here", CommandSyntax::posix);

class SingleInstance : public ::testing::Test {
protected:
    Entry enter(CSingleInstanceApp& app, bool alone = false, std::uint32_t answer = port_answer::taken)
    {
        return app.enter("port", someText, 3, alone, [this, answer](PortMessage message, const PortPeer&) {
            heard.push_back(std::move(message));
            return answer;
        });
    }

    FakeInstancePorts ports;
    FakeWaiting waiting;
    CSingleInstanceApp first{ports, waiting};
    CSingleInstanceApp second{ports, waiting};
    std::vector<PortMessage> heard;
};

TEST_F(SingleInstance, ASecondStartHandsOver)
{
    EXPECT_EQ(enter(first), Entry::first);
    EXPECT_EQ(enter(second), Entry::handedOver);
    ASSERT_EQ(heard.size(), 1u);
    EXPECT_EQ(heard[0].tag, 3u);
    EXPECT_EQ(*decodeHandOver(heard[0].bytes, CommandSyntax::posix), someText);
    EXPECT_EQ(ports.sent.back(), std::pair(3u, std::int64_t{5'000}));

    first.leave();
    EXPECT_EQ(enter(second), Entry::first);
}

TEST_F(SingleInstance, OneThatWantsToBeAloneHandsNothingOver)
{
    EXPECT_EQ(enter(first, true), Entry::first);
    EXPECT_EQ(enter(second, true), Entry::withoutPort);
    EXPECT_TRUE(heard.empty());
}

TEST_F(SingleInstance, GoesOnWhenTheOtherOneDoesNotAnswer)
{
    EXPECT_EQ(enter(first), Entry::first);
    ports.sendFailure = ErrorKind::io;
    EXPECT_EQ(enter(second), Entry::withoutPort);
    first.leave();
    EXPECT_EQ(enter(second), Entry::first);
}

TEST_F(SingleInstance, TakesOverFromOneThatIsLeaving)
{
    EXPECT_EQ(enter(first, false, port_answer::refused), Entry::first);
    waiting.whilePausing = [this] { first.leave(); };
    EXPECT_EQ(enter(second), Entry::first);
    EXPECT_THAT(waiting.pauses(), ::testing::ElementsAre(100));
}

TEST_F(SingleInstance, ANameThatSomebodyElseHoldsKeepsNobodyFromRunning)
{
    for (const auto kind : {ErrorKind::accessDenied, ErrorKind::changed}) {
        ports.holdFor("port", kind);
        EXPECT_EQ(enter(first), Entry::withoutPort);
    }
}

TEST_F(SingleInstance, StartsAtOneMomentEndAsOneInstance)
{
    constexpr std::size_t many = 8;
    std::vector<Entry> entries(many);
    std::vector<std::unique_ptr<CSingleInstanceApp>> apps;
    for (std::size_t i = 0; i < many; ++i)
        apps.push_back(std::make_unique<CSingleInstanceApp>(ports, waiting));
    {
        std::vector<std::jthread> threads;
        for (std::size_t i = 0; i < many; ++i)
            threads.emplace_back([&, i] { entries[i] = enter(*apps[i]); });
    }
    EXPECT_EQ(std::count(entries.begin(), entries.end(), Entry::first), 1);
    EXPECT_EQ(std::count(entries.begin(), entries.end(), Entry::handedOver), std::ptrdiff_t{many - 1});
    EXPECT_EQ(heard.size(), many - 1);
}

TEST(InstancePortName, TellsElevatedInstancesApart)
{
    EXPECT_EQ(instancePortNameFor(false), "kelvane_CommPort");
    EXPECT_EQ(instancePortNameFor(true), "kelvane_CommPortG");
}

}  // namespace
}  // namespace kelvane
