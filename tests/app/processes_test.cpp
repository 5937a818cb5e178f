// Starts, hand-overs and crashes of real processes.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <set>
#include <thread>

#include "app/single_instance_app.h"
#include "platform/native_text.h"
#include "platform/platform.h"
#include "support/headless/names.h"
#include "support/temp_tree.h"

namespace kelvane {
namespace {

using ::testing::Contains;
using ::testing::SizeIs;

class Starts : public ::testing::Test {
protected:
    void start(const std::vector<std::string>& arguments)
    {
        std::vector<NativeString> words{nativeFromBytes("-G:" + bytesFromNative(log.native()))};
        for (const auto& argument : arguments)
            words.push_back(nativeFromBytes(argument));
        ASSERT_TRUE(platform->processes().start(KELVANE_HEADLESS, words).ok());
        ++started;
    }

    // The processes that have done this, an entry each time.
    std::vector<std::string> whoDid(const std::string& what)
    {
        std::vector<std::string> processes;
        std::ifstream file(log);
        for (std::string process, done; file >> process >> done;) {
            if (done == what)
                processes.push_back(process);
        }
        return processes;
    }

    // Waits until that has been done so many times; gives who did it.
    std::vector<std::string> await(const std::string& what, std::size_t times)
    {
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(60);
        auto processes = whoDid(what);
        while (processes.size() < times && std::chrono::steady_clock::now() < deadline) {
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
            processes = whoDid(what);
        }
        EXPECT_THAT(processes, SizeIs(times)) << what;
        return processes;
    }

    // Ends the instance and waits for every process but those that crashed.
    void endAll(std::size_t crashed = 0)
    {
        start({"end"});
        await("ended", started - crashed);
    }

    std::string portName()
    {
        return instancePortNameFor(platform->processes().isElevated(), testing::headlessPortBase(log));
    }

    testing::TempTree tree;
    std::filesystem::path log = tree.path("log");
    std::unique_ptr<Platform> platform = makePlatform();
    std::size_t started = 0;
};

TEST_F(Starts, TheFirstProcessOpensTheWindowsOfTheSecond)
{
    start({"one"});
    const auto first = await("one", 1);
    start({"two"});
    EXPECT_EQ(await("two", 1), first);
    EXPECT_THAT(await("ended", 1), ::testing::Not(Contains(first.front())));
    endAll();
}

TEST_F(Starts, AProcessOfItsOwnRunsBesideTheFirst)
{
    start({"one"});
    const auto first = await("one", 1);
    start({"/P", "end"});
    const auto other = await("end", 1);
    EXPECT_NE(other, first);
    EXPECT_EQ(await("ended", 1), other);
    endAll();
}

TEST_F(Starts, AtOneMomentEndAsOneInstance)
{
    for (int i = 0; i < 4; ++i)
        start({"one"});
    const auto openers = await("one", 4);
    EXPECT_THAT(std::set<std::string>(openers.begin(), openers.end()), SizeIs(1));
    endAll();
}

TEST_F(Starts, AfterACrashTheNextOneTakesOver)
{
    start({"one"});
    const auto first = await("one", 1);
    start({"crash"});
    EXPECT_EQ(await("crash", 1), first);
    await("ended", 1);  // its starter has been answered
    tree.write(testing::headlessCrashSignal(log).filename().string(), "");
    while (platform->instancePorts().isHeld(portName()))
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    start({"two"});
    EXPECT_NE(await("two", 1), first);
    endAll(1);
}

}  // namespace
}  // namespace kelvane
