#include "ui/scan/scan_boxes.h"

#include <QCheckBox>
#include <QLocale>
#include <utility>

#include "base/desktop_texts/frame.h"
#include "base/desktop_texts/scan.h"
#include "ui/core/desktop.h"
#include "ui/core/message_box.h"
#include "ui/core/text.h"
#include "ui/core/window_link.h"

namespace kelvane {

void askToRevise(WindowLink& link, QMessageBox* notice, std::function<void()> revise)
{
    constexpr const char* name = "scan.revise";
    if (link.frame()->findChild<QMessageBox*>(QString::fromLatin1(name)) != nullptr)
        return;  // asked already, by a search before this one
    QMessageBox* const box = makePlainBox(link.frame(), name, QMessageBox::Question, shown(TextId::reviseParameters),
                                          QMessageBox::Yes | QMessageBox::No);
    box->setEscapeButton(QMessageBox::No);
    QObject::connect(box, &QMessageBox::finished, box, [revise = std::move(revise)](int answer) {
        if (answer == QMessageBox::Yes)
            revise();
    });
    if (notice == nullptr)
        return link.boxes().open(box);
    QObject::connect(
        notice, &QMessageBox::finished, box, [&link, box] { link.boxes().open(box); }, Qt::QueuedConnection);
}

void askToForgetMarks(WindowLink& link, std::uint64_t marked, std::function<void()> search)
{
    constexpr const char* name = "scan.forgetMarks";
    if (link.frame()->findChild<QMessageBox*>(QString::fromLatin1(name)) != nullptr)
        return;  // asked already
    QMessageBox* const box = makeQuestionBox(
        link.frame(), shown(desktop_text::scanForgetsMarks, {QLocale().toString(qulonglong{marked}).toStdString()}));
    box->setObjectName(QString::fromLatin1(name));
    QObject::connect(box, &QMessageBox::finished, box, [search = std::move(search)](int answer) {
        if (answer == QMessageBox::Yes)
            search();
    });
    link.boxes().open(box);
}

QMessageBox* showScanNotice(QWidget& over, const Desktop& desktop, const QString& text)
{
    QMessageBox* const box = makePlainBox(over.window(), "scan.notice", QMessageBox::Information, text);
    box->setModal(false);
    box->setAttribute(Qt::WA_ShowWithoutActivating);
    box->setCheckBox(new QCheckBox(shown(desktop_text::doNotShowAgain)));
    QObject::connect(box, &QMessageBox::finished, box, [box, &desktop] {
        if (box->checkBox()->isChecked())
            desktop.change([](Settings& settings) { settings.noticesOff |= notice_flag::firstScanShown; });
    });
    box->show();
    return box;
}

}  // namespace kelvane
