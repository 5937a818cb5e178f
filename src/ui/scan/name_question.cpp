#include "ui/scan/name_question.h"

#include <QDialog>
#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>

#include "ui/core/text.h"

namespace kelvane {
namespace {

struct NameFields {
    QLineEdit* name;
    QLabel* problem;
};

NameFields addFields(QDialog& dialog, QVBoxLayout& layout, const NameQuestion& question)
{
    auto* const label = new QLabel(question.label, &dialog);
    auto* const name = new QLineEdit(question.name, &dialog);
    name->setObjectName(QStringLiteral("scan.name"));
    name->setAccessibleName(question.label);
    name->selectAll();
    label->setBuddy(name);
    auto* const problem = new QLabel(&dialog);
    problem->setObjectName(QStringLiteral("scan.nameProblem"));
    problem->setTextFormat(Qt::PlainText);
    problem->setWordWrap(true);
    problem->hide();
    layout.addWidget(label);
    layout.addWidget(name);
    layout.addWidget(problem);
    return {name, problem};
}

}  // namespace

void askName(QWidget& over, NameQuestion question)
{
    auto* const dialog = new QDialog(over.window());
    dialog->setObjectName(QStringLiteral("scan.nameDialog"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setWindowTitle(question.title);
    auto* const layout = new QVBoxLayout(dialog);
    const NameFields fields = addFields(*dialog, *layout, question);
    auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, dialog);
    layout->addWidget(buttons);
    QObject::connect(buttons, &QDialogButtonBox::rejected, dialog, &QDialog::reject);
    QObject::connect(buttons, &QDialogButtonBox::accepted, dialog, [dialog, fields, take = question.take] {
        const QString problem = take(fields.name->text());
        fields.problem->setText(problem);
        fields.problem->setVisible(!problem.isEmpty());
        if (problem.isEmpty())
            dialog->accept();
    });
    dialog->open();
}

}  // namespace kelvane
