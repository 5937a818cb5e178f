// Message boxes that look and behave alike everywhere: the first sentence in bold, the safe answer as the default.
#pragma once

class QMessageBox;
class QString;
class QWidget;

namespace kelvane {

// Each is deleted when it closes; to be opened by BoxQueue::open(). A line break parts the main sentence from what
// explains it. The result is a QMessageBox::StandardButton.
[[nodiscard]] QMessageBox* makeErrorBox(QWidget* parent, const QString& text);
[[nodiscard]] QMessageBox* makeQuestionBox(QWidget* parent, const QString& text);  // Yes or No; Enter and Escape say No
// With a tick "Do not show this again".
[[nodiscard]] QMessageBox* makeNoticeBox(QWidget* parent, const QString& text);

}  // namespace kelvane
