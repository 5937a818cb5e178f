#include "ui/core/mode_dialog.h"

#include <QCommandLinkButton>
#include <QLabel>
#include <QVBoxLayout>

#include "ui/core/text.h"

namespace kelvane {

ModeDialog::ModeDialog(QWidget* parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("modeDialog"));
    setWindowTitle(shown(TextId::interfaceTitle));
    setMinimumWidth(460);
    auto* const column = new QVBoxLayout(this);
    column->setSpacing(8);
    column->addWidget(makeQuestion());
    column->addWidget(makeChoice(InterfaceMode::advanced, TextId::interfaceAdvanced, "advanced"));
    column->addWidget(makeChoice(InterfaceMode::standard, TextId::interfaceStandard, "standard"));
    column->addWidget(makeChoice(InterfaceMode::beginner, TextId::interfaceBeginner, "beginner"));
}

QWidget* ModeDialog::makeQuestion()
{
    auto* const question = new QLabel(shown(TextId::interfaceQuestion));
    question->setWordWrap(true);
    question->setTextFormat(Qt::PlainText);
    return question;
}

QWidget* ModeDialog::makeChoice(InterfaceMode mode, TextId text, const char* name)
{
    const QString whole = shown(text);
    auto* const button = new QCommandLinkButton(whole.section(u'\n', 0, 0), whole.section(u'\n', 1));
    button->setObjectName(QString::fromLatin1(name));
    button->setAccessibleDescription(button->description());
    button->setDefault(mode == InterfaceMode::standard);
    if (mode == InterfaceMode::standard)
        button->setFocus();
    connect(button, &QCommandLinkButton::clicked, this, [this, mode] {
        chosen_ = mode;
        accept();
    });
    return button;
}

}  // namespace kelvane
