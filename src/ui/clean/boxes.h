// Message boxes over a window. None of their default buttons destroys anything.
#pragma once

#include <QMessageBox>
#include <QString>
#include <functional>
#include <memory>

#include "ui/core/main_thread.h"

namespace kelvane {

class Workbench;
class WindowLink;

// On the main thread.

// The dialog on top of the window, over which the next one opens; the frame when there is none.
[[nodiscard]] QWidget* topOf(const WindowLink& link);

struct BoxSpec {
    const char* name;  // the object's
    QMessageBox::Icon icon = QMessageBox::Information;
    QString title;
    QString text;
    QMessageBox::StandardButtons buttons = QMessageBox::Ok;
    QMessageBox::StandardButton byDefault = QMessageBox::Ok;
    QMessageBox::StandardButton onEscape = QMessageBox::NoButton;  // or closed: Cancel, No or the only one
};

// Opens it without waiting; it deletes itself. `done` gets the button, which is the one of Escape for a closed box.
QMessageBox* openBox(const WindowLink& link, const BoxSpec& spec,
                     std::function<void(QMessageBox::StandardButton)> done = nullptr);

// On the thread of a window.

// Waits for the answer; `ifNone` when the window is gone.
[[nodiscard]] QMessageBox::StandardButton askBox(Workbench& bench, const BoxSpec& spec,
                                                 QMessageBox::StandardButton ifNone);
// A question whose default, and whose answer to Escape, is No.
[[nodiscard]] bool askYesNo(Workbench& bench, const char* name, const QString& title, const QString& text);

}  // namespace kelvane
