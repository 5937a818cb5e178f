#include "ui/clean/text_table_model.h"

namespace kelvane {

void TextTableModel::setRows(std::vector<QStringList> rows)
{
    beginResetModel();
    rows_ = std::move(rows);
    endResetModel();
}

QString TextTableModel::asText() const
{
    QString text;
    for (const QStringList& row : rows_)
        text += row.join(QLatin1Char('\t')) + QLatin1Char('\n');
    return text;
}

int TextTableModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

int TextTableModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(titles_.size());
}

QVariant TextTableModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || (role != Qt::DisplayRole && role != Qt::ToolTipRole))
        return {};
    return row(index.row()).value(index.column());
}

QVariant TextTableModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return QAbstractTableModel::headerData(section, orientation, role);
    return titles_.value(section);
}

}  // namespace kelvane
