#include "ui/core/desktop_host.h"

#include <QCheckBox>
#include <QMessageBox>

#include "ui/core/main_thread.h"
#include "ui/core/text.h"
#include "ui/core/workbench.h"

namespace kelvane {
namespace {

// Before the first window there is no loop to come back to, so that a box of the main thread runs one of its own.
template <class T>
T askWith(T ifNone, QMessageBox* (*make)(const QString&), const QString& text, T (*read)(const QMessageBox&))
{
    if (isMainThread()) {
        const std::unique_ptr<QMessageBox> box(make(text));
        box->exec();
        return read(*box);
    }
    return askOnMain<T>(
        std::move(ifNone),
        [make, text, read](std::shared_ptr<typename Answer<T>::Hold> hold) {
            QMessageBox* const box = make(text);
            box->setAttribute(Qt::WA_DeleteOnClose);
            QObject::connect(box, &QDialog::finished, box, [box, read, hold] { hold->give(read(*box)); });
            box->open();
        },
        [] {});
}

QMessageBox* boxWith(QMessageBox::Icon icon, const QString& text, QMessageBox::StandardButtons buttons)
{
    return new QMessageBox(icon, QStringLiteral("Kelvane"), text, buttons);
}

bool saysYes(const QMessageBox& box)
{
    return box.result() == QMessageBox::Yes;
}

}  // namespace

std::unique_ptr<Window> DesktopHost::makeWindow(CXInstance& instance)
{
    return std::make_unique<Workbench>(instance, desktop_);
}

InterfaceMode DesktopHost::askInterfaceMode()
{
    return InterfaceMode::standard;
}

void DesktopHost::showError(std::u16string_view text)
{
    static_cast<void>(askWith<bool>(
        false, [](const QString& said) { return boxWith(QMessageBox::Critical, said, QMessageBox::Ok); }, toQt(text),
        saysYes));
}

bool DesktopHost::askYesNo(std::u16string_view text)
{
    return askWith<bool>(
        false,
        [](const QString& said) { return boxWith(QMessageBox::Question, said, QMessageBox::Yes | QMessageBox::No); },
        toQt(text), saysYes);
}

NoticeAnswer DesktopHost::notify(std::u16string_view text)
{
    return askWith<NoticeAnswer>(
        {},
        [](const QString& said) {
            QMessageBox* const box = boxWith(QMessageBox::Question, said, QMessageBox::Yes | QMessageBox::No);
            box->setCheckBox(new QCheckBox(shown(desktop_text::doNotShowAgain)));
            return box;
        },
        toQt(text),
        [](const QMessageBox& box) {
            return NoticeAnswer{saysYes(box), box.checkBox()->isChecked()};
        });
}

void DesktopHost::showStatus(std::u16string_view) {}

}  // namespace kelvane
