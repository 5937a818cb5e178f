#include "app/cx_instance.h"

#include <gtest/gtest.h>

#include <future>

#include "support/fake_crash_capture.h"
#include "support/fake_waiting.h"
#include "support/headless_host.h"

namespace kelvane {
namespace {

using std::chrono::milliseconds;

class Instance : public ::testing::Test {
protected:
    std::shared_ptr<CXInstance> open(bool first = true)
    {
        InstanceContext context{host,
                                messages,
                                waiting,
                                background,
                                crashes,
                                openLoops,
                                [this](CXInstance&) { ++prompts; },
                                [this] { return settingsFailure; },
                                true};
        auto instance = std::make_shared<CXInstance>(++number, CommandLine{}, first, context);
        ++openLoops;
        EXPECT_TRUE(instance->start());
        return instance;
    }

    ThreadCode nextCode()
    {
        const auto message = messages.take();
        return message ? codeOf(*message) : ThreadCode{};
    }

    // The thread has said that it ends; the limit of the wait is no matter of chance.
    void expectEnd(CXInstance& instance)
    {
        EXPECT_EQ(nextCode(), ThreadCode::windowEnded);
        instance.awaitEnd(milliseconds(10'000));
        EXPECT_TRUE(waiting.waitedFor(milliseconds(10'000)));
    }

    testing::HeadlessHost host;
    testing::FakeWaiting waiting;
    testing::FakeCrashCapture crashes;
    ThreadMessages messages;
    BackgroundOperations background{waiting};
    std::atomic<int> openLoops{0};
    std::atomic<int> prompts{0};
    std::u16string settingsFailure;
    InstanceNumber number = 0;
};

TEST_F(Instance, TellsOfItsWindowAndOfItsEnd)
{
    const auto first = open();
    EXPECT_EQ(nextCode(), ThreadCode::firstWindowUp);
    EXPECT_EQ(prompts, 1);
    const auto second = open(false);
    host.awaitWindow(2);
    second->handle().requestClose();
    expectEnd(*second);
    first->handle().requestClose();
    expectEnd(*first);
    EXPECT_EQ(prompts, 1);
    EXPECT_EQ(openLoops, 0);
    EXPECT_EQ(crashes.guarded, 2);
    first->handle().requestClose();  // too late, and harmless
    EXPECT_TRUE(first->handle().answersWithin(milliseconds(1'000)));
}

TEST_F(Instance, StaysWhenThePersonObjects)
{
    host.personObjects = true;
    const auto instance = open(false);
    instance->handle().requestClose();
    EXPECT_TRUE(instance->handle().answersWithin(milliseconds(1'000)));  // after the request
    EXPECT_EQ(host.closeRequests, 1);
    EXPECT_FALSE(instance->isQuitting());
    instance->quit();
    expectEnd(*instance);
}

TEST_F(Instance, WithoutAWindowItEndsAtOnce)
{
    host.makesWindows = false;
    const auto instance = open();
    expectEnd(*instance);
    EXPECT_EQ(prompts, 0);
}

TEST_F(Instance, HangsOnlyWhileItsWorkServesNobody)
{
    const auto instance = open(false);
    std::promise<void> serve;
    std::promise<void> finish;
    std::promise<void> begun;
    std::promise<void> served;
    instance->post([&] {
        begun.set_value();
        serve.get_future().wait();
        instance->servePending();
        served.set_value();
        finish.get_future().wait();
    });
    begun.get_future().wait();
    waiting.letRunOut(milliseconds(1'000));
    EXPECT_FALSE(instance->handle().answersWithin(milliseconds(1'000)));
    instance->handle().requestClose();
    serve.set_value();
    served.get_future().wait();
    EXPECT_TRUE(instance->isQuitting());  // long work sees this and stops
    finish.set_value();
    expectEnd(*instance);
}

TEST_F(Instance, TheLastOneAsksAboutBackgroundOperations)
{
    bool shown = false;
    auto ticket = background.begin([&] { shown = true; });
    const auto early = open(false);
    const auto late = open(false);
    early->quit();
    expectEnd(*early);
    EXPECT_TRUE(host.answers.asked.empty());

    waiting.letRunOut(milliseconds(5'000));  // No: a moment only
    late->quit();
    expectEnd(*late);
    EXPECT_TRUE(shown);
    EXPECT_EQ(host.answers.asked, std::vector<std::u16string>{
                                      u"Some background operations haven't finished yet.\nShall we wait for them?"});

    host.answers.yes = true;
    const auto patient = open(false);
    patient->quit();
    EXPECT_FALSE(messages.takeWaiting().has_value());
    ticket.reset();
    expectEnd(*patient);
}

TEST_F(Instance, ItsThreadWaitsForThoseWhoHoldIt)
{
    const auto held = open(false);
    std::promise<ThreadReference::Hold> promise;
    held->post([&] { promise.set_value(held->holdThread()); });
    auto hold = promise.get_future().get();
    held->quit();
    std::promise<void> afterwards;
    held->post([&] { afterwards.set_value(); });  // messages are served meanwhile
    afterwards.get_future().wait();
    EXPECT_FALSE(messages.takeWaiting().has_value());
    hold.reset();
    expectEnd(*held);

    waiting.letRunOut(milliseconds(5'000));
    const auto given = open(false);
    given->post([&] { hold = given->holdThread(); });
    given->post([&] { given->quit(); });
    expectEnd(*given);
}

TEST_F(Instance, TellsWhenSettingsCannotBeKept)
{
    settingsFailure = u"read-only";
    const auto instance = open(false);
    instance->quit();
    expectEnd(*instance);
    EXPECT_EQ(host.answers.errors, std::vector<std::u16string>{u"read-only"});
}

TEST(ThreadMessages, AreNeverAcceptedAndThenLost)
{
    ThreadMessages messages;
    int woken = 0;
    messages.setWake([&] { ++woken; });
    EXPECT_TRUE(messages.post(CommandHandedOver{}));
    EXPECT_FALSE(messages.closeIfEmpty());
    EXPECT_EQ(codeOf(*messages.takeWaiting()), ThreadCode::commandHandedOver);
    EXPECT_TRUE(messages.closeIfEmpty());
    EXPECT_FALSE(messages.post(CommandHandedOver{}));
    EXPECT_FALSE(messages.take().has_value());
    EXPECT_EQ(woken, 1);
}

}  // namespace
}  // namespace kelvane
