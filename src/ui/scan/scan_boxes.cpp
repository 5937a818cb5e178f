#include "ui/scan/scan_boxes.h"

#include <QCheckBox>
#include <QMessageBox>
#include <utility>

#include "base/desktop_texts/frame.h"
#include "ui/core/desktop.h"
#include "ui/core/text.h"

namespace kelvane {
namespace {

QMessageBox* makeBox(QWidget& over, QMessageBox::Icon icon, const QString& text, QMessageBox::StandardButtons buttons,
                     const char* name)
{
    auto* const box = new QMessageBox(icon, QStringLiteral("Kelvane"), text, buttons, over.window());
    box->setObjectName(QString::fromLatin1(name));
    box->setAttribute(Qt::WA_DeleteOnClose);
    return box;
}

}  // namespace

void askToRevise(QWidget& over, std::function<void()> revise)
{
    QMessageBox* const box = makeBox(over, QMessageBox::Question, shown(TextId::reviseParameters),
                                     QMessageBox::Yes | QMessageBox::No, "scan.revise");
    QObject::connect(box, &QMessageBox::finished, &over, [revise = std::move(revise)](int answer) {
        if (answer == QMessageBox::Yes)
            revise();
    });
    box->open();
}

void showScanNotice(QWidget& over, const Desktop& desktop, const QString& text)
{
    QMessageBox* const box = makeBox(over, QMessageBox::Information, text, QMessageBox::Ok, "scan.notice");
    box->setModal(false);
    box->setCheckBox(new QCheckBox(shown(desktop_text::doNotShowAgain)));
    QObject::connect(box, &QMessageBox::finished, box, [box, &desktop] {
        if (box->checkBox()->isChecked())
            desktop.change([](Settings& settings) { settings.noticesOff |= notice_flag::firstScanShown; });
    });
    box->show();
}

}  // namespace kelvane
