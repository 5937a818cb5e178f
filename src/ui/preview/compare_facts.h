// Properties side by side; what differs stands in bold.
#pragma once

#include <QWidget>

#include "ui/preview/compared_file.h"

class QCheckBox;
class QTreeWidget;

namespace kelvane {

class CompareFacts final : public QWidget {
    Q_OBJECT

public:
    explicit CompareFacts(QWidget* parent = nullptr);
    void show(const ComparedFiles& compared);

private:
    void hideEqual(bool on);

    QTreeWidget* table_;
    QCheckBox* onlyDifferences_;
};

}  // namespace kelvane
