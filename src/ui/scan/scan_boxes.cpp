#include "ui/scan/scan_boxes.h"

#include <QCheckBox>
#include <utility>

#include "base/desktop_texts/frame.h"
#include "ui/core/desktop.h"
#include "ui/core/message_box.h"
#include "ui/core/text.h"

namespace kelvane {

void askToRevise(QWidget& over, std::function<void()> revise)
{
    QMessageBox* const box = makePlainBox(over.window(), "scan.revise", QMessageBox::Question,
                                          shown(TextId::reviseParameters), QMessageBox::Yes | QMessageBox::No);
    QObject::connect(box, &QMessageBox::finished, &over, [revise = std::move(revise)](int answer) {
        if (answer == QMessageBox::Yes)
            revise();
    });
    box->open();
}

void showScanNotice(QWidget& over, const Desktop& desktop, const QString& text)
{
    QMessageBox* const box = makePlainBox(over.window(), "scan.notice", QMessageBox::Information, text);
    box->setModal(false);
    box->setCheckBox(new QCheckBox(shown(desktop_text::doNotShowAgain)));
    QObject::connect(box, &QMessageBox::finished, box, [box, &desktop] {
        if (box->checkBox()->isChecked())
            desktop.change([](Settings& settings) { settings.noticesOff |= notice_flag::firstScanShown; });
    });
    box->show();
}

}  // namespace kelvane
