// The folders of a scan, each with a tick that takes it in.
#pragma once

#include <QWidget>
#include <string>
#include <vector>

class QHBoxLayout;
class QListWidget;
class QPushButton;

namespace kelvane {

// Folders are bytes as path rules have them, whatever is shown of them. Main thread; reads no files.
class FolderList final : public QWidget {
    Q_OBJECT

public:
    explicit FolderList(QWidget* parent = nullptr);

    // Those with a tick.
    [[nodiscard]] std::vector<std::string> included() const;
    // In place of all that are there; all get ticks.
    void show(const std::vector<std::string>& folders);
    // One that is there already only gets its tick.
    void add(const std::string& folder);
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
    void append(const std::string& folder);
    void refresh();

    QListWidget* list_;
    QHBoxLayout* buttons_ = nullptr;
    QPushButton* remove_ = nullptr;
};

}  // namespace kelvane
