// A table of texts that are all known, for views of any length.
#pragma once

#include <QAbstractTableModel>
#include <QStringList>
#include <vector>

namespace kelvane {

class TextTableModel final : public QAbstractTableModel {
    Q_OBJECT

public:
    TextTableModel(QStringList titles, QObject* parent) : QAbstractTableModel(parent), titles_(std::move(titles)) {}

    void setRows(std::vector<QStringList> rows);
    [[nodiscard]] const QStringList& row(int number) const { return rows_[static_cast<std::size_t>(number)]; }
    // Rows as lines, cells with a TAB between them.
    [[nodiscard]] QString asText() const;

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    const QStringList titles_;
    std::vector<QStringList> rows_;
};

}  // namespace kelvane
