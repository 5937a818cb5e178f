// The first run's question: how much of the program is shown.
#pragma once

#include <QDialog>

#include "app/questions.h"
#include "base/text_table.h"

namespace kelvane {

class ModeDialog final : public QDialog {
    Q_OBJECT

public:
    explicit ModeDialog(QWidget* parent = nullptr);

    // The standard one when the dialog was closed.
    [[nodiscard]] InterfaceMode chosen() const { return chosen_; }

private:
    [[nodiscard]] QWidget* makeQuestion();
    [[nodiscard]] QWidget* makeChoice(InterfaceMode mode, TextId text, const char* name);

    InterfaceMode chosen_ = InterfaceMode::standard;
};

}  // namespace kelvane
