// Every command of a window that has keys, as they are at this moment.
#pragma once

#include <QDialog>

class QTreeWidget;

namespace kelvane {

class CommandSet;
class WindowLink;

// Owned by the frame of the window.
class KeyboardDialog final : public QDialog {
    Q_OBJECT

public:
    KeyboardDialog(WindowLink& link, const CommandSet& commands);

private:
    void fill(const CommandSet& commands);
    void search(const QString& typed);

    QTreeWidget* list_;
};

}  // namespace kelvane
