#include "platform/terminal.h"

#include <windows.h>

#include <array>

#include "platform/windows/adapters.h"
#include "platform/windows/wide_text.h"

namespace kelvane {
namespace {

constexpr unsigned usualColumns = 80;
constexpr DWORD longest = 1024;  // characters of a line

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

    bool isInteractive() const override
    {
        DWORD mode = 0;
        return ::GetConsoleMode(::GetStdHandle(STD_INPUT_HANDLE), &mode) != 0;
    }

    // Ctrl-C ends the reading by itself, with nothing read.
    std::optional<std::string> readLine(const CancelFlag& cancel) override
    {
        std::array<wchar_t, longest> text{};
        DWORD count = 0;
        const HANDLE input = ::GetStdHandle(STD_INPUT_HANDLE);
        if (::ReadConsoleW(input, text.data(), longest, &count, nullptr) == 0 || count == 0 || cancel.cancelled())
            return std::nullopt;
        while (count > 0 && (text[count - 1] == L'\n' || text[count - 1] == L'\r'))
            --count;
        return windows_os::wtf8FromWide({text.data(), count});
    }
};

}  // namespace

std::unique_ptr<Terminal> makeConsoleTerminal()
{
    return std::make_unique<ConsoleTerminal>();
}

}  // namespace kelvane
