// A program that crashes as it is told: crashing_program DUMP WAY. Prints where, and what the dump should tell of it.
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cinttypes>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <string>
#include <thread>

#include "platform/linux/crash_capture.h"
#include "platform/linux/crash_restart.h"
#include "platform/linux/crash_watcher.h"
#include "platform/linux/fault_handler.h"

extern "C" {

// A name that a debugger finds in the dump.
[[gnu::noinline]] void crashOnPurpose()
{
    std::printf("thread %ld\nfunction %" PRIuPTR "\n", ::syscall(SYS_gettid),
                reinterpret_cast<std::uintptr_t>(&crashOnPurpose));
    std::fflush(stdout);
    *reinterpret_cast<volatile int*>(0x10) = 1;
}

// Comes to an end for the compiler only.
[[gnu::noinline]] int fillStack(const volatile bool& goOn)
{
    volatile char room[4096];
    room[0] = goOn ? 1 : 0;
    return room[0] == 0 ? 0 : fillStack(goOn) + room[0];
}
}

namespace kelvane::linux_os {
namespace {

using std::chrono::milliseconds;

constexpr CrashTimes quickTimes{milliseconds(8'000), milliseconds(0)};

void onThread(const std::function<void()>& work)
{
    std::thread(work).join();
}

void overflow()
{
    const volatile bool goOn = true;
    std::exit(fillStack(goOn));
}

void overflowOnThread(CrashCapture& capture)
{
    onThread([&] {
        capture.guardThisThread();
        overflow();
    });
}

void twoAtOnce()
{
    std::thread other(crashOnPurpose);
    crashOnPurpose();
    other.join();
}

void dumpAndLive(CrashCapture& capture, const std::string& dump)
{
    for (int i = 0; i < 2; ++i)
        if (!capture.writeNow(dump).ok())
            std::exit(1);
    std::puts("alive");
    std::exit(0);
}

std::string contentsOf(const std::filesystem::path& file)
{
    std::ifstream stream(file);
    return {std::istreambuf_iterator<char>(stream), {}};
}

// The one that shares our command line.
void killOwnWatcher()
{
    const std::string own = contentsOf("/proc/self/cmdline");
    for (const auto& entry : std::filesystem::directory_iterator("/proc"))
        if (contentsOf(entry.path() / "comm") == "kelvane-watcher\n" && contentsOf(entry.path() / "cmdline") == own)
            ::kill(std::stoi(entry.path().filename()), SIGKILL);
    std::this_thread::sleep_for(milliseconds(100));  // it takes a moment
}

void crashAfterLosingTheWatcher(CrashCapture& capture, const std::string& dump)
{
    killOwnWatcher();
    if (!capture.writeNow(dump + ".now").ok())
        std::exit(1);
    crashOnPurpose();
}

// What "/X DUMP" starts: the program after its crash.
int startedAgain(const std::string& dump)
{
    std::ofstream(dump + ".again.new") << (::getsid(0) == ::getpid() ? "own session" : "");
    std::filesystem::rename(dump + ".again.new", dump + ".again");
    return 0;
}

[[noreturn]] void crashWithWatcher(const std::string& dump, int signalToWatcher)
{
    const auto watcher = CrashWatcher::start({dump, "", milliseconds(0)});
    if (!watcher.ok() || !installFaultHandlers(watcher->faultSocket(), milliseconds(500)).ok())
        std::exit(1);
    ::kill(watcher->process(), signalToWatcher);
    if (signalToWatcher == SIGKILL)  // it takes a moment
        std::this_thread::sleep_for(milliseconds(100));
    else
        std::printf("watcher %d\n", watcher->process());
    crashOnPurpose();
    std::exit(1);
}

void crashWithCapture(const std::string& dump, const std::string& way)
{
    const auto capture = makeCrashCapture(way == "early" ? CrashTimes{} : quickTimes);
    if (!capture->install(dump).ok())
        std::exit(1);
    rememberRestart(way == "again" || way == "early" ? std::vector<std::string>{"/X", dump}
                                                     : std::vector<std::string>{});
    const std::map<std::string, std::function<void()>> ways = {
        {"again", [] { onThread(crashOnPurpose); }},
        {"early", [] { crashOnPurpose(); }},
        {"two", twoAtOnce},
        {"abort", [] { std::abort(); }},
        {"trap", [] { std::raise(SIGTRAP); }},
        {"overflow", overflow},
        {"overflow on thread", [&] { overflowOnThread(*capture); }},
        {"watcher replaced", [&] { crashAfterLosingTheWatcher(*capture, dump); }},
        {"now", [&] { dumpAndLive(*capture, dump); }},
    };
    ways.at(way)();
}

}  // namespace
}  // namespace kelvane::linux_os

int main(int count, char** arguments)
{
    using namespace std::string_literals;
    const rlimit noCore{0, 0};
    ::setrlimit(RLIMIT_CORE, &noCore);
    if (count == 3 && arguments[1] == "/X"s)
        return kelvane::linux_os::startedAgain(arguments[2]);
    if (count != 3)
        return 2;
    const std::string way = arguments[2];
    if (way == "watcher gone" || way == "watcher hangs")
        kelvane::linux_os::crashWithWatcher(arguments[1], way == "watcher gone" ? SIGKILL : SIGSTOP);
    kelvane::linux_os::crashWithCapture(arguments[1], way);
    return 1;
}
