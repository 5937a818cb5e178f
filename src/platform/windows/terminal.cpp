#include "platform/terminal.h"

#include <windows.h>

#include "platform/windows/adapters.h"

namespace kelvane {
namespace {

constexpr unsigned usualColumns = 80;

class ConsoleTerminal final : public Terminal {
public:
    std::optional<unsigned> columns(StandardStream stream) const override
    {
        const HANDLE handle = ::GetStdHandle(stream == StandardStream::output ? STD_OUTPUT_HANDLE : STD_ERROR_HANDLE);
        DWORD mode = 0;
        if (::GetConsoleMode(handle, &mode) == 0)
            return std::nullopt;
        CONSOLE_SCREEN_BUFFER_INFO info{};
        if (::GetConsoleScreenBufferInfo(handle, &info) == 0 || info.srWindow.Right < info.srWindow.Left)
            return usualColumns;
        return static_cast<unsigned>(info.srWindow.Right - info.srWindow.Left + 1);
    }
};

}  // namespace

std::unique_ptr<Terminal> makeConsoleTerminal()
{
    return std::make_unique<ConsoleTerminal>();
}

}  // namespace kelvane
