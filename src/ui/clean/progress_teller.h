// Tells the main thread how far a job of a window has come.
#pragma once

#include "cleanup/cleanup_pass.h"
#include "ui/clean/progress_dialog.h"

namespace kelvane {

class Workbench;

// On the thread of the window, which it lets serve between the items.
class ProgressTeller {
public:
    explicit ProgressTeller(Workbench& bench) : bench_(bench) {}

    void begin(const QString& title, std::uint64_t items, std::uint64_t bytes);
    // Shown ten times a second at most; `current` names the file when it is.
    template <class Name>
    void item(std::uint64_t items, std::uint64_t bytes, Name current)
    {
        if (isDue()) {
            state_.items = items;
            state_.bytes = bytes;
            state_.current = current();
            tell();
        }
        serve();
    }
    void end();

private:
    [[nodiscard]] bool isDue();
    void tell();
    void serve();

    Workbench& bench_;
    ProgressState state_;
    std::uint64_t told_ = 0;  // ticks
};

}  // namespace kelvane
