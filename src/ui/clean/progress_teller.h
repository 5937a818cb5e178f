// Tells the main thread how far a job of a window has come.
#pragma once

#include "cleanup/cleanup_pass.h"
#include "ui/clean/progress_dialog.h"

namespace kelvane {

class Workbench;

// On the thread of the window.
class ProgressTeller {
public:
    explicit ProgressTeller(Workbench& bench) : bench_(bench) {}

    // Shown at once: from here on the dialog keeps the person from the list.
    void begin(const QString& title, std::uint64_t items, std::uint64_t bytes);
    // Shown when the work lasts. Without items: nobody knows how long it will take.
    void expect(const QString& title, std::uint64_t items);

    // Told ten times a second at most; `current` names the file when it is. Lets the window serve.
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
    // The same within work that other work must not come between.
    template <class Name>
    void look(Name current)
    {
        if (isDue()) {
            state_.current = current();
            tell();
        }
    }
    void end();

private:
    [[nodiscard]] bool isDue();
    void tell();
    void serve();

    Workbench& bench_;
    QString title_;
    ProgressState state_;
    std::uint64_t told_ = 0, shownFrom_ = 0, since_ = 0;  // ticks
    bool isShown_ = false;
};

}  // namespace kelvane
