// The properties that files can be compared by, as a person chooses them.
#pragma once

#include <QString>
#include <vector>

#include "ui/core/workbench.h"

namespace kelvane {

struct PropertyRow {
    QString name;  // canonical
    QString label;
    QString description;
    QString kind;  // "Number", ..., "Enumerated"
};

// Ordered by kind, then by label. On the window's thread: plug-ins may have to be asked.
[[nodiscard]] std::vector<PropertyRow> propertyRows(Workbench& bench);

// "Size, Title": the labels of comma-separated canonical names; a name that is not among the rows stands for itself.
[[nodiscard]] QString labelsOf(const QString& names, const std::vector<PropertyRow>& rows);

}  // namespace kelvane
