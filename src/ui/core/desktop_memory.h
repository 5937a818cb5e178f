// What windows remember from one run of the program to the next: their layout, the sizes of dialogs, columns.
#pragma once

#include <QByteArray>
#include <QString>
#include <map>

#include "app/settings_node.h"

namespace kelvane {

// Values by name, in the section "Desktop" of the program's settings. On the main thread; touches the store only when
// it is loaded and stored, at the start and at the end.
class DesktopMemory {
public:
    // Empty when nothing was remembered.
    [[nodiscard]] QByteArray value(const QString& name) const;
    // An empty value is forgotten.
    void setValue(const QString& name, const QByteArray& value);

    // The person wants the windows as they were at first.
    void forgetLayout();

    void load(const SettingsRoot& root);
    // What cannot be written is lost: the windows open as they did before.
    void store(const SettingsRoot& root) const;

private:
    std::map<QString, QByteArray> values_;
};

}  // namespace kelvane
