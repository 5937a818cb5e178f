// A text to look at, with its charset named.
#pragma once

#include <QWidget>

#include "ui/preview/preview_content.h"

class QCheckBox;
class QLabel;
class QPlainTextEdit;
class QPushButton;

namespace kelvane {

class TextView final : public QWidget {
    Q_OBJECT

public:
    explicit TextView(QWidget* parent = nullptr);

    void show(const PreviewContent& content);
    void setOpenEnabled(bool on);

Q_SIGNALS:
    void openWanted();  // in the program that the person chose for texts

private:
    QPlainTextEdit* text_;
    QLabel* charset_;
    QCheckBox* wrap_;
    QPushButton* open_;
};

}  // namespace kelvane
