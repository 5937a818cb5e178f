// All options: pages, a search over them, reset, import and export. What is changed is in force at once.
#pragma once

#include <QDialog>
#include <vector>

class QLabel;
class QLineEdit;
class QListWidget;
class QPushButton;
class QStackedWidget;

namespace kelvane {

class OptionPage;
class OptionsKeeper;
class WindowLink;

// Owned by the frame of the window.
class OptionsDialog final : public QDialog {
    Q_OBJECT

public:
    explicit OptionsDialog(WindowLink& link);

private:
    void makePages(WindowLink& link);
    [[nodiscard]] QWidget* makeButtons();
    void display();
    void search(const QString& typed);
    [[nodiscard]] OptionPage* page() const;
    void askReset();
    void chooseExport();
    void chooseImport();
    void tell(const QString& text, bool isFailure);

    OptionsKeeper* keeper_;
    QLineEdit* search_;
    QListWidget* list_;
    QStackedWidget* stack_;
    QLabel* nothing_;
    std::vector<OptionPage*> pages_;
};

}  // namespace kelvane
