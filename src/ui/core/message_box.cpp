#include "ui/core/message_box.h"

#include <QCheckBox>
#include <QMessageBox>

#include "base/desktop_texts/frame.h"
#include "ui/core/text.h"

namespace kelvane {
namespace {

QMessageBox* makeBox(QWidget* parent, QMessageBox::Icon icon, const QString& text)
{
    const qsizetype end = text.indexOf(u'\n');
    auto* const box = new QMessageBox(icon, QStringLiteral("Kelvane"), text.left(end), QMessageBox::NoButton, parent);
    box->setTextFormat(Qt::PlainText);  // names of files are in it
    if (end >= 0)
        box->setInformativeText(text.mid(end + 1).trimmed());
    box->setAttribute(Qt::WA_DeleteOnClose);
    return box;
}

}  // namespace

QMessageBox* makeErrorBox(QWidget* parent, const QString& text)
{
    QMessageBox* const box = makeBox(parent, QMessageBox::Warning, text);
    box->setObjectName(QStringLiteral("errorBox"));
    box->setStandardButtons(QMessageBox::Ok);
    return box;
}

QMessageBox* makeQuestionBox(QWidget* parent, const QString& text)
{
    QMessageBox* const box = makeBox(parent, QMessageBox::Question, text);
    box->setObjectName(QStringLiteral("questionBox"));
    box->setStandardButtons(QMessageBox::Yes | QMessageBox::No);
    box->setDefaultButton(QMessageBox::No);
    box->setEscapeButton(QMessageBox::No);
    return box;
}

QMessageBox* makeNoticeBox(QWidget* parent, const QString& text)
{
    QMessageBox* const box = makeQuestionBox(parent, text);
    box->setObjectName(QStringLiteral("noticeBox"));
    box->setCheckBox(new QCheckBox(shown(desktop_text::doNotShowAgain)));
    return box;
}

}  // namespace kelvane
