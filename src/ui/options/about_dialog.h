// What this program is, and what it works with.
#pragma once

#include <QDialog>

namespace kelvane {

class WindowLink;

// Owned by the frame of the window.
class AboutDialog final : public QDialog {
    Q_OBJECT

public:
    explicit AboutDialog(WindowLink& link);
};

// Version, system and libraries, a line each: what a report of a fault should begin with.
[[nodiscard]] QString aboutLines();

}  // namespace kelvane
