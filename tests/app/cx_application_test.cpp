#include "app/cx_application.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <future>

#include "base/text_table.h"
#include "platform/native_text.h"
#include "support/fake_crash_capture.h"
#include "support/fake_instance_ports.h"
#include "support/fake_processes.h"
#include "support/fake_waiting.h"
#include "support/headless_host.h"
#include "support/settings_world.h"

namespace kelvane {
namespace {

using std::chrono::milliseconds;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

// One computer on which several applications run, each with its main thread.
struct Computer : testing::SettingsComputer {
    testing::FakeInstancePorts instances;
    testing::FakeProcesses processes;
    testing::FakeCrashCapture crashes;
    testing::FakeWaiting waiting;

    ApplicationPorts ports()
    {
        return {platform->files(), places, facts, clock, instances, processes, crashes, platform->textModules(),
                platform->links(), waiting};
    }
    SettingsPorts settingsPorts()
    {
        return {platform->files(),
                platform->output(),
                registry,
                places,
                facts,
                folding,
                clock,
                [](const std::filesystem::path&) { return std::make_unique<testing::MemorySettingsStore>(); }};
    }
    CommandText command(std::vector<std::string> arguments) const
    {
        arguments.insert(arguments.begin(), "kelvane");
        return commandTextFromWords(std::move(arguments), tree.path());
    }
    std::optional<std::uint32_t> keptNumber(std::u16string_view name)
    {
        const auto general = registry.open(std::u16string(settingsKeyPath) + u"\\general", SettingsAccess::reading);
        std::uint32_t value = 0;
        return general && general->readNumber(name, value) == SettingsCode::done ? std::optional(value) : std::nullopt;
    }
};

// A process, as far as the others can tell.
class Process {
public:
    explicit Process(Computer& computer) : computer_(computer) {}
    ~Process()
    {
        if (running_.joinable())
            end();
    }

    void start(std::vector<std::string> arguments)
    {
        std::promise<CXApplication*> made;
        running_ = std::thread([this, text = computer_.command(std::move(arguments)), &made] {
            CXApplication application(computer_.ports(), computer_.settingsPorts(), host);
            made.set_value(&application);
            status_ = application.run(text, 1);
        });
        application_ = made.get_future().get();
    }
    // Waits until it ended by itself.
    int wait()
    {
        running_.join();
        return status_;
    }
    int end()
    {
        application_->post(CloseAllWindows{});
        return wait();
    }
    CXApplication& application() { return *application_; }  // while it runs

    testing::HeadlessHost host;

private:
    Computer& computer_;
    CXApplication* application_ = nullptr;
    int status_ = -1;
    std::thread running_;
};

class Application : public ::testing::Test {
protected:
    Computer computer;
    Process first{computer};
    Process second{computer};
};

TEST_F(Application, ASecondStartOpensItsWindowInTheFirstProcess)
{
    const auto target = computer.tree.folder("music");
    first.start({});
    ASSERT_TRUE(first.host.awaitWindow(1));
    second.start({"-m", "music"});
    EXPECT_EQ(second.wait(), 0);
    const auto window = first.host.awaitWindow(2);
    ASSERT_TRUE(window);
    EXPECT_EQ(window->commandLine().targets, std::vector{target});
    EXPECT_TRUE(window->commandLine().has(command_flag::optionM));
    EXPECT_EQ(window->commandLine().showCommand, 1u);
    EXPECT_EQ(first.end(), 0);
    EXPECT_EQ(first.host.closeRequests, 2);
    EXPECT_EQ(first.host.firstSteps, 1);
    EXPECT_EQ(computer.keptNumber(u"nUsecount"), 1u);  // the second one read and wrote no settings
    EXPECT_FALSE(computer.instances.isHeld("kelvane_CommPort"));
}

TEST_F(Application, AStartWithItsOwnProcessRunsBesideTheFirst)
{
    first.start({});
    ASSERT_TRUE(first.host.awaitWindow(1));
    second.start({"x", "/P"});
    const auto window = second.host.awaitWindow(1);
    ASSERT_TRUE(window);
    EXPECT_TRUE(window->commandLine().has(command_flag::ownProcess));
    EXPECT_EQ(second.end(), 0);
    EXPECT_EQ(first.end(), 0);
}

TEST_F(Application, AnElevatedOneHearsNothingOfTheOthers)
{
    first.start({});
    ASSERT_TRUE(first.host.awaitWindow(1));
    computer.processes.elevated = true;
    second.start({});
    EXPECT_TRUE(second.host.awaitWindow(1));
    EXPECT_EQ(second.end(), 0);
    EXPECT_EQ(first.end(), 0);
}

TEST_F(Application, RefusesSystemsThatItCannotRunOn)
{
    computer.facts.answers.isNt = false;
    first.start({});
    EXPECT_EQ(first.wait(), 0);
    computer.facts.answers.isNt = true;
    computer.facts.answers.major = 5;
    computer.facts.answers.leastMajor = 6;
    first.start({});
    EXPECT_EQ(first.wait(), 100);
    computer.facts.answers.major = 6;
    first.host.fits = false;
    first.start({});
    EXPECT_EQ(first.wait(), 100);
    EXPECT_THAT(first.host.answers.errors,
                ElementsAre(text(TextId::noUnicodeSystem), text(TextId::systemTooOld), text(TextId::systemTooOld)));
    EXPECT_FALSE(computer.instances.isHeld("kelvane_CommPort"));
    EXPECT_EQ(computer.keptNumber(u"nUsecount"), std::nullopt);
}

TEST_F(Application, AsAHelperItServesItsPortUntilToldToEnd)
{
    computer.processes.elevated = true;
    computer.tree.write("kept", "x");
    first.start({"/S:task", "/P"});
    while (!computer.instances.isHeld("kelvane_CommPortG"))
        std::this_thread::yield();
    const auto send = [&](std::uint32_t tag, std::vector<std::byte> bytes) {
        return computer.instances.send("kelvane_CommPortG", {tag, std::move(bytes)}, milliseconds(5'000)).value();
    };
    const auto request = encodeLinkRequest(bytesFromNative(computer.tree.path("link").native()),
                                           bytesFromNative(computer.tree.path("kept").native()));
    const bool made = send(port_tag::symbolicLink, *request) == port_answer::taken;
    // Windows may want more rights for a link, and Wine only pretends to make one.
    if (std::filesystem::path::preferred_separator == '/') {
        EXPECT_TRUE(made && std::filesystem::is_symlink(computer.tree.path("link")));
    }
    EXPECT_EQ(send(port_tag::symbolicLink, std::vector<std::byte>(7)), port_answer::refused);
    EXPECT_EQ(send(3, std::vector<std::byte>(7, std::byte{1})), port_answer::refused);  // no command line
    EXPECT_EQ(send(port_tag::exit, {}), port_answer::taken);
    EXPECT_EQ(first.wait(), 0);
    EXPECT_THAT(first.host.requests, ElementsAre("task"));
    EXPECT_EQ(computer.keptNumber(u"nUsecount"), std::nullopt);  // its caller's settings stay as they are
}

TEST_F(Application, ARestartAfterACrashIsCountedAndNotAskedForAgain)
{
    first.start({});
    ASSERT_TRUE(first.host.awaitWindow(1));
    EXPECT_EQ(first.end(), 0);
    EXPECT_EQ(computer.processes.restart, (std::vector<NativeString>{nativeFromBytes("/X")}));
    EXPECT_EQ(computer.crashes.installed.size(), 1u);
    EXPECT_EQ(computer.keptNumber(u"nCrashes"), 0u);

    computer.processes.restart.reset();
    second.start({"/X"});
    ASSERT_TRUE(second.host.awaitWindow(1));
    EXPECT_EQ(second.end(), 0);
    EXPECT_FALSE(computer.processes.restart.has_value());
    EXPECT_EQ(computer.keptNumber(u"nCrashes"), 1u);
}

TEST_F(Application, ErasesTheSettingsWhenAskedTo)
{
    first.start({});
    ASSERT_TRUE(first.host.awaitWindow(1));
    EXPECT_EQ(first.end(), 0);
    ASSERT_EQ(computer.keptNumber(u"nUsecount"), 1u);

    computer.clock.milliseconds = std::uint64_t{11} * 31 * 24 * 3'600 * 1'000;  // 1601-12-08
    second.start({"/J"});
    ASSERT_TRUE(second.host.awaitWindow(1));
    std::string order;
    second.application().atShutdown().add([&] { order += "first"; });
    second.application().atShutdown().add([&] { order += "second "; });
    second.application().requestErase();
    EXPECT_EQ(second.end(), 0);
    EXPECT_EQ(order, "second first");
    EXPECT_EQ(computer.keptNumber(u"nUsecount"), std::nullopt);
    EXPECT_EQ(computer.processes.links.size(), 1u);
    EXPECT_THAT(second.host.prepared, ElementsAre(command_flag::optionJ));
}

TEST_F(Application, ACrashMailDumpsAWindowThatHangs)
{
    first.start({});
    const auto asking = first.host.awaitWindow(1);
    first.application().post(OpenWindow{});
    const auto hanging = first.host.awaitWindow(2);
    ASSERT_TRUE(asking && hanging);
    const auto mail = [&] {
        std::promise<void> done;
        asking->post([&] {
            first.application().sendCrashMail();
            done.set_value();
        });
        done.get_future().wait();
    };
    mail();
    EXPECT_THAT(computer.crashes.written, IsEmpty());

    std::promise<void> begun;
    std::promise<void> release;
    hanging->post([&] {
        begun.set_value();
        release.get_future().wait();
    });
    begun.get_future().wait();
    computer.waiting.letRunOut(milliseconds(1'000));
    mail();
    EXPECT_EQ(computer.crashes.written.size(), 1u);
    release.set_value();
    EXPECT_EQ(first.end(), 0);
}

TEST_F(Application, AToolkitMayHaveTheMainLoopAndMayHang)
{
    std::promise<void> woken;
    std::once_flag once;
    CXApplication application(computer.ports(), computer.settingsPorts(), first.host);
    application.setWake([&] { std::call_once(once, [&] { woken.set_value(); }); });
    ASSERT_EQ(application.start(computer.command({}), 0), std::nullopt);
    woken.get_future().wait();
    EXPECT_EQ(application.windowCount(), 1u);
    EXPECT_TRUE(application.dispatchWaiting());

    // While it hangs, another start shows its window itself, and only there.
    computer.waiting.letRunOut(milliseconds(4'500));
    second.start({});
    EXPECT_TRUE(second.host.awaitWindow(1));
    EXPECT_EQ(second.end(), 0);
    EXPECT_TRUE(application.dispatchWaiting());
    EXPECT_EQ(application.windowCount(), 1u);

    first.host.awaitWindow(1)->quit();
    while (application.dispatchWaiting())
        std::this_thread::yield();
    application.shutDown();
    EXPECT_FALSE(application.post(OpenWindow{}));
    EXPECT_EQ(computer.keptNumber(u"nUsecount"), 1u);
}

}  // namespace
}  // namespace kelvane
