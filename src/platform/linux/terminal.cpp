#include "platform/terminal.h"

#include <poll.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <cerrno>

#include "platform/linux/adapters.h"

namespace kelvane {
namespace {

constexpr unsigned usualColumns = 80;
constexpr int lookMs = 100;                // between two looks at the cancel flag: signals are taken by another thread
constexpr std::size_t longestLine = 4096;  // bytes of a line that are kept

// False when nothing more is to come, or nothing more is wanted.
bool waitForInput(const CancelFlag& cancel)
{
    for (;;) {
        if (cancel.cancelled())
            return false;
        pollfd input{STDIN_FILENO, POLLIN, 0};
        const int ready = poll(&input, 1, lookMs);
        if (ready > 0)
            return true;
        if (ready < 0 && errno != EINTR)
            return false;
    }
}

class PosixTerminal final : public Terminal {
public:
    std::optional<unsigned> columns(StandardStream stream) const override
    {
        const int descriptor = stream == StandardStream::output ? STDOUT_FILENO : STDERR_FILENO;
        if (isatty(descriptor) == 0)
            return std::nullopt;
        winsize size{};
        if (ioctl(descriptor, TIOCGWINSZ, &size) != 0 || size.ws_col == 0)
            return usualColumns;
        return size.ws_col;
    }

    bool isInteractive() const override { return isatty(STDIN_FILENO) != 0; }

    // Byte by byte: what comes behind the line belongs to the next question.
    std::optional<std::string> readLine(const CancelFlag& cancel) override
    {
        std::string line;
        while (waitForInput(cancel)) {
            char c = 0;
            const ssize_t got = read(STDIN_FILENO, &c, 1);
            if (got < 0 && errno == EINTR)
                continue;
            if (got <= 0)
                return std::nullopt;
            if (c == '\n')
                return line;
            if (line.size() < longestLine)
                line += c;
        }
        return std::nullopt;
    }
};

}  // namespace

std::unique_ptr<Terminal> makePosixTerminal()
{
    return std::make_unique<PosixTerminal>();
}

}  // namespace kelvane
