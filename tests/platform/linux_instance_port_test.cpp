// What only the sockets of Linux promise: whose they are, what is left behind, and what strangers send.
#include <dirent.h>
#include <fcntl.h>
#include <signal.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include <fstream>
#include <thread>

#include "platform/instance_port_contract.h"
#include "platform/linux/adapters.h"
#include "platform/port_frame.h"
#include "support/temp_tree.h"

namespace kelvane {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;
using std::chrono::steady_clock;
namespace fs = std::filesystem;

const std::string portName = "kelvane_CommPort";
constexpr uid_t somebodyElse = 65534;

std::unique_ptr<InstancePorts> portsIn(const testing::TempTree& tree)
{
    return makeSocketPorts(tree.path("run"), tree.path("tmp"));
}

std::uint32_t tagIn(const PortMessage& message, const PortPeer&)
{
    return message.tag;
}

// Runs in a process of its own, which ends with the number that the work gives.
class Child {
public:
    explicit Child(const std::function<int()>& work) : process_(::fork())
    {
        if (process_ == 0)
            ::_exit(work());
    }
    ~Child()
    {
        if (process_ > 0)
            end(SIGKILL);
    }
    Child(const Child&) = delete;
    Child& operator=(const Child&) = delete;

    int exitCode() { return end(0); }
    void kill() { end(SIGKILL); }

private:
    int end(int signal)
    {
        if (signal != 0)
            ::kill(process_, signal);
        int status = 0;
        ::waitpid(std::exchange(process_, -1), &status, 0);
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

    pid_t process_;
};

// Single characters between processes.
class Signal {
public:
    Signal() { EXPECT_EQ(::pipe(ends_), 0); }
    ~Signal()
    {
        ::close(ends_[0]);
        ::close(ends_[1]);
    }
    void give(char what = 'x') { EXPECT_EQ(::write(ends_[1], &what, 1), 1); }
    char await()
    {
        char what = 0;
        EXPECT_EQ(::read(ends_[0], &what, 1), 1);
        return what;
    }

private:
    int ends_[2] = {-1, -1};
};

class SocketWorld final : public testing::PortWorld {
public:
    SocketWorld() { tree_.folder("tmp"); }
    InstancePorts& ports() override { return *ports_; }
    std::uint64_t ownProcess() const override { return static_cast<std::uint64_t>(::getpid()); }

    std::optional<testing::Elsewhere> claimElsewhere(const std::string& which) override
    {
        return elsewhere([&]() -> testing::Elsewhere {
            const auto port = ports_->claim(which, tagIn);
            return port ? testing::Elsewhere(0) : port.error();
        });
    }
    std::optional<testing::Elsewhere> sendElsewhere(const std::string& which, const PortMessage& message) override
    {
        return elsewhere([&] { return ports_->send(which, message, seconds(20)); });
    }

private:
    // The child's exit code carries the number, or 100 and the kind of the error.
    static testing::Elsewhere elsewhere(const std::function<testing::Elsewhere()>& work)
    {
        const int code = Child([&] {
                             const auto answer = work();
                             return answer ? static_cast<int>(*answer) : 100 + static_cast<int>(answer.error().kind);
                         }).exitCode();
        if (code < 100)
            return static_cast<std::uint32_t>(code);
        return Error{static_cast<ErrorKind>(code - 100), 0, ""};
    }

    testing::TempTree tree_;
    std::unique_ptr<InstancePorts> ports_ = portsIn(tree_);
};

class LinuxInstancePortTest : public ::testing::Test {
protected:
    LinuxInstancePortTest()
    {
        tree_.folder("tmp");
        privateFolder("run");
    }

    fs::path privateFolder(const std::string& relative)
    {
        const fs::path folder = tree_.folder(relative);
        ::chmod(folder.c_str(), 0700);
        return folder;
    }

    std::unique_ptr<InstancePort> claim() { return ports_->claim(portName, tagIn).value(); }
    Result<std::uint32_t> send(std::uint32_t tag = 4) { return ports_->send(portName, {tag, {}}, seconds(20)); }
    ErrorKind claimFault() { return ports_->claim(portName, tagIn).error().kind; }

    [[nodiscard]] int rawConnection() const
    {
        const int socket = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        tree_.path("run/" + name).native().copy(address.sun_path, sizeof address.sun_path - 1);
        EXPECT_EQ(::connect(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
        return socket;
    }

    testing::TempTree tree_;
    std::unique_ptr<InstancePorts> ports_ = portsIn(tree_);
};

// What the other side says until it hangs up.
std::size_t bytesUntilTheEnd(int socket)
{
    std::size_t count = 0;
    char buffer[4096];
    for (ssize_t got = 0; (got = ::recv(socket, buffer, sizeof buffer, 0)) > 0;)
        count += static_cast<std::size_t>(got);
    ::close(socket);
    return count;
}

bool sendRaw(int socket, std::string_view bytes)
{
    return ::send(socket, bytes.data(), bytes.size(), MSG_NOSIGNAL) == static_cast<ssize_t>(bytes.size());
}

std::string_view textOf(const std::vector<std::byte>& bytes)
{
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

TEST_F(LinuxInstancePortTest, AKilledHolderIsSucceeded)
{
    for (int round = 0; round < 3; ++round) {
        Signal holds;
        Child holder([&] {
            const auto port = claim();
            holds.give();
            ::pause();
            return 0;
        });
        holds.await();
        EXPECT_EQ(*send(), 4u);

        holder.kill();

        EXPECT_TRUE(fs::exists(tree_.path("run/" + name))) << "else this test shows nothing";
        EXPECT_FALSE(ports_->isHeld(portName));
        EXPECT_EQ(send().error().kind, ErrorKind::notFound);
    }
    const auto successor = claim();
    EXPECT_EQ(*send(), 4u);
}

TEST_F(LinuxInstancePortTest, ManyProcessesThatStartAtOnceEndAsOne)
{
    Signal start, outcome;
    constexpr int count = 12;
    std::vector<std::unique_ptr<Child>> children;
    for (int i = 0; i < count; ++i)
        children.push_back(std::make_unique<Child>([&] {
            start.await();
            const auto port = ports_->claim(portName, tagIn);
            outcome.give(port ? 'w' : send().ok() ? 'h' : 'f');
            ::pause();
            return 0;
        }));
    for (int i = 0; i < count; ++i)
        start.give();

    std::string outcomes;
    for (int i = 0; i < count; ++i)
        outcomes += outcome.await();
    EXPECT_EQ(std::count(outcomes.begin(), outcomes.end(), 'w'), 1) << outcomes;
    EXPECT_EQ(std::count(outcomes.begin(), outcomes.end(), 'h'), count - 1) << outcomes;
}

TEST_F(LinuxInstancePortTest, GarbageAndFloodsAreRefusedWithoutHarm)
{
    const auto port = claim();
    std::string wrongVersion(textOf(*frameMessage({1, {}})));
    wrongVersion[4] = 9;
    std::string tooLong(textOf(*frameMessage({1, {}})));
    tooLong[15] = '\x7f';
    const std::string twice(2 * portHeaderSize, '\0');
    const std::string megabytes(8'000'000, 'x');
    for (const std::string& bytes : {std::string("x"), std::string("GET / HTTP/1.0\r\n\r\n"), wrongVersion, tooLong,
                                     twice, megabytes, tooLong + megabytes}) {
        const int socket = rawConnection();
        const auto from = steady_clock::now();
        EXPECT_EQ(sendRaw(socket, bytes), bytes.size() < 100'000);
        EXPECT_EQ(bytesUntilTheEnd(socket), 0u);
        EXPECT_LT(steady_clock::now() - from, seconds(1)) << "refused at once, not when its time is over";
    }
    EXPECT_EQ(*send(), 4u);
}

TEST_F(LinuxInstancePortTest, SilentAndDribblingClientsNeitherBlockOthersNorStay)
{
    const auto port = claim();
    std::vector<int> silent;
    for (int i = 0; i < 70; ++i)
        silent.push_back(rawConnection());
    std::thread dribble([&, socket = rawConnection()] {
        const auto frame = *frameMessage({1, std::vector<std::byte>(100)});
        std::size_t sent = 0;
        while (sent < frame.size() && sendRaw(socket, textOf(frame).substr(sent, 1))) {
            std::this_thread::sleep_for(milliseconds(200));
            ++sent;
        }
        EXPECT_LT(sent, frame.size());
        EXPECT_EQ(bytesUntilTheEnd(socket), 0u);
    });

    EXPECT_EQ(*send(), 4u);
    for (const int socket : silent)
        EXPECT_EQ(bytesUntilTheEnd(socket), 0u);
    dribble.join();
}

TEST_F(LinuxInstancePortTest, WhatIsMadeIsForTheUserOnlyAndForNoOtherProgram)
{
    tree_.remove("run");
    const auto openFiles = [] {
        return std::distance(fs::directory_iterator("/proc/self/fd"), fs::directory_iterator());
    };
    const auto before = openFiles();
    const auto port = claim();
    EXPECT_GT(openFiles(), before);
    for (const auto& entry : fs::directory_iterator("/proc/self/fd")) {
        const int number = std::stoi(entry.path().filename());
        const bool ours = fs::read_symlink(entry.path()).native().find("socket:") == 0;
        EXPECT_TRUE(!ours || (::fcntl(number, F_GETFD) & FD_CLOEXEC) != 0) << number;
    }

    const fs::path folder = tree_.path("tmp/kelvane-" + std::to_string(::geteuid()));
    const auto modeOf = [](const fs::path& path) { return fs::symlink_status(path).permissions(); };
    EXPECT_EQ(modeOf(folder), fs::perms(0700));
    EXPECT_EQ(modeOf(folder / name), fs::perms(0600));
    EXPECT_EQ(modeOf(folder / (name + ".lock")), fs::perms(0600));
}

// A folder of the session that is not the user's alone is passed over; the one in the temporary folder must be right.
TEST_F(LinuxInstancePortTest, FoldersThatOthersCouldReachAreRefused)
{
    const std::string own = "tmp/kelvane-" + std::to_string(::geteuid());
    const std::function<void(const std::string&)> faults[] = {
        [&](const std::string& folder) { ::chmod(tree_.folder(folder).c_str(), 0755); },
        [&](const std::string& folder) { ::chmod(tree_.folder(folder).c_str(), 0710); },
        [&](const std::string& folder) { tree_.symlink(folder, privateFolder("elsewhere")); },
        [&](const std::string& folder) { tree_.write(folder, "no folder at all"); },
        [&](const std::string& folder) {
            if (::chown(privateFolder(folder).c_str(), somebodyElse, somebodyElse) != 0)
                ::chmod(tree_.path(folder).c_str(), 0777);
        },
    };
    for (const auto& makeFaulty : faults) {
        tree_.remove("run");
        makeFaulty("run");
        EXPECT_TRUE(ports_->claim(portName, tagIn).ok());
        EXPECT_FALSE(fs::exists(tree_.path("run/" + name + ".lock")));
        EXPECT_TRUE(fs::exists(tree_.path(own + "/" + name + ".lock")));

        tree_.remove(own);
        makeFaulty(own);
        EXPECT_EQ(claimFault(), ErrorKind::accessDenied);
        EXPECT_EQ(send().error().kind, ErrorKind::accessDenied);
        EXPECT_FALSE(ports_->isHeld(portName));
        tree_.remove(own);
    }
}

TEST_F(LinuxInstancePortTest, NamesAreNoWayOutOfTheFolder)
{
    for (const std::string& bad : {std::string(), std::string("../x"), std::string("a/b"), std::string("."),
                                   std::string("a\0b", 3), std::string(200, 'n')}) {
        EXPECT_EQ(ports_->claim(bad, tagIn).error().kind, ErrorKind::invalid);
        EXPECT_EQ(ports_->send(bad, {}, seconds(1)).error().kind, ErrorKind::invalid);
        EXPECT_FALSE(ports_->isHeld(bad));
    }
    tree_.symlink("run/" + name + ".lock", tree_.path("victim"));
    EXPECT_EQ(claimFault(), ErrorKind::accessDenied);
    tree_.remove("run/" + name + ".lock");
    tree_.write("run/" + name, "not a socket");
    EXPECT_EQ(claimFault(), ErrorKind::wrongType);
    EXPECT_EQ(tree_.read("run/" + name), "not a socket");
    EXPECT_FALSE(fs::exists(tree_.path("victim")));
}

// Only a superuser can be two users.
class LinuxInstancePortUsersTest : public LinuxInstancePortTest {
protected:
    void SetUp() override
    {
        if (::geteuid() != 0)
            GTEST_SKIP() << "needs a superuser";
        for (fs::path folder = tree_.path("run"); folder != "/"; folder = folder.parent_path())
            opened_.emplace_back(folder, fs::status(folder).permissions());
    }
    void TearDown() override
    {
        for (const auto& [folder, before] : opened_)
            fs::permissions(folder, before);
    }
    void openWays() const
    {
        for (const auto& [folder, before] : opened_)
            fs::permissions(folder, before | fs::perms(0777));
    }

private:
    std::vector<std::pair<fs::path, fs::perms>> opened_;
};

TEST_F(LinuxInstancePortUsersTest, AnotherUsersProcessIsNotHeard)
{
    const auto port = claim();
    openWays();
    ::chmod(tree_.path("run/" + name).c_str(), 0777);

    Child stranger([&] {
        if (::setuid(somebodyElse) != 0)
            return 9;
        const int socket = rawConnection();
        const bool unheard = !sendRaw(socket, textOf(*frameMessage({1, {}}))) || bytesUntilTheEnd(socket) == 0;
        return unheard ? 1 : 2;
    });

    EXPECT_EQ(stranger.exitCode(), 1);
}

TEST_F(LinuxInstancePortUsersTest, AnotherUsersServerIsNotTalkedTo)
{
    openWays();
    Signal listens;
    Child stranger([&] {
        if (::setuid(somebodyElse) != 0)
            return 9;
        const int socket = ::socket(AF_UNIX, SOCK_STREAM, 0);
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        tree_.path("run/" + name).native().copy(address.sun_path, sizeof address.sun_path - 1);
        if (::bind(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0 ||
            ::listen(socket, 5) != 0)
            return 8;
        listens.give();
        const int client = ::accept(socket, nullptr, nullptr);
        return bytesUntilTheEnd(client) == 0 ? 1 : 2;
    });
    listens.await();
    privateFolder("run");

    EXPECT_EQ(send().error().kind, ErrorKind::accessDenied);
    EXPECT_EQ(claimFault(), ErrorKind::accessDenied);
    EXPECT_EQ(stranger.exitCode(), 1) << "not a byte was said";
}

}  // namespace

testing::PortWorldMaker testing::systemPortWorld()
{
    return {"linux", [] { return std::make_unique<SocketWorld>(); }};
}

}  // namespace kelvane
