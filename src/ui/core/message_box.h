// Message boxes that look and behave alike everywhere: the first sentence in bold, the safe answer as the default.
#pragma once

#include <QMessageBox>

namespace kelvane {

// Every box of the program comes from here: names of files in its text are shown as they are, also where they look like
// markup. The whole text stands in one piece; deleted when it closes.
[[nodiscard]] QMessageBox* makePlainBox(QWidget* parent, const char* name, QMessageBox::Icon icon, const QString& text,
                                        QMessageBox::StandardButtons buttons = QMessageBox::Ok,
                                        const QString& title = QStringLiteral("Kelvane"));

// Each is deleted when it closes; to be opened by BoxQueue::open(). A line break parts the main sentence from what
// explains it. The result is a QMessageBox::StandardButton.
[[nodiscard]] QMessageBox* makeErrorBox(QWidget* parent, const QString& text);
[[nodiscard]] QMessageBox* makeQuestionBox(QWidget* parent, const QString& text);  // Yes or No; Enter and Escape say No
// With a tick "Do not show this again".
[[nodiscard]] QMessageBox* makeNoticeBox(QWidget* parent, const QString& text);

}  // namespace kelvane
