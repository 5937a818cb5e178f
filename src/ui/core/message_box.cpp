#include "ui/core/message_box.h"

#include <QCheckBox>
#include <QLabel>

#include "base/desktop_texts/frame.h"
#include "ui/core/text.h"

namespace kelvane {
namespace {

QMessageBox* makeBox(QWidget* parent, const char* name, QMessageBox::Icon icon, const QString& text,
                     QMessageBox::StandardButtons buttons)
{
    const qsizetype end = text.indexOf(u'\n');
    QMessageBox* const box = makePlainBox(parent, name, icon, text.left(end), buttons);
    if (end >= 0)
        box->setInformativeText(text.mid(end + 1).trimmed());
    for (QLabel* const label : box->findChildren<QLabel*>())
        label->setTextFormat(Qt::PlainText);  // the box itself sees to its first text alone
    return box;
}

}  // namespace

QMessageBox* makePlainBox(QWidget* parent, const char* name, QMessageBox::Icon icon, const QString& text,
                          QMessageBox::StandardButtons buttons, const QString& title)
{
    auto* const box = new QMessageBox(icon, title, text, buttons, parent);
    box->setObjectName(QString::fromLatin1(name));
    box->setTextFormat(Qt::PlainText);
    box->setAttribute(Qt::WA_DeleteOnClose);
    return box;
}

QMessageBox* makeErrorBox(QWidget* parent, const QString& text)
{
    return makeBox(parent, "errorBox", QMessageBox::Warning, text, QMessageBox::Ok);
}

QMessageBox* makeQuestionBox(QWidget* parent, const QString& text)
{
    QMessageBox* const box =
        makeBox(parent, "questionBox", QMessageBox::Question, text, QMessageBox::Yes | QMessageBox::No);
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
