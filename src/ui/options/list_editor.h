// A list among the settings as a small table, with entries to add, change and remove.
#pragma once

#include "ui/options/list_specs.h"
#include "ui/options/option_editor.h"

class QPushButton;
class QTableWidget;

namespace kelvane {

class ListEditor final : public OptionEditor {
public:
    explicit ListEditor(const ListSpec& spec);
    void display(const Settings& settings) override;
    void copy(const Settings& from, Settings& to) const override;
    [[nodiscard]] bool isLarge() const override { return true; }

private:
    [[nodiscard]] ListRows rows() const;
    void makeTable();
    void makeButtons();
    void fill(int row, const QStringList& texts);
    void tellAll();
    void add();
    void remove();
    void chooseColor(int row);

    const ListSpec& spec_;
    QTableWidget* table_;
    QPushButton* add_ = nullptr;
    QPushButton* remove_ = nullptr;
};

}  // namespace kelvane
