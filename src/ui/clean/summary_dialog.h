// The page that a person sees before anything happens to a file.
#pragma once

#include <QDialog>
#include <functional>
#include <string>

namespace kelvane {

// Only its OK button confirms; the default is to cancel. Deletes itself when it is closed.
class SummaryDialog final : public QDialog {
    Q_OBJECT

public:
    // `html` in UTF-8; `done` is called once.
    SummaryDialog(QWidget* parent, const std::string& html, std::function<void()> help, std::function<void(bool)> done);
};

}  // namespace kelvane
