// What the application core asks of a program with windows.
#pragma once

#include "app/application_host.h"
#include "ui/core/desktop.h"

namespace kelvane {

// Questions as message boxes; on the thread of a window they are shown on the main thread and waited for.
class DesktopHost final : public ApplicationHost, private Questions {
public:
    explicit DesktopHost(Desktop& desktop) : desktop_(desktop) {}

    [[nodiscard]] Questions& questions() override { return *this; }
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
