#include "ui/options/notice_box.h"

#include <QCheckBox>

#include "base/desktop_texts/frame.h"
#include "ui/core/message_box.h"
#include "ui/core/text.h"
#include "ui/core/window_link.h"

namespace kelvane {

void showNotice(WindowLink& link, std::uint32_t bit, const QString& text, const std::function<void()>& then)
{
    if ((link.desktop().settings().noticesOff & bit) != 0) {
        if (then)
            then();
        return;
    }
    QMessageBox* const box = makePlainBox(link.frame(), "noticeBox", QMessageBox::Information, text);
    box->setCheckBox(new QCheckBox(shown(desktop_text::doNotShowAgain)));
    QObject::connect(box, &QMessageBox::finished, box, [box, &link, bit, then] {
        if (box->checkBox()->isChecked())
            link.desktop().change([bit](Settings& settings) { settings.noticesOff |= bit; });
        if (then)
            then();
    });
    box->open();
}

}  // namespace kelvane
