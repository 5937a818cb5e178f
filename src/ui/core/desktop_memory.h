// What windows remember from one run of the program to the next: their layout, the sizes of dialogs, columns, the order
// of the results.
#pragma once

#include <QByteArray>
#include <QString>
#include <map>
#include <utility>
#include <vector>

#include "app/settings_node.h"
#include "app/sort_order.h"

namespace kelvane {

// Values by name, in the section "Desktop" of the program's settings. On the main thread; touches the store only when
// it is loaded and stored, at the start and at the end.
class DesktopMemory {
public:
    // Empty when nothing was remembered.
    [[nodiscard]] QByteArray value(const QString& name) const;
    // An empty value is forgotten.
    void setValue(const QString& name, const QByteArray& value);

    // By which properties results are sorted; without any they stand in the order of their groups.
    [[nodiscard]] const std::vector<StoredSortKey>& sortOrder() const { return sortOrder_; }
    void setSortOrder(std::vector<StoredSortKey> keys) { sortOrder_ = std::move(keys); }

    // The person wants the windows as they were at first. What is no layout, and named so, stays.
    void forgetLayout();
    static constexpr QLatin1String beside{"beside."};

    void load(const SettingsRoot& root);
    // What cannot be written is lost: the windows open as they did before.
    void store(const SettingsRoot& root) const;

private:
    std::map<QString, QByteArray> values_;
    std::vector<StoredSortKey> sortOrder_;
    std::vector<StoredSortKey> storedOrder_;  // as the store has it
};

}  // namespace kelvane
