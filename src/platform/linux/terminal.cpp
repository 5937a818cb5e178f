#include "platform/terminal.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include "platform/linux/adapters.h"

namespace kelvane {
namespace {

constexpr unsigned usualColumns = 80;

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
};

}  // namespace

std::unique_ptr<Terminal> makePosixTerminal()
{
    return std::make_unique<PosixTerminal>();
}

}  // namespace kelvane
