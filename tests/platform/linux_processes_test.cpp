// How other programs are started on Linux. Scripts stand in for the tools of the desktop; each writes down what it was
// given.
#include <fcntl.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <thread>

#include "platform/linux/adapters.h"
#include "platform/linux/child_process.h"
#include "platform/linux/crash_restart.h"
#include "platform/linux/default_route.h"
#include "support/temp_tree.h"

namespace kelvane {
namespace {

namespace fs = std::filesystem;
using std::chrono::milliseconds;
using std::chrono::seconds;
using std::chrono::steady_clock;
using Words = std::vector<std::string>;

template <class Condition>
bool soon(Condition condition)
{
    const auto deadline = steady_clock::now() + seconds(20);
    while (!condition() && steady_clock::now() < deadline)
        std::this_thread::sleep_for(milliseconds(5));
    return condition();
}

class LinuxProcessesTest : public ::testing::Test {
protected:
    // Writes its words down, each ended by a NUL, and then does `rest`.
    fs::path script(const std::string& name, const std::string& rest)
    {
        const std::string notes = tree_.path("words").native();
        const fs::path file = tree_.write("bin/" + name, "#!/bin/sh\nprintf '%s\\0' \"$@\" > " + notes + ".new\nmv " +
                                                             notes + ".new " + notes + "\n" + rest + "\n");
        ::chmod(file.c_str(), 0700);
        return file;
    }

    [[nodiscard]] bool ran() const { return fs::exists(tree_.path("words")); }

    // Of the script that ran last, which is waited for.
    Words takeWords()
    {
        EXPECT_TRUE(soon([&] { return ran(); }));
        std::string text = tree_.read("words");
        tree_.remove("words");
        Words words;
        for (std::size_t end; (end = text.find('\0')) != std::string::npos; text.erase(0, end + 1))
            words.push_back(text.substr(0, end));
        return words;
    }

    testing::TempTree tree_;
    std::unique_ptr<Processes> processes_ =
        makeLinuxProcesses({"relative::" + tree_.path("bin").native(), milliseconds(300)});
};

TEST_F(LinuxProcessesTest, ArgumentsReachTheProgramAsTheyAre)
{
    const Words words{"two words", "", "-x", "$(id) `id` \"'\\", "line\nbreak", "caf\xE9", "*"};
    ASSERT_TRUE(processes_->start(script("program", ""), words).ok());
    EXPECT_EQ(takeWords(), words);

    EXPECT_EQ(processes_->start(tree_.path("bin/none"), {}).error().kind, ErrorKind::notFound);
    EXPECT_EQ(processes_->start(tree_.write("bin/data", ""), {}).error().kind, ErrorKind::accessDenied);
    EXPECT_EQ(processes_->start(tree_.path("bin/program"), {std::string("a\0b", 3)}).error().kind, ErrorKind::invalid);
    EXPECT_FALSE(ran());
}

TEST_F(LinuxProcessesTest, AStartedProgramIsIndependentOfThisOne)
{
    const auto pipeBefore = ::signal(SIGPIPE, SIG_IGN);
    sigset_t interrupts, before;
    sigemptyset(&interrupts);
    sigaddset(&interrupts, SIGINT);
    ::pthread_sigmask(SIG_BLOCK, &interrupts, &before);

    const std::string facts = tree_.path("facts").native();
    const fs::path program =
        script("program", "{ readlink /proc/$$/fd/0 /proc/$$/fd/1 /proc/$$/fd/2\n"
                          "session=$(cut -d' ' -f6 /proc/$$/stat); [ $session = $$ ] && echo leader\n"
                          "grep -E 'SigBlk|SigIgn' /proc/self/status; } > " +
                              facts + ".new; mv " + facts + ".new " + facts);
    ASSERT_TRUE(processes_->start(program, {}).ok());
    ASSERT_TRUE(soon([&] { return fs::exists(facts); }));

    ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
    ::signal(SIGPIPE, pipeBefore);
    const std::string seen = tree_.read("facts");
    // The script's own output went to the file, so the second link is that one's. The signals are those that it hands
    // on: a shell blocks its own for a moment whenever it starts something.
    EXPECT_THAT(seen, ::testing::StartsWith("/dev/null\n"));
    EXPECT_THAT(seen, ::testing::HasSubstr("/dev/null\nleader\nSigBlk:\t0000000000000000\n"));
    const std::string label = "SigIgn:\t";
    const auto ignored = std::stoull(seen.substr(seen.find(label) + label.size()), nullptr, 16);
    EXPECT_EQ(ignored >> (SIGPIPE - 1) & 1, 0u);
}

TEST_F(LinuxProcessesTest, AnAdministratorsRightsAreAskedForThroughPolkit)
{
    EXPECT_EQ(processes_->startElevated("/bin/true", {}).error().kind, ErrorKind::notSupported);

    script("pkexec", "exit 126");
    EXPECT_EQ(processes_->startElevated("/opt/program", {"-x", "a b"}).error().kind, ErrorKind::cancelled);
    EXPECT_EQ(takeWords(), (Words{"--disable-internal-agent", "/opt/program", "-x", "a b"}));
    script("pkexec", "exit 127");
    EXPECT_EQ(processes_->startElevated("/opt/program", {}).error().kind, ErrorKind::accessDenied);

    // Half a second is spent with the person; the program's own time is not waited for.
    script("pkexec", "sleep 0.5; shift; exec \"$@\"");
    const auto from = steady_clock::now();
    EXPECT_TRUE(processes_->startElevated("/bin/sleep", {"5"}).ok());
    EXPECT_GE(steady_clock::now() - from, milliseconds(500));
    EXPECT_LT(steady_clock::now() - from, milliseconds(4000));
}

TEST_F(LinuxProcessesTest, FilesAndLinksAreOpenedByTheDesktopWhichSaysWhenItCannot)
{
    const fs::path file = tree_.write("-a file\n%?.txt", "x");
    EXPECT_EQ(processes_->openFile(file).error().kind, ErrorKind::notSupported) << "nothing is installed";

    script("xdg-open", "");
    EXPECT_TRUE(processes_->openFile(file).ok());
    EXPECT_EQ(takeWords(), Words{"file://" + tree_.path().native() + "/-a%20file%0A%25%3F.txt"});
    EXPECT_TRUE(processes_->openLink("https://example.com/?v=0.1&x").ok());
    EXPECT_EQ(takeWords(), Words{"https://example.com/?v=0.1&x"});

    const std::pair<const char*, std::optional<ErrorKind>> ends[] = {
        {"exit 1", ErrorKind::io}, {"exit 2", ErrorKind::notFound}, {"exit 3", ErrorKind::notSupported},
        {"exit 4", ErrorKind::io}, {"kill -9 $$", ErrorKind::io},   {"sleep 3", std::nullopt},
    };
    for (const auto& [end, kind] : ends) {
        script("xdg-open", end);
        const Status status = processes_->openLink("mailto:a@example.com");
        EXPECT_EQ(status ? std::nullopt : std::optional(status.error().kind), kind) << end;
        takeWords();
    }
}

TEST_F(LinuxProcessesTest, AMailIsDraftedInThePersonsMailProgram)
{
    const MailDraft draft{u"makers@example.com", u"kelvane feedback", u"caf\u00E9 \"$HOME\"\r\n\r\n-end",
                          "/tmp/a dump"};
    EXPECT_EQ(processes_->composeMail(draft), MailOutcome::unavailable) << "nothing is installed";

    script("xdg-email", "");
    EXPECT_EQ(processes_->composeMail(draft), MailOutcome::handedOver);
    EXPECT_EQ(takeWords(), (Words{"--utf8", "--subject", "kelvane feedback", "--body", "caf\u00E9 \"$HOME\"\n\n-end",
                                  "--attach", "/tmp/a dump", "makers@example.com"}));
    EXPECT_EQ(processes_->composeMail({u"makers@example.com", u"", u"", {}}), MailOutcome::handedOver);
    EXPECT_EQ(takeWords(), (Words{"--utf8", "makers@example.com"}));

    EXPECT_EQ(processes_->composeMail({u"--help", u"", u"", {}}), MailOutcome::unavailable);
    EXPECT_FALSE(ran());
    for (const char* end : {"exit 1", "exit 2", "exit 3", "exit 4", "exit 5", "kill -9 $$"}) {
        script("xdg-email", end);
        EXPECT_EQ(processes_->composeMail(draft), MailOutcome::unavailable) << end;
    }
}

TEST(DefaultRoute, IsFoundInTheKernelsTables)
{
    const std::string head = "Iface\tDestination\tGateway \tFlags\tRefCnt\tUse\tMetric\tMask\t\tMTU\tWindow\tIRTT\n";
    const std::string zeros(32, '0');
    const std::string loopback = zeros + " 00 " + zeros + " 00 " + zeros + " ffffffff 00000001 00000000 00200200 lo\n";
    const auto ipv6 = [&](const std::string& destination, const std::string& flags) {
        return destination + ' ' + zeros + " 00 " + zeros + " 00000400 00000003 00000000 " + flags + "     eth0\n";
    };
    struct Case {
        std::string ipv4, ipv6;
        bool online;
    };
    const Case cases[] = {
        {head + "eth0\t00000000\t010200C0\t0003\t0\t0\t0\t00000000\t0\t0\t0   \n", "", true},
        {head + "eth0\t000200C0\t00000000\t0001\t0\t0\t0\t00FFFFFF\t0\t0\t0   \n", loopback, false},
        {head + "eth0\t00000000\t010200C0\t0002\t0\t0\t0\t00000000\t0\t0\t0   \n", "", false},
        {head + "eth0\t00000000\t00000000\t0203\t0\t0\t0\t00000000\t0\t0\t0", "", false},
        {head, loopback + ipv6(zeros + " 00", "00000003"), true},
        {head, ipv6("fd" + std::string(30, '0') + " 40", "00000001"), false},
        {head, loopback, false},
        {"", "", false},
        {"eth0\t00000000\n\n \t", "0 0\n", false},
    };
    for (const Case& c : cases)
        EXPECT_EQ(linux_os::hasDefaultRoute(c.ipv4, c.ipv6), c.online) << c.ipv4 << c.ipv6;
}

}  // namespace
}  // namespace kelvane
