// The folders of a scan, each with a tick that takes it in.
#pragma once

#include <QWidget>
#include <string>
#include <vector>

class QHBoxLayout;
class QListWidget;
class QListWidgetItem;
class QPushButton;

namespace kelvane {

// Folders are bytes as path rules have them, whatever is shown of them. Main thread; reads no files.
class FolderList final : public QWidget {
    Q_OBJECT

public:
    explicit FolderList(QWidget* parent = nullptr);

    // Those with a tick, and those without.
    [[nodiscard]] std::vector<std::string> included() const { return folders(Qt::Checked); }
    [[nodiscard]] std::vector<std::string> leftOut() const { return folders(Qt::Unchecked); }
    // In place of all that are there; all get ticks.
    void show(const std::vector<std::string>& folders);
    // One that is there already only gets its tick.
    void add(const std::string& folder);
    // Takes the ticks of these away; those that are not there yet are added without.
    void leaveOut(const std::vector<std::string>& folders);
    // A further button below the list.
    void addButton(QWidget* button);

Q_SIGNALS:
    void edited();

protected:
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    void makeList();
    [[nodiscard]] QWidget* makeButtons();
    void choose();
    void removeSelected();
    [[nodiscard]] std::vector<std::string> folders(Qt::CheckState state) const;
    [[nodiscard]] QListWidgetItem* itemOf(const std::string& folder) const;
    QListWidgetItem* append(const std::string& folder);
    void refresh();

    QListWidget* list_;
    QHBoxLayout* buttons_ = nullptr;
    QPushButton* remove_ = nullptr;
};

}  // namespace kelvane
