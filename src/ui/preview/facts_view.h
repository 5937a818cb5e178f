// Facts about one file, one a line.
#pragma once

#include <QTreeWidget>

#include "ui/preview/file_facts.h"

namespace kelvane {

class FactsView final : public QTreeWidget {
    Q_OBJECT

public:
    explicit FactsView(QWidget* parent = nullptr);
    void show(const std::vector<Fact>& facts);
};

}  // namespace kelvane
