// The dialog in which the properties that must match are chosen.
#pragma once

#include <QDialog>
#include <QStringList>
#include <map>
#include <vector>

#include "ui/scan/property_rows.h"

class QLabel;
class QTreeWidget;
class QTreeWidgetItem;

namespace kelvane {

class PropertyPicker final : public QDialog {
    Q_OBJECT

public:
    // chosen: comma-separated canonical names, in the order in which they are compared.
    PropertyPicker(const Desktop& desktop, const std::vector<PropertyRow>& rows, const QString& chosen,
                   QWidget* parent = nullptr);

    [[nodiscard]] QString chosen() const { return chosen_.join(u','); }

private:
    void makeLayout(const Desktop& desktop);
    [[nodiscard]] QWidget* makeSearch();
    [[nodiscard]] QWidget* makeButtons(const Desktop& desktop);
    void fill(const std::vector<PropertyRow>& rows);
    void choose(const QString& names);
    void ticked(QTreeWidgetItem* item);
    void search(const QString& words);
    void refresh();

    QTreeWidget* tree_;
    QLabel* summary_;
    std::map<QString, QTreeWidgetItem*> items_;  // by canonical name
    QStringList chosen_;                         // in the order of the ticks: the first one is what files are sorted by
};

}  // namespace kelvane
