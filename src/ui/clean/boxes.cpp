#include "ui/clean/boxes.h"

#include <QDialog>

#include "ui/core/message_box.h"
#include "ui/core/window_link.h"

namespace kelvane {
namespace {

int depthOf(const QWidget& widget)
{
    int depth = 0;
    for (const QWidget* above = widget.parentWidget(); above != nullptr; above = above->parentWidget())
        ++depth;
    return depth;
}

}  // namespace

QWidget* topOf(const WindowLink& link)
{
    QWidget* top = link.frame();
    for (QDialog* const dialog : link.frame()->findChildren<QDialog*>())
        if (dialog->isVisible() && dialog->isModal() && depthOf(*dialog) >= depthOf(*top))
            top = dialog;
    return top;
}

QMessageBox* openBox(const WindowLink& link, const BoxSpec& spec, std::function<void(QMessageBox::StandardButton)> done)
{
    QMessageBox* const box = makePlainBox(topOf(link), spec.name, spec.icon, spec.text, spec.buttons, spec.title);
    box->setDefaultButton(spec.byDefault);
    if (spec.buttons.testFlag(QMessageBox::No))
        box->setEscapeButton(QMessageBox::No);
    if (spec.buttons.testFlag(QMessageBox::Cancel))
        box->setEscapeButton(QMessageBox::Cancel);
    if (spec.onEscape != QMessageBox::NoButton)
        box->setEscapeButton(spec.onEscape);
    if (done)
        QObject::connect(box, &QDialog::finished, box,
                         [box, done = std::move(done)] { done(box->standardButton(box->clickedButton())); });
    box->open();
    return box;
}

QMessageBox::StandardButton askBox(Workbench& bench, const BoxSpec& spec, QMessageBox::StandardButton ifNone)
{
    return bench.ask<QMessageBox::StandardButton>(ifNone, [spec](WindowLink& link, auto hold) {
        openBox(link, spec, [hold](QMessageBox::StandardButton button) { hold->give(button); });
    });
}

bool askYesNo(Workbench& bench, const char* name, const QString& title, const QString& text)
{
    return askBox(bench,
                  {name, QMessageBox::Question, title, text, QMessageBox::Yes | QMessageBox::No, QMessageBox::No},
                  QMessageBox::No) == QMessageBox::Yes;
}

}  // namespace kelvane
