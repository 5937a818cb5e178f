// The instance port on Windows: a hidden window with the port's name as its title takes WM_COPYDATA. A named mutex
// decides who may have the window, since two programs could look for it and find none at the same moment.
#include "platform/instance_port.h"

#include <optional>
#include <string>

#include "platform/windows/adapters.h"
#include "platform/windows/handle.h"
#include "platform/windows/hidden_window.h"
#include "platform/windows/os_error.h"
#include "platform/windows/process_user.h"
#include "platform/windows/wide_text.h"

namespace kelvane {
namespace {

using windows_os::Handle;
using windows_os::hasAdministratorsRights;
using windows_os::HiddenWindow;
using windows_os::osError;
using windows_os::runsAsSameUser;
using windows_os::wideFromWtf8;

// The sender is a window, since that is all that WM_COPYDATA tells of where it came from.
std::optional<PortPeer> peerBehind(WPARAM sender)
{
    DWORD process = 0;
    ::GetWindowThreadProcessId(reinterpret_cast<HWND>(sender), &process);
    return process != 0 && runsAsSameUser(process) ? std::optional(PortPeer{process}) : std::nullopt;
}

PortMessage messageFrom(const COPYDATASTRUCT& data)
{
    const auto* first = static_cast<const std::byte*>(data.lpData);
    PortMessage message;
    message.tag = static_cast<std::uint32_t>(data.dwData);
    if (first != nullptr)
        message.bytes.assign(first, first + data.cbData);
    return message;
}

std::optional<LRESULT> takeMessage(const InstancePorts::Handler& handler, UINT message, WPARAM sender, LPARAM content)
{
    if (message != WM_COPYDATA)
        return std::nullopt;
    const auto* data = reinterpret_cast<const COPYDATASTRUCT*>(content);
    const auto peer = peerBehind(sender);
    if (data == nullptr || data->cbData > largestPortMessage || !peer)
        return FALSE;
    return static_cast<LRESULT>(handler(messageFrom(*data), *peer));
}

class WindowPort final : public InstancePort {
public:
    WindowPort(Handle name, std::unique_ptr<HiddenWindow> window) : name_(std::move(name)), window_(std::move(window))
    {
    }

private:
    Handle name_;  // let go after the window is gone
    std::unique_ptr<HiddenWindow> window_;
};

// A window of the sender's, for as long as it waits for an answer.
class SenderWindow {
public:
    SenderWindow()
        : window_(::CreateWindowExW(0, L"static", L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr))
    {
    }
    SenderWindow(const SenderWindow&) = delete;
    SenderWindow& operator=(const SenderWindow&) = delete;
    ~SenderWindow() { ::DestroyWindow(window_); }
    [[nodiscard]] HWND get() const { return window_; }

private:
    HWND window_;
};

class WindowPorts final : public InstancePorts {
public:
    Result<std::unique_ptr<InstancePort>> claim(std::string_view name, Handler handler) override
    {
        const std::wstring title = wideFromWtf8(name);
        Handle mutex(::CreateMutexW(nullptr, FALSE, mutexName(name).c_str()));
        const DWORD code = ::GetLastError();
        if (!mutex.valid())
            return osError(code);
        if (code == ERROR_ALREADY_EXISTS)
            return Error{ErrorKind::changed, static_cast<int>(code), "another instance holds this name"};
        auto window = HiddenWindow::create(
            title, [handler = std::move(handler)](HWND, UINT message, WPARAM first, LPARAM second) {
                return takeMessage(handler, message, first, second);
            });
        if (!window)
            return window.error();
        if (hasAdministratorsRights())
            (*window)->admit(WM_COPYDATA);
        return std::unique_ptr<InstancePort>(new WindowPort(std::move(mutex), std::move(*window)));
    }

    Result<std::uint32_t> send(std::string_view name, const PortMessage& message,
                               std::chrono::milliseconds timeout) override
    {
        if (message.bytes.size() > largestPortMessage)
            return Error{ErrorKind::invalid, 0, "the message is too long"};
        const HWND port = waitFor(name, timeout);
        if (port == nullptr)
            return Error{ErrorKind::notFound, 0, "no instance holds this name"};
        letTakeForeground(port);
        COPYDATASTRUCT data{message.tag, static_cast<DWORD>(message.bytes.size()),
                            const_cast<std::byte*>(message.bytes.data())};
        const SenderWindow sender;
        DWORD_PTR answer = 0;
        const auto sent = ::SendMessageTimeoutW(port, WM_COPYDATA, reinterpret_cast<WPARAM>(sender.get()),
                                                reinterpret_cast<LPARAM>(&data), SMTO_NORMAL,
                                                static_cast<UINT>(timeout.count()), &answer);
        if (sent == 0)
            return Error{ErrorKind::io, static_cast<int>(::GetLastError()), "the running instance does not answer"};
        return static_cast<std::uint32_t>(answer);
    }

    bool isHeld(std::string_view name) override { return find(name) != nullptr || isTaken(name); }

private:
    // Of two programs that start at once the one that comes second may be here before the first has its window.
    static HWND waitFor(std::string_view name, std::chrono::milliseconds timeout)
    {
        const auto until = std::chrono::steady_clock::now() + timeout;
        HWND port = find(name);
        while (port == nullptr && isTaken(name) && std::chrono::steady_clock::now() < until) {
            ::Sleep(5);
            port = find(name);
        }
        return port;
    }

    static std::wstring mutexName(std::string_view name) { return L"Local\\" + wideFromWtf8(name); }

    static bool isTaken(std::string_view name)
    {
        return Handle(::OpenMutexW(SYNCHRONIZE, FALSE, mutexName(name).c_str())).valid();
    }

    static HWND find(std::string_view name) { return ::FindWindowW(L"static", wideFromWtf8(name).c_str()); }

    static void letTakeForeground(HWND port)
    {
        DWORD process = 0;
        ::GetWindowThreadProcessId(port, &process);
        ::AllowSetForegroundWindow(process);
    }
};

}  // namespace

std::unique_ptr<InstancePorts> makeWindowPorts()
{
    return std::make_unique<WindowPorts>();
}

}  // namespace kelvane
