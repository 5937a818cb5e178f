// What the application core asks of a program with windows.
#pragma once

#include "app/application_host.h"
#include "ui/core/desktop.h"

namespace kelvane {

// Questions as message boxes. On the thread of a window they are shown on the main thread, above that window, and
// waited for while the window's other work goes on.
class DesktopHost final : public ApplicationHost, private Questions {
public:
    explicit DesktopHost(Desktop& desktop) : desktop_(desktop) {}

    [[nodiscard]] Questions& questions() override { return *this; }
    // Loads what the windows remember, and has it kept at the end.
    void prepareWindows(const CommandLine& line) override;
    [[nodiscard]] std::unique_ptr<Window> makeWindow(CXInstance& instance) override;

private:
    [[nodiscard]] InterfaceMode askInterfaceMode() override;
    void showError(std::u16string_view text) override;
    [[nodiscard]] bool askYesNo(std::u16string_view text) override;
    [[nodiscard]] NoticeAnswer notify(std::u16string_view text) override;
    void showStatus(std::u16string_view text) override;

    Desktop& desktop_;
};

}  // namespace kelvane
