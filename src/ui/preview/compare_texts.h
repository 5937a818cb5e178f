// Texts side by side, what differs marked.
#pragma once

#include <QWidget>

#include "ui/preview/compared_file.h"

class QHBoxLayout;
class QLabel;
class QPlainTextEdit;
class QPushButton;

namespace kelvane {

class CompareTexts final : public QWidget {
    Q_OBJECT

public:
    explicit CompareTexts(QWidget* parent = nullptr);
    void show(const ComparedFiles& compared);

private:
    QPlainTextEdit* makeColumn(const ComparedFile& file, const std::vector<AlignedLine>& lines);
    void markLines(QPlainTextEdit* column, const std::vector<AlignedLine>& lines) const;
    void linkScrolling(QPlainTextEdit* column);
    void go(int step);

    QHBoxLayout* columns_;
    QLabel* summary_;
    QPushButton* previous_;
    QPushButton* next_;
    std::vector<QPlainTextEdit*> texts_;
    std::vector<std::size_t> places_;
    int place_ = -1;
};

}  // namespace kelvane
