// A window that nobody sees, on a thread of its own: where messages of other processes arrive.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <windows.h>

#include "base/result.h"

namespace kelvane::windows_os {

// A top-level window of class "static", found by its title. Gone with the object, which waits for a running procedure.
class HiddenWindow {
public:
    // Nothing: the message goes to the system's own procedure. Runs on the window's thread; must not throw.
    using Procedure = std::function<std::optional<LRESULT>(HWND window, UINT message, WPARAM first, LPARAM second)>;

    [[nodiscard]] static Result<std::unique_ptr<HiddenWindow>> create(const std::wstring& title, Procedure procedure);
    ~HiddenWindow();
    HiddenWindow(const HiddenWindow&) = delete;
    HiddenWindow& operator=(const HiddenWindow&) = delete;

    // Lets a message in from processes with fewer rights than this one.
    void admit(UINT message) const;

private:
    struct State;
    explicit HiddenWindow(std::unique_ptr<State> state);
    std::unique_ptr<State> state_;
};

}  // namespace kelvane::windows_os
