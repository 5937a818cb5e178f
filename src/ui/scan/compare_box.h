// What makes two files duplicates of one another.
#pragma once

#include <QGroupBox>
#include <vector>

#include "engine/scan_node.h"
#include "ui/scan/property_rows.h"

class QCheckBox;
class QLabel;
class QPushButton;
class QSlider;

namespace kelvane {

class CompareBox final : public QGroupBox {
    Q_OBJECT

public:
    explicit CompareBox(const Desktop& desktop, QWidget* parent = nullptr);

    void show(const CScanNode& definition);
    void read(CScanNode& definition) const;
    // What can be chosen; before that the button for properties does nothing.
    void setProperties(std::vector<PropertyRow> rows);
    // Why no scan can go by this; empty where one can.
    void showProblem(const QString& problem);

Q_SIGNALS:
    void edited();

private:
    void makeControls();
    void makeLayout();
    void pickProperties();
    void refresh();

    const Desktop& desktop_;
    QCheckBox *contents_, *sameType_;
    QPushButton* pick_;
    QLabel *properties_, *meaning_, *problem_;
    QSlider* similarity_;
    QString names_;  // of the properties, separated by commas
    std::vector<PropertyRow> rows_;
};

}  // namespace kelvane
