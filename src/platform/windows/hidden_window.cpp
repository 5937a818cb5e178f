#include "platform/windows/hidden_window.h"

#include <commctrl.h>
#include <future>
#include <thread>

#include "platform/windows/os_error.h"

namespace kelvane::windows_os {
namespace {

constexpr UINT_PTR subclass = 1;
constexpr UINT quitMessage = WM_APP + 0x3F00;

LRESULT CALLBACK procedureOf(HWND window, UINT message, WPARAM first, LPARAM second, UINT_PTR, DWORD_PTR data)
{
    if (message == quitMessage) {
        ::DestroyWindow(window);
        return 0;
    }
    if (message == WM_NCDESTROY) {
        ::RemoveWindowSubclass(window, procedureOf, subclass);
        ::PostQuitMessage(0);
        return ::DefSubclassProc(window, message, first, second);
    }
    const auto& procedure = *reinterpret_cast<const HiddenWindow::Procedure*>(data);
    const auto answer = procedure(window, message, first, second);
    return answer ? *answer : ::DefSubclassProc(window, message, first, second);
}

}  // namespace

struct HiddenWindow::State {
    Procedure procedure;
    HWND window = nullptr;
    std::thread thread;

    [[nodiscard]] Status open(const std::wstring& title)
    {
        window = ::CreateWindowExW(WS_EX_TOOLWINDOW, L"static", title.c_str(), WS_POPUP, 0, 0, 0, 0, nullptr, nullptr,
                                   ::GetModuleHandleW(nullptr), nullptr);
        if (window == nullptr)
            return lastError();
        if (::SetWindowSubclass(window, procedureOf, subclass, reinterpret_cast<DWORD_PTR>(&procedure)) == FALSE) {
            ::DestroyWindow(window);
            return Error{ErrorKind::io, 0, "the window for messages of other processes could not be made"};
        }
        return {};
    }

    void serve(const std::wstring& title, std::promise<Status> opened)
    {
        const Status status = open(title);
        const bool good = status.ok();
        opened.set_value(status);
        MSG message;
        while (good && ::GetMessageW(&message, nullptr, 0, 0) > 0)
            ::DispatchMessageW(&message);
    }
};

Result<std::unique_ptr<HiddenWindow>> HiddenWindow::create(const std::wstring& title, Procedure procedure)
{
    auto state = std::make_unique<State>();
    state->procedure = std::move(procedure);
    std::promise<Status> opened;
    auto status = opened.get_future();
    state->thread = std::thread(&State::serve, state.get(), title, std::move(opened));
    if (const Status result = status.get(); !result) {
        state->thread.join();
        return result.error();
    }
    return std::unique_ptr<HiddenWindow>(new HiddenWindow(std::move(state)));
}

HiddenWindow::HiddenWindow(std::unique_ptr<State> state) : state_(std::move(state)) {}

HiddenWindow::~HiddenWindow()
{
    ::PostMessageW(state_->window, quitMessage, 0, 0);
    state_->thread.join();
}

void HiddenWindow::admit(UINT message) const
{
    ::ChangeWindowMessageFilterEx(state_->window, message, MSGFLT_ALLOW, nullptr);
}

}  // namespace kelvane::windows_os
