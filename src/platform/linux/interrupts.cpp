#include "platform/interrupts.h"

#include <poll.h>
#include <signal.h>
#include <sys/eventfd.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <array>
#include <thread>

#include "platform/linux/adapters.h"

namespace kelvane {
namespace {

constexpr int interruptedExitCode = 130;

class Descriptor {
public:
    explicit Descriptor(int value) : value_(value) {}
    ~Descriptor()
    {
        if (value_ >= 0)
            close(value_);
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    [[nodiscard]] int get() const { return value_; }

private:
    int value_;
};

bool isIgnored(int signal)
{
    struct sigaction action {};
    return sigaction(signal, nullptr, &action) == 0 && action.sa_handler == SIG_IGN;
}

// A blocked signal is delivered to a signal descriptor even when it is ignored; "nohup" and background jobs rely on it
// staying ignored.
sigset_t watchedSignals()
{
    sigset_t set;
    sigemptyset(&set);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        if (!isIgnored(signal))
            sigaddset(&set, signal);
    }
    return set;
}

// Waits for the signals on a thread of its own: no code runs inside a signal handler, and no state is global.
class SignalWatch final : public InterruptWatch {
public:
    explicit SignalWatch(CancelFlag& flag)
        : flag_(flag),
          watched_(watchedSignals()),
          stop_(eventfd(0, EFD_CLOEXEC)),
          signals_(signalfd(-1, &watched_, SFD_CLOEXEC))
    {
        struct sigaction ignore {};
        ignore.sa_handler = SIG_IGN;
        sigaction(SIGPIPE, &ignore, &pipeAction_);
        if (stop_.get() < 0 || signals_.get() < 0)
            return;
        pthread_sigmask(SIG_BLOCK, &watched_, &maskBefore_);
        waiter_ = std::thread([this] { wait(); });
    }

    ~SignalWatch() override
    {
        if (waiter_.joinable()) {
            eventfd_write(stop_.get(), 1);
            waiter_.join();
            pthread_sigmask(SIG_SETMASK, &maskBefore_, nullptr);
        }
        sigaction(SIGPIPE, &pipeAction_, nullptr);
    }

private:
    void wait()
    {
        std::array<pollfd, 2> events = {pollfd{signals_.get(), POLLIN, 0}, pollfd{stop_.get(), POLLIN, 0}};
        for (;;) {
            if (poll(events.data(), events.size(), -1) < 0)
                continue;
            if (events[0].revents != 0)
                interrupted();
            if (events[1].revents != 0)
                return;
        }
    }

    void interrupted()
    {
        signalfd_siginfo info{};
        if (read(signals_.get(), &info, sizeof info) != sizeof info)
            return;
        if (flag_.cancelled())
            _exit(interruptedExitCode);
        flag_.cancel();
    }

    CancelFlag& flag_;
    sigset_t watched_;
    sigset_t maskBefore_{};
    struct sigaction pipeAction_ {};
    Descriptor stop_;
    Descriptor signals_;
    std::thread waiter_;
};

class PosixInterrupts final : public Interrupts {
public:
    std::unique_ptr<InterruptWatch> watch(CancelFlag& flag) override { return std::make_unique<SignalWatch>(flag); }
};

}  // namespace

std::unique_ptr<Interrupts> makePosixInterrupts()
{
    return std::make_unique<PosixInterrupts>();
}

}  // namespace kelvane
