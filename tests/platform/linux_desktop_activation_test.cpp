// Requests of the desktop over a message bus of the test's own.
#include <poll.h>
#include <signal.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <mutex>

#include "platform/linux/child_process.h"
#include "platform/linux/desktop/adapters.h"
#include "support/linux_environment.h"
#include "support/temp_tree.h"

// GLib's locks are made of system calls that the thread sanitizer cannot follow, so it takes what they guard for races.
extern "C" const char* __tsan_default_suppressions();
extern "C" const char* __tsan_default_suppressions()
{
    return "race:libglib-2.0.so\nrace:libgobject-2.0.so\nrace:libgio-2.0.so\n";
}

namespace kelvane {
namespace {

namespace fs = std::filesystem;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using Words = std::vector<std::string>;

fs::path installed(const char* program)
{
    return linux_os::findProgram(program, "/usr/local/bin:/usr/bin:/bin");
}

// A bus that lives as long as this object.
class PrivateBus {
public:
    explicit PrivateBus(const fs::path& folder) : socket_(folder / "bus"), process_(::fork())
    {
        if (process_ == 0) {
            ::execl(installed("dbus-daemon").c_str(), "dbus-daemon", "--session", "--nofork", "--nopidfile",
                    ("--address=" + address()).c_str(), static_cast<char*>(nullptr));
            ::_exit(1);
        }
        for (int i = 0; i < 2000 && !listens(); ++i)
            ::poll(nullptr, 0, 5);
    }
    ~PrivateBus()
    {
        ::kill(process_, SIGKILL);
        ::waitpid(process_, nullptr, 0);
    }
    PrivateBus(const PrivateBus&) = delete;
    PrivateBus& operator=(const PrivateBus&) = delete;

    [[nodiscard]] std::string address() const { return "unix:path=" + socket_.native(); }

private:
    // The socket is there a moment before anybody listens.
    [[nodiscard]] bool listens() const
    {
        sockaddr_un place{};
        place.sun_family = AF_UNIX;
        socket_.native().copy(place.sun_path, sizeof place.sun_path - 1);
        const int caller = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
        const bool heard = ::connect(caller, reinterpret_cast<const sockaddr*>(&place), sizeof place) == 0;
        ::close(caller);
        return heard;
    }

    fs::path socket_;
    pid_t process_;
};

class DesktopActivationTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        if (installed("dbus-daemon").empty() || installed("gdbus").empty())
            GTEST_SKIP() << "dbus-daemon or gdbus is not installed";
        bus_ = std::make_unique<PrivateBus>(tree_.path());
        activation_ = makeDBusActivation(bus_->address());
    }

    std::unique_ptr<DesktopService> serve()
    {
        auto service = activation_->serve(actions_, [this](DesktopRequest request) {
            const std::lock_guard lock(mutex_);
            requests_.push_back(std::move(request));
        });
        EXPECT_TRUE(service.ok()) << service.error().detail;
        return service ? std::move(*service) : nullptr;
    }

    // What the desktop is answered.
    [[nodiscard]] std::string call(const std::string& methodAndArguments) const
    {
        const std::string command = installed("gdbus").native() + " call --timeout 20 --address '" + bus_->address() +
                                    "' --dest example.kelvane.Kelvane --object-path /example/kelvane/Kelvane" +
                                    " --method org.freedesktop.Application." + methodAndArguments + " 2>&1";
        std::string answer;
        FILE* output = ::popen(command.c_str(), "r");
        for (int c; (c = std::fgetc(output)) != EOF;)
            answer += static_cast<char>(c);
        ::pclose(output);
        return answer;
    }

    std::vector<DesktopRequest> takeRequests()
    {
        const std::lock_guard lock(mutex_);
        return std::exchange(requests_, {});
    }

    testing::TempTree tree_;
    std::unique_ptr<PrivateBus> bus_;
    std::unique_ptr<DesktopActivation> activation_;
    std::vector<DesktopAction> actions_{{"new-window", {}}, {"beside", {"-p"}}};
    std::mutex mutex_;
    std::vector<DesktopRequest> requests_;
};

TEST_F(DesktopActivationTest, EveryCallBecomesTheCommandLineThatItStandsFor)
{
    const auto service = serve();
    struct Case {
        std::string call;
        std::vector<Words> words;
        std::string token;
    };
    const Case cases[] = {
        {"Activate {}", {{}}, ""},
        {"Activate \"{'desktop-startup-id': <'x11_1'>}\"", {{}}, "x11_1"},
        {"Activate \"{'desktop-startup-id': <'x11'>, 'activation-token': <'wl'>}\"", {{}}, "wl"},
        {"Activate \"{'activation-token': <5>}\"", {{}}, ""},
        {"Open \"['file:///tmp/a%20b', 'file:///caf%E9']\" \"{'activation-token': <'t'>}\"",
         {{"/tmp/a b"}, {"/caf\xE9"}},
         "t"},
        {"Open [] {}", {}, ""},
        {"ActivateAction new-window [] {}", {{}}, ""},
        {"ActivateAction beside [] {}", {{"-p"}}, ""},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(call(c.call), "()\n") << c.call;
        const auto requests = takeRequests();
        ASSERT_EQ(requests.size(), c.words.size()) << c.call;
        for (std::size_t i = 0; i < requests.size(); ++i) {
            EXPECT_EQ(requests[i].words, c.words[i]) << c.call;
            EXPECT_EQ(requests[i].activationToken, c.token) << c.call;
        }
    }
}

TEST_F(DesktopActivationTest, WhatMakesNoSenseIsRefusedAsAWhole)
{
    const auto service = serve();
    std::string many = "'file:///a'";
    for (int i = 0; i < 100; ++i)
        many += ", 'file:///a'";
    for (const std::string& bad :
         {std::string("ActivateAction none [] {}"), std::string("ActivateAction beside \"[<1>]\" {}"),
          std::string("Open \"['file:///a', 'https://example.com/a']\" {}"),
          std::string("Open \"['file:///a%00b']\" {}"), "Open \"[" + many + "]\" {}", std::string("Quit")}) {
        EXPECT_THAT(call(bad), HasSubstr("Error")) << bad;
        EXPECT_THAT(takeRequests(), IsEmpty()) << bad;
    }
    EXPECT_EQ(call("Activate {}"), "()\n");
}

TEST_F(DesktopActivationTest, OneProcessServesAndGivesItsPlaceBack)
{
    auto service = serve();
    EXPECT_EQ(makeDBusActivation(bus_->address())->serve({}, [](DesktopRequest) {}).error().kind, ErrorKind::changed);
    EXPECT_EQ(call("Activate {}"), "()\n");

    service.reset();
    EXPECT_THAT(call("Activate {}"), HasSubstr("Error"));

    service = serve();
    EXPECT_EQ(call("Activate {}"), "()\n");
    EXPECT_EQ(takeRequests().size(), 2u);
}

TEST_F(DesktopActivationTest, TheProgramOutlivesItsBusAndDoesWithoutOne)
{
    auto service = serve();
    bus_.reset();
    ::poll(nullptr, 0, 100);
    service.reset();

    for (const std::string& address : {std::string(), std::string("unix:path=/nowhere/bus"), std::string("nonsense")})
        EXPECT_EQ(makeDBusActivation(address)->serve({}, [](DesktopRequest) {}).error().kind, ErrorKind::notSupported);
}

}  // namespace
}  // namespace kelvane
