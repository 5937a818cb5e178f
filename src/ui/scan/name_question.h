// Asks for a name, without waiting.
#pragma once

#include <QString>
#include <functional>

class QWidget;

namespace kelvane {

struct NameQuestion {
    QString title;
    QString label;
    QString name;  // to begin with
    // Takes the name; what is wrong with it is shown, and the question stays. Empty: it was taken.
    std::function<QString(const QString& name)> take;
};

// Opens the dialog "scan.nameDialog" over the widget's window.
void askName(QWidget& over, NameQuestion question);

}  // namespace kelvane
