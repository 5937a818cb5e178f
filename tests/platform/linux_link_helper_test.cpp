// The elevated link helper, as a program of its own: what it refuses, and the one thing that it does.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <grp.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "platform/linux/link_helper/guarded_path.h"
#include "platform/linux/link_helper/link_message.h"
#include "platform/linux/link_helper/link_server.h"
#include "platform/linux/polkit_links.h"
#include "support/temp_tree.h"

namespace kelvane::linux_os {
namespace {

namespace fs = std::filesystem;
using kelvane::testing::TempTree;
using ::testing::Optional;

constexpr uid_t nobody = 65534;

LinkSecret someSecret()
{
    LinkSecret secret{};
    secret.fill(std::byte{7});
    return secret;
}

// The helper, started as polkit would start it by this process; `user` is whom polkit says that it acts for.
class RunningHelper {
public:
    RunningHelper(const fs::path& folder, const std::string& user)
    {
        int pair[2];
        if (::socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, pair) != 0)
            throw std::runtime_error("no socket pair");
        socket_ = FileHandle(pair[0]);
        FileHandle theirs(pair[1]);
        constexpr int on = 1;
        ::setsockopt(theirs.get(), SOL_SOCKET, SO_PASSCRED, &on, sizeof on);
        process_ = ::fork();
        if (process_ == 0)
            become(theirs.get(), folder, user);
    }
    ~RunningHelper() { static_cast<void>(exitCode()); }
    RunningHelper(const RunningHelper&) = delete;
    RunningHelper& operator=(const RunningHelper&) = delete;

    // Nothing when the helper has ended instead.
    std::optional<LinkAnswer> ask(const std::vector<std::byte>& bytes)
    {
        if (::send(socket_.get(), bytes.data(), bytes.size(), MSG_NOSIGNAL) < 0)
            return std::nullopt;
        std::array<std::byte, 64> answer{};
        const auto length = ::recv(socket_.get(), answer.data(), answer.size(), 0);
        return length <= 0 ? std::nullopt : decodeAnswer(std::span(answer).first(static_cast<std::size_t>(length)));
    }
    std::optional<LinkOutcome> ask(const LinkRequest& request)
    {
        const auto answer = ask(encode(request));
        return answer ? std::optional(answer->outcome) : std::nullopt;
    }
    std::optional<LinkOutcome> greet() { return ask({LinkRequestKind::greet, someSecret(), "", ""}); }
    std::optional<LinkOutcome> make(const std::string& link, const fs::path& target)
    {
        return ask({LinkRequestKind::make, someSecret(), link, target.string()});
    }

    // Closes our end and waits.
    int exitCode()
    {
        socket_ = FileHandle();
        int status = 0;
        if (process_ > 0 && ::waitpid(std::exchange(process_, 0), &status, 0) > 0)
            code_ = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
        return code_;
    }
    [[nodiscard]] int socket() const { return socket_.get(); }

private:
    [[noreturn]] static void become(int socket, const fs::path& folder, const std::string& user)
    {
        ::dup2(socket, STDIN_FILENO);
        ::dup2(::open("/dev/null", O_WRONLY | O_CLOEXEC), STDERR_FILENO);
        // After the caller took another user's identity on, polkit's part is to give the helper root's.
        if (::geteuid() != 0 && ::seteuid(0) == 0 && ::setresuid(0, 0, 0) != 0)
            ::_exit(99);
        ::setenv("PKEXEC_UID", user.c_str(), 1);
        ::execl(KELVANE_LINK_HELPER, KELVANE_LINK_HELPER, folder.c_str(), nullptr);
        ::_exit(98);
    }

    FileHandle socket_;
    pid_t process_ = 0;
    int code_ = -2;
};

std::string me()
{
    return std::to_string(::getuid());
}

class LinkHelperTest : public ::testing::Test {
protected:
    [[nodiscard]] bool isLink(std::string_view relative) const { return fs::is_symlink(tree.path(relative)); }

    TempTree tree;
    fs::path kept = tree.write("kept/photo.jpg", "photo");
    fs::path folder = tree.folder("copies/summer");
};

TEST_F(LinkHelperTest, MakesALinkForWhoStartedItAndEndsWithThem)
{
    RunningHelper helper(tree.path(), me());
    EXPECT_THAT(helper.greet(), Optional(LinkOutcome::done));
    EXPECT_THAT(helper.make("copies/summer/photo.jpg", kept), Optional(LinkOutcome::done));
    EXPECT_EQ(fs::read_symlink(folder / "photo.jpg"), kept);
    EXPECT_EQ(helper.exitCode(), 0);
}

TEST_F(LinkHelperTest, ReplacesNothing)
{
    tree.write("copies/mine.jpg", "mine");
    RunningHelper helper(tree.path(), me());
    helper.greet();
    EXPECT_THAT(helper.make("copies/mine.jpg", kept), Optional(LinkOutcome::failed));
    EXPECT_EQ(tree.read("copies/mine.jpg"), "mine");
}

TEST_F(LinkHelperTest, RefusesPlacesAndTargetsThatAreNotWhatTheySay)
{
    tree.symlink("way", tree.path("copies"));
    tree.symlink("other-photo", kept);
    ::mkfifo(tree.path("pipe").c_str(), 0600);
    const std::pair<std::string, fs::path> requests[] = {
        {"../outside", kept},                   // out of the folder
        {"copies/../outside", kept},            // the same by a detour
        {"/outside", kept},                     // absolute
        {"copies//outside", kept},              // an empty name
        {"way/outside", kept},                  // through a link
        {"nowhere/outside", kept},              // no such folder
        {"", kept},                             // nothing at all
        {"outside", "photo.jpg"},               // a relative target
        {"outside", tree.path("no")},           // no such target
        {"outside", tree.path("other-photo")},  // a link
        {"outside", tree.path("way/summer")},   // behind a link
        {"outside", tree.path("pipe")},         // neither file nor folder
        {"outside", kept.string() + "/.."},
    };
    RunningHelper helper(tree.path(), me());
    helper.greet();
    for (const auto& [link, target] : requests)
        EXPECT_THAT(helper.make(link, target), Optional(LinkOutcome::notSeen)) << link << " to " << target;
    for (const auto& entry : fs::recursive_directory_iterator(tree.path()))
        EXPECT_NE(entry.path().filename(), "outside") << entry.path();
}

TEST_F(LinkHelperTest, EndsWhenTheSecretIsMissingWrongOrToldTwice)
{
    const LinkRequest greeting{LinkRequestKind::greet, someSecret(), "", ""};
    const LinkRequest make{LinkRequestKind::make, someSecret(), "copies/a", kept.string()};
    LinkRequest wrong = make;
    wrong.secret[31] = std::byte{8};
    const std::vector<LinkRequest> talks[] = {
        {make}, {wrong}, {LinkRequest{}}, {greeting, wrong}, {greeting, greeting}};
    for (const auto& talk : talks) {
        RunningHelper helper(tree.path(), me());
        for (std::size_t i = 0; i + 1 < talk.size(); ++i)
            EXPECT_THAT(helper.ask(talk[i]), Optional(LinkOutcome::done));
        EXPECT_THAT(helper.ask(talk.back()), Optional(LinkOutcome::badRequest));
        EXPECT_EQ(helper.ask(make), std::nullopt);
        EXPECT_EQ(helper.exitCode(), 1);
    }
    EXPECT_FALSE(isLink("copies/a"));
}

TEST_F(LinkHelperTest, EndsAtWhatIsNoMessageOfOurs)
{
    auto longer = encode({LinkRequestKind::greet, someSecret(), "", ""});
    longer.push_back(std::byte{0});
    auto shorter = longer;
    shorter.resize(longer.size() - 2);
    const std::vector<std::byte> messages[] = {{std::byte{1}},
                                               longer,
                                               shorter,
                                               std::vector<std::byte>(largestLinkMessage + 1, std::byte{'K'}),
                                               encode({static_cast<LinkRequestKind>(9), someSecret(), "", ""})};
    for (const auto& message : messages) {
        RunningHelper helper(tree.path(), me());
        const auto answer = helper.ask(message);
        ASSERT_TRUE(answer);
        EXPECT_EQ(answer->outcome, LinkOutcome::badRequest);
        EXPECT_EQ(helper.exitCode(), 1);
    }
}

TEST_F(LinkHelperTest, DoesNotListenToAnotherProcessWithTheSameSocket)
{
    RunningHelper helper(tree.path(), me());
    helper.greet();
    const pid_t child = ::fork();
    if (child == 0) {
        const auto answer = helper.make("copies/stolen", kept);
        ::_exit(answer == LinkOutcome::badRequest ? 0 : 1);
    }
    int status = -1;
    ::waitpid(child, &status, 0);
    EXPECT_EQ(status, 0);
    EXPECT_FALSE(isLink("copies/stolen"));
    EXPECT_EQ(helper.exitCode(), 1);
}

TEST_F(LinkHelperTest, ServesOnlyWhomPolkitNames)
{
    for (const std::string user : {"", "x", "1x", "-1", "4242"}) {
        RunningHelper helper(tree.path(), user);
        EXPECT_EQ(helper.greet(), std::nullopt) << user;
        EXPECT_EQ(helper.exitCode(), 1) << user;
    }
}

TEST_F(LinkHelperTest, MakesNoLinksInFoldersOfTheSystemOrBehindLinks)
{
    tree.symlink("way", tree.path("copies"));
    for (const fs::path& place :
         {fs::path("/"), fs::path("/etc"), fs::path("/usr/share"), fs::path("/var/lib"), fs::path("relative"),
          tree.path("way"), tree.path("copies/../copies"), tree.path("kept/photo.jpg"), tree.path("missing")}) {
        RunningHelper helper(place, me());
        EXPECT_EQ(helper.greet(), std::nullopt) << place;
        EXPECT_EQ(helper.exitCode(), 1) << place;
    }
}

// Runs the checks in a process that took on another user's identity but may still start the helper as root.
int asNobody(const std::function<bool()>& checks)
{
    const pid_t child = ::fork();
    if (child == 0) {
        const bool changed =
            ::setgroups(0, nullptr) == 0 && ::setresgid(nobody, nobody, 0) == 0 && ::setresuid(nobody, nobody, 0) == 0;
        ::_exit(changed && checks() ? 0 : 1);
    }
    int status = -1;
    ::waitpid(child, &status, 0);
    return status;
}

TEST_F(LinkHelperTest, SeesNoMoreThanItsCallerAndGivesThemTheLink)
{
    if (::getuid() != 0)
        GTEST_SKIP() << "only root can take on another user's identity";
    const fs::path hidden = tree.write("private/secret.jpg", "secret");
    fs::permissions(tree.path(), fs::perms(0755));
    for (const char* open : {"copies", "copies/summer", "kept"})
        fs::permissions(tree.path(open), fs::perms(0755));
    tree.folder("unlisted");
    fs::permissions(tree.path("private"), fs::perms(0700));
    fs::permissions(tree.path("unlisted"), fs::perms(0711));

    const auto checks = [&] {
        RunningHelper helper(tree.path(), std::to_string(nobody));
        return helper.greet() == LinkOutcome::done && helper.make("copies/a", kept) == LinkOutcome::done &&
               helper.make("copies/b", hidden) == LinkOutcome::notSeen &&
               helper.make("private/c", kept) == LinkOutcome::notSeen &&
               helper.make("unlisted/d", kept) == LinkOutcome::notSeen;
    };
    EXPECT_EQ(asNobody(checks), 0);
    struct stat facts {};
    ASSERT_EQ(::lstat(tree.path("copies/a").c_str(), &facts), 0);
    EXPECT_EQ(facts.st_uid, nobody);
    EXPECT_EQ(asNobody([&] { return !RunningHelper(tree.path("private"), std::to_string(nobody)).greet(); }), 0);
}

TEST_F(LinkHelperTest, EndsWithItsCallerAlsoWhenSomebodyElseHoldsTheSocket)
{
    int beyond[2], life[2];
    ASSERT_EQ(::pipe2(beyond, O_CLOEXEC), 0);
    ASSERT_EQ(::pipe(life), 0);  // its writing end is inherited by the helper
    const pid_t caller = ::fork();
    if (caller == 0) {
        auto* helper = new RunningHelper(tree.path(), me());  // not ended by its destructor
        helper->greet();
        ::close(life[1]);
        // A child that outlives the caller keeps the socket open until the test is over.
        if (::fork() == 0) {
            ::close(beyond[1]);
            char byte = 0;
            static_cast<void>(::read(beyond[0], &byte, 1));
        }
        ::_exit(0);
    }
    ::close(life[1]);
    int status = -1;
    ASSERT_EQ(::waitpid(caller, &status, 0), caller);
    pollfd watched{life[0], POLLIN, 0};
    EXPECT_EQ(::poll(&watched, 1, 10'000), 1) << "the helper is still there";
    for (const int end : {beyond[0], beyond[1], life[0]})
        ::close(end);
}

// What polkit does once the person has agreed, or not.
PolkitPrograms asPolkit(const TempTree& tree, const std::string& script)
{
    const fs::path program = tree.write("pkexec", "#!/bin/sh\n" + script);
    fs::permissions(program, fs::perms::owner_all);
    return {program, KELVANE_LINK_HELPER};
}

TEST_F(LinkHelperTest, ServiceStartsTheHelperOnceForItsFolder)
{
    const auto links = makePolkitLinks(tree.path("copies"), asPolkit(tree, "echo x >> \"$0.count\"\n"
                                                                           "PKEXEC_UID=$(id -u) exec \"$@\"\n"));
    EXPECT_TRUE(links->make(folder / "a", kept).ok());
    EXPECT_TRUE(links->make(folder / "b", kept).ok());
    EXPECT_EQ(links->make(folder / "a", kept).error().kind, ErrorKind::changed);
    EXPECT_EQ(links->make(folder / "c", tree.path("gone")).error().kind, ErrorKind::notFound);
    EXPECT_EQ(links->make(tree.path("copies-too/d"), kept).error().kind, ErrorKind::invalid);
    EXPECT_EQ(links->make(folder / std::string(20'000, 'x'), kept).error().kind, ErrorKind::invalid);
    EXPECT_EQ(tree.read("pkexec.count"), "x\n");
    EXPECT_TRUE(isLink("copies/summer/a") && isLink("copies/summer/b"));
}

}  // namespace
}  // namespace kelvane::linux_os
