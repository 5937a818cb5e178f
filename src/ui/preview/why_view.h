// The stages of a comparison as a table.
#pragma once

#include <QWidget>

#include "ui/preview/why_matched.h"

class QLabel;
class QTreeWidget;

namespace kelvane {

class WhyView final : public QWidget {
    Q_OBJECT

public:
    explicit WhyView(QWidget* parent = nullptr);

    void show(const WhyMatched& why);
    void showBusy();
    void clear();

private:
    QLabel* against_;
    QTreeWidget* stages_;
    QLabel* lines_;
};

}  // namespace kelvane
