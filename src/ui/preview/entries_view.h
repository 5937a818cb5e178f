// What lies in an archive or a folder, as a list.
#pragma once

#include <QTreeWidget>

#include "ui/preview/preview_content.h"

namespace kelvane {

class EntriesView final : public QTreeWidget {
    Q_OBJECT

public:
    explicit EntriesView(QWidget* parent = nullptr);
    void show(const std::vector<ListedEntry>& entries);
};

}  // namespace kelvane
