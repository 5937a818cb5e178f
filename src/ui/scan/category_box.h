// Which files take part: a category with its masks, or masks of one's own.
#pragma once

#include <QGroupBox>
#include <vector>

#include "engine/engine_options.h"
#include "engine/scan_node.h"

class QComboBox;
class QLineEdit;

namespace kelvane {

class CategoryBox final : public QGroupBox {
    Q_OBJECT

public:
    explicit CategoryBox(QWidget* parent = nullptr);

    // The categories to choose from, and their masks.
    void setCategories(const std::vector<FileCategory>& categories);
    void show(const CScanNode& definition);
    void read(CScanNode& definition) const;

Q_SIGNALS:
    void edited();

private:
    void refresh();
    [[nodiscard]] bool hasOwnMasks() const;

    QComboBox* category_;
    QLineEdit* masks_;
    std::vector<FileCategory> categories_;
    QString ownMasks_;
};

}  // namespace kelvane
