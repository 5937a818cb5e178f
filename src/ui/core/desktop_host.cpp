#include "ui/core/desktop_host.h"

#include <QCheckBox>
#include <QMessageBox>

#include "ui/core/main_thread.h"
#include "ui/core/message_box.h"
#include "ui/core/mode_dialog.h"
#include "ui/core/text.h"
#include "ui/core/window_link.h"
#include "ui/core/workbench.h"

namespace kelvane {
namespace {

template <class T>
struct Box {
    std::function<QMessageBox*(QWidget* parent)> make;
    T (*read)(const QMessageBox&);
};

template <class T>
QMessageBox* answering(const Box<T>& box, QWidget* parent, std::shared_ptr<typename Answer<T>::Hold> hold)
{
    QMessageBox* const made = box.make(parent);
    QObject::connect(made, &QDialog::finished, made,
                     [made, read = box.read, hold = std::move(hold)] { hold->give(read(*made)); });
    return made;
}

template <class T>
T askHere(const Box<T>& box)
{
    const std::unique_ptr<QMessageBox> made(box.make(nullptr));
    made->setAttribute(Qt::WA_DeleteOnClose, false);
    made->exec();
    return box.read(*made);
}

// On the main thread nothing is asked but before the first window, when there is no loop yet to come back to.
template <class T>
T askWith(const Desktop& desktop, T ifNone, const Box<T>& box)
{
    if (Workbench* const bench = desktop.benchOfThisThread())
        return bench->ask<T>(std::move(ifNone), [box](WindowLink& link, auto hold) {
            link.boxes().open(answering(box, link.frame(), std::move(hold)));
        });
    if (isMainThread())
        return askHere(box);
    return askOnMain<T>(
        std::move(ifNone), [box](auto hold) { answering(box, nullptr, std::move(hold))->open(); }, [] {});
}

bool saysYes(const QMessageBox& box)
{
    return box.result() == QMessageBox::Yes;
}

NoticeAnswer noticeAnswer(const QMessageBox& box)
{
    return {saysYes(box), box.checkBox()->isChecked()};
}

}  // namespace

// Both run on the main thread while nobody else has the settings yet, or has them any more.
void DesktopHost::prepareWindows(const CommandLine&)
{
    CXApplication& application = desktop_.application();
    desktop_.memory.load(application.root());
    if (application.settings().resetWindowLayout)
        desktop_.memory.forgetLayout();
    application.atShutdown().add([this] {
        CXApplication& ending = desktop_.application();
        if (ending.settings().persistence != PersistenceMode::bookkeepingOnly)
            desktop_.memory.store(ending.root());
    });
}

std::unique_ptr<Window> DesktopHost::makeWindow(CXInstance& instance)
{
    return std::make_unique<Workbench>(instance, desktop_);
}

InterfaceMode DesktopHost::askInterfaceMode()
{
    if (!isMainThread())
        return InterfaceMode::standard;
    ModeDialog dialog;
    dialog.exec();
    return dialog.chosen();
}

void DesktopHost::showError(std::u16string_view text)
{
    const Box<bool> box{[said = toQt(text)](QWidget* parent) { return makeErrorBox(parent, said); }, saysYes};
    static_cast<void>(askWith<bool>(desktop_, false, box));
}

bool DesktopHost::askYesNo(std::u16string_view text)
{
    const Box<bool> box{[said = toQt(text)](QWidget* parent) { return makeQuestionBox(parent, said); }, saysYes};
    return askWith<bool>(desktop_, false, box);
}

NoticeAnswer DesktopHost::notify(std::u16string_view text)
{
    const Box<NoticeAnswer> box{[said = toQt(text)](QWidget* parent) { return makeNoticeBox(parent, said); },
                                noticeAnswer};
    return askWith<NoticeAnswer>(desktop_, {}, box);
}

void DesktopHost::showStatus(std::u16string_view text)
{
    if (Workbench* const bench = desktop_.benchOfThisThread())
        bench->tell(text);
}

}  // namespace kelvane
