// The express page: a few large choices in place of the whole form.
#pragma once

#include <QWidget>
#include <string>

#include "ui/scan/scan_order.h"

class QButtonGroup;
class QLabel;

namespace kelvane {

class Desktop;

class BeginnerPage final : public QWidget {
    Q_OBJECT

public:
    explicit BeginnerPage(const Desktop& desktop, QWidget* parent = nullptr);

    // Exact copies, by fixed settings.
    [[nodiscard]] ScanOrder order() const;
    // Why no scan can begin, or nothing.
    void showProblem(const QString& problem);
    // Searches these folders, whatever the choice.
    void setFolders(std::vector<std::string> folders);
    [[nodiscard]] bool hasOwnFolders() const { return !ownFolders_.empty(); }

Q_SIGNALS:
    void findWanted();

protected:
    void changeEvent(QEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    [[nodiscard]] QWidget* makeChoices();
    void chooseFolder();
    void refresh();
    void renewIcons();
    [[nodiscard]] std::vector<std::string> folders() const;

    const Desktop& desktop_;
    QButtonGroup* choices_;
    QLabel *where_, *problem_;
    std::vector<std::string> ownFolders_;  // empty: the usual one of the choice
};

}  // namespace kelvane
